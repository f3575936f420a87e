#include "host/sign/SignMail.h"

#include "platform/base/PostQueue.h"
#include "shell/contracts/base/SDKEvent.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <utility>

namespace kivo::host {

namespace {

// Events, so that a flood of them neither holds up the window nor fills the memory.
constexpr std::size_t kMostAtOnce = 500;
constexpr std::size_t kMostWaiting = 2000;

class Delivery final : public ISDKEvent {
public:
    explicit Delivery(std::shared_ptr<SignMail> mail)
        : mail_(std::move(mail))
    {
    }

    void Execute() override { mail_->Deliver(); }
    void Release() override { delete this; }

private:
    std::shared_ptr<SignMail> mail_; // Both threads own it; see the class.
};

} // namespace

SignMail::SignMail(std::unique_ptr<ISecretStore> passwords,
                   SignAddressRule addresses,
                   const SignPatience& longest)
    : store(std::move(passwords))
    , rule(addresses)
    , patience(longest)
    , wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
}

SignMail::~SignMail()
{
    close(wake_);
}

void SignMail::Send(Command command, unsigned session)
{
    {
        const std::lock_guard lock(mutex_);
        orders_.push_back({std::move(command), session});
    }
    Wake();
}

void SignMail::Quit()
{
    {
        const std::lock_guard lock(mutex_);
        isQuitting_ = true;
    }
    Wake();
}

bool SignMail::WaitForEnd(std::chrono::milliseconds longest)
{
    std::unique_lock lock(mutex_);
    return ended_.wait_for(lock, longest, [this] { return isEnded_; });
}

void SignMail::Tell(Event event, unsigned session)
{
    bool isFirst = false;
    {
        const std::lock_guard lock(mutex_);
        isFirst = letters_.empty();
        letters_.push_back({std::move(event), session});
    }
    if (isFirst)
        PostQueue::Get().Post(new Delivery(shared_from_this()));
}

void SignMail::Deliver()
{
    std::deque<Letter> letters;
    bool wasFull = false;
    bool isMore = false;
    {
        const std::lock_guard lock(mutex_);
        wasFull = letters_.size() >= kMostWaiting;
        const std::size_t count = std::min(letters_.size(), kMostAtOnce);
        const auto end = letters_.begin() + static_cast<std::ptrdiff_t>(count);
        letters.assign(std::move_iterator(letters_.begin()), std::move_iterator(end));
        letters_.erase(letters_.begin(), end);
        isMore = !letters_.empty();
    }
    if (wasFull)
        Wake();
    for (const Letter& letter : letters) {
        if (receiver_ != nullptr)
            receiver_->OnMail(letter.event, letter.session);
    }
    if (isMore)
        PostQueue::Get().Post(new Delivery(shared_from_this()));
}

bool SignMail::IsFull()
{
    // Whoever quits waits for the thread and takes nothing more.
    const std::lock_guard lock(mutex_);
    return letters_.size() >= kMostWaiting && !isQuitting_;
}

std::deque<SignMail::Order> SignMail::TakeOrders()
{
    std::uint64_t count = 0;
    static_cast<void>(!read(wake_, &count, sizeof count));
    const std::lock_guard lock(mutex_);
    return std::exchange(orders_, {});
}

bool SignMail::IsQuitting()
{
    const std::lock_guard lock(mutex_);
    return isQuitting_ && orders_.empty();
}

void SignMail::End()
{
    // Under the lock: whoever waits may free what belongs to it right after.
    const std::lock_guard lock(mutex_);
    isEnded_ = true;
    ended_.notify_all();
}

void SignMail::Wake() const
{
    const std::uint64_t one = 1;
    static_cast<void>(!write(wake_, &one, sizeof one));
}

} // namespace kivo::host
