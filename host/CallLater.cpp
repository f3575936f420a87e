#include "host/CallLater.h"

#include "platform/base/PostQueue.h"
#include "shell/contracts/base/SDKEvent.h"

#include <utility>

namespace kivo::host {

namespace {

class Call final : public ISDKEvent {
public:
    Call(LifeWatch life, std::function<void()> call)
        : life_(std::move(life))
        , call_(std::move(call))
    {
    }
    void Execute() override
    {
        if (life_.IsAlive())
            call_();
    }
    void Release() override { delete this; }

private:
    ~Call() = default;

    LifeWatch life_;
    std::function<void()> call_;
};

} // namespace

void CallLater(const LifeWatch& life, std::function<void()> call)
{
    PostQueue::Get().Post(new Call(life, std::move(call)));
}

} // namespace kivo::host
