#include "platform/base/PostQueue.h"

#include "platform/base/CodeAddress.h"
#include "platform/base/OwnThread.h"
#include "platform/base/WindowTable.h"
#include "shell/contracts/base/Released.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <deque>
#include <mutex>
#include <utility>

namespace kivo {
namespace {

constexpr int kMostPerWake = 64;

// One thing that waits: an event, or a message. It owns what it carries until it runs.
class Entry {
public:
    explicit Entry(Released<ISDKEvent> event)
        : event_(std::move(event))
    {
    }
    Entry(HWND window, unsigned message, WPARAM wParam, LPARAM lParam, MessageDisposer disposer)
        : window_(window)
        , message_(message)
        , wParam_(wParam)
        , lParam_(lParam)
        , disposer_(disposer)
    {
    }
    Entry(Entry&& other) noexcept
        : event_(std::move(other.event_))
        , window_(other.window_)
        , message_(other.message_)
        , wParam_(other.wParam_)
        , lParam_(other.lParam_)
        , disposer_(std::exchange(other.disposer_, nullptr))
    {
    }
    Entry& operator=(Entry&& other) noexcept
    {
        Dispose();
        event_ = std::move(other.event_);
        window_ = other.window_;
        message_ = other.message_;
        wParam_ = other.wParam_;
        lParam_ = other.lParam_;
        disposer_ = std::exchange(other.disposer_, nullptr);
        return *this;
    }
    ~Entry() { Dispose(); }

    void Run()
    {
        if (event_) {
            event_->Execute();
            return;
        }
        CWnd* window = FindWindowOf(window_);
        if (window == nullptr)
            return;
        disposer_ = nullptr; // From the entry on the window procedure owns the payload.
        static_cast<void>(window->WindowProc(message_, wParam_, lParam_));
    }

    [[nodiscard]] bool IsMessage(unsigned message) const { return !event_ && message_ == message; }

    // The address by which the library is known that must still be there to run or free the entry.
    [[nodiscard]] const void* GetCode() const
    {
        const void* code = nullptr;
        if (event_)
            std::memcpy(&code, static_cast<const void*>(event_.get()), sizeof code); // Its vtable.
        else if (disposer_ != nullptr)
            std::memcpy(&code, &disposer_, sizeof code);
        return code;
    }

private:
    void Dispose()
    {
        event_.reset();
        if (const MessageDisposer disposer = std::exchange(disposer_, nullptr))
            disposer(wParam_, lParam_);
    }

    Released<ISDKEvent> event_;
    HWND window_ = 0;
    unsigned message_ = 0;
    WPARAM wParam_ = 0;
    LPARAM lParam_ = 0;
    MessageDisposer disposer_ = nullptr;
};

} // namespace

struct PostQueue::Impl {
    mutable std::mutex mutex;
    std::deque<Entry> entries;
    bool closed = false;
    OwnThread runner;
    int wake = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);

    int Add(Entry entry);
    bool RunFront();
    void Signal() const;
    void ClearIfEmpty() const;
    template <class Predicate>
    std::deque<Entry> TakeIf(Predicate predicate);
};

void PostQueue::Impl::Signal() const
{
    const std::uint64_t one = 1;
    // The only way to fail is a counter that is full, and then the descriptor is readable.
    static_cast<void>(!write(wake, &one, sizeof one));
}

// The descriptor is readable exactly while something waits, so that a loop nested in an entry is
// woken for the next one. Called under the lock.
void PostQueue::Impl::ClearIfEmpty() const
{
    std::uint64_t count = 0;
    if (entries.empty())
        static_cast<void>(!read(wake, &count, sizeof count));
}

int PostQueue::Impl::Add(Entry entry)
{
    // Released at the end of the call, outside the lock: what is freed may post in its turn.
    const std::unique_lock lock(mutex);
    if (closed)
        return 0;
    entries.push_back(std::move(entry));
    if (entries.size() == 1)
        Signal();
    return 1;
}

bool PostQueue::Impl::RunFront()
{
    runner.Check();
    std::unique_lock lock(mutex);
    if (entries.empty())
        return false;
    Entry entry = std::move(entries.front());
    entries.pop_front();
    ClearIfEmpty();
    lock.unlock();
    entry.Run();
    return true;
}

template <class Predicate>
std::deque<Entry> PostQueue::Impl::TakeIf(Predicate predicate)
{
    const std::lock_guard lock(mutex);
    std::deque<Entry> taken;
    std::deque<Entry> kept;
    for (Entry& entry : entries)
        (predicate(entry) ? taken : kept).push_back(std::move(entry));
    entries.swap(kept);
    ClearIfEmpty();
    return taken;
}

PostQueue& PostQueue::Get()
{
    static auto* queue = new PostQueue;
    return *queue;
}

PostQueue::PostQueue()
    : impl_(std::make_unique<Impl>())
{
}

PostQueue::~PostQueue()
{
    Close();
    close(impl_->wake);
}

int PostQueue::Post(ISDKEvent* event)
{
    return event != nullptr ? impl_->Add(Entry(Released<ISDKEvent>(event))) : 0;
}

int PostQueue::PostMessage(
    HWND window, unsigned message, WPARAM wParam, LPARAM lParam, MessageDisposer disposer)
{
    Entry entry(window, message, wParam, lParam, disposer);
    return IsWindowEntered(window) ? impl_->Add(std::move(entry)) : 0;
}

int PostQueue::GetWakeDescriptor() const
{
    return impl_->wake;
}

void PostQueue::RunWake()
{
    for (int i = 0; i < kMostPerWake; ++i)
        if (!impl_->RunFront())
            return;
}

bool PostQueue::RunOne()
{
    return impl_->RunFront();
}

void PostQueue::RunPending()
{
    while (RunOne()) {
    }
}

void PostQueue::DeliverMessages(unsigned message)
{
    impl_->runner.Check();
    auto entries = impl_->TakeIf([message](const Entry& e) { return e.IsMessage(message); });
    while (!entries.empty()) {
        Entry entry = std::move(entries.front());
        entries.pop_front();
        entry.Run();
    }
}

void PostQueue::ReleaseOfLibrary(const void* address)
{
    impl_->TakeIf([address](const Entry& e) { return IsSameLibrary(e.GetCode(), address); });
}

void PostQueue::Close()
{
    {
        const std::lock_guard lock(impl_->mutex);
        impl_->closed = true;
    }
    impl_->TakeIf([](const Entry&) { return true; });
}

void PostQueue::Reopen()
{
    const std::lock_guard lock(impl_->mutex);
    impl_->closed = false;
}

std::size_t PostQueue::GetCount() const
{
    const std::lock_guard lock(impl_->mutex);
    return impl_->entries.size();
}

int PostMessageW(
    HWND window, unsigned message, WPARAM wParam, LPARAM lParam, MessageDisposer disposer)
{
    return PostQueue::Get().PostMessage(window, message, wParam, lParam, disposer);
}

} // namespace kivo
