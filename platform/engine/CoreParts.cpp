#include "platform/engine/CoreParts.h"

#include <chrono>
#include <future>
#include <thread>
#include <utility>

namespace kivo {

namespace {

constexpr std::chrono::seconds kLongestWait(2);

} // namespace

bool CoreMailbox::Open(const Delegate<unsigned>& receiver)
{
    receiver_ = receiver;
    return CreateHandle();
}

void CoreMailbox::Post(CoreMessage message) const
{
    PostMessageW(GetHandle(), static_cast<unsigned>(message), 0, 0);
}

LPARAM CoreMailbox::WindowProc(unsigned message, WPARAM /*wParam*/, LPARAM /*lParam*/)
{
    receiver_(message);
    return 0;
}

CoreParts::CoreParts(HWND mailbox, std::unique_ptr<WaveFile> wave, const CoreSettings& settings)
    : mailbox_(mailbox)
    , wave_(std::move(wave))
    , core_(MakeCore(settings))
{
    if (!core_)
        return;
    mpv_set_wakeup_callback(core_.get(), &CoreParts::OnWakeUp, this);
    render_ = std::make_unique<RenderThread>(core_.get(), [mailbox] {
        PostMessageW(mailbox, static_cast<unsigned>(CoreMessage::Frame), 0, 0);
    });
}

CoreParts::~CoreParts()
{
    End();
}

void CoreParts::End()
{
    if (core_)
        mpv_set_wakeup_callback(core_.get(), nullptr, nullptr);
    render_.reset(); // Before the core: the other order ends the process.
    core_.reset();
}

bool CoreParts::Close(std::unique_ptr<CoreParts> parts)
{
    std::promise<bool> ended;
    std::future<bool> isDone = ended.get_future();
    std::thread([owned = std::move(parts), ended = std::move(ended)]() mutable {
        owned->End();
        const bool isWritten = !owned->wave_ || owned->wave_->Finish();
        owned.reset();
        ended.set_value(isWritten);
    }).detach();
    return isDone.wait_for(kLongestWait) != std::future_status::ready || isDone.get();
}

// Runs on a thread of the core's and may call nothing of it.
void CoreParts::OnWakeUp(void* self)
{
    auto* const parts = static_cast<CoreParts*>(self);
    if (!parts->isTold_.exchange(true))
        PostMessageW(parts->mailbox_, static_cast<unsigned>(CoreMessage::Events), 0, 0);
}

} // namespace kivo
