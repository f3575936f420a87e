#include "host/sign/SignMail.h"

#include "platform/base/PostQueue.h"
#include "shell/contracts/base/SDKEvent.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>
#include <utility>

namespace kivo::host {

namespace {

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

SignMail::SignMail(std::unique_ptr<ISecretStore> passwords, SignAddressRule addresses)
    : store(std::move(passwords))
    , rule(addresses)
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
    {
        const std::lock_guard lock(mutex_);
        letters.swap(letters_);
    }
    for (const Letter& letter : letters) {
        if (receiver_ != nullptr)
            receiver_->OnMail(letter.event, letter.session);
    }
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
