#include "shell/base/TuneHiveEvent.h"

#include "shell/contracts/base/Released.h"
#include "tests/support/FakeHost.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace kivo::tunehive {
namespace {

class CountedParam : public ITuneHive_AsyncCallbackParam {
public:
    explicit CountedParam(int& frees)
        : frees_(frees)
    {
    }

protected:
    ~CountedParam() override { ++frees_; }

private:
    int& frees_;
};

class Receiver {
public:
    void OnEvent(ITuneHive_AsyncCallbackParam* param)
    {
        ++calls;
        last = param;
    }
    [[nodiscard]] LifeWatch Watch() const { return life_.Watch(); }

    int calls = 0;
    ITuneHive_AsyncCallbackParam* last = nullptr;

private:
    LifeToken life_;
};

class TuneHiveEventTest : public testing::Test {
protected:
    test::FakeHost host_;
    int frees_ = 0;
};

TEST_F(TuneHiveEventTest, CallsTheDelegateWithItsParameterAndFreesIt)
{
    Receiver receiver;
    auto* const param = new CountedParam(frees_);
    PostCallback(AsyncCallback(&receiver, &Receiver::OnEvent), param, receiver.Watch());
    EXPECT_EQ(receiver.calls, 0);
    host_.RunPosted();
    EXPECT_EQ(receiver.calls, 1);
    EXPECT_EQ(receiver.last, param);
    EXPECT_EQ(frees_, 1);
}

TEST_F(TuneHiveEventTest, DoesNothingWithoutAParameter)
{
    Receiver receiver;
    PostCallback(AsyncCallback(&receiver, &Receiver::OnEvent), nullptr, receiver.Watch());
    host_.RunPosted();
    EXPECT_EQ(receiver.calls, 0);
}

TEST_F(TuneHiveEventTest, DoesNothingWithoutADelegateAndStillFrees)
{
    PostCallback(AsyncCallback(), new CountedParam(frees_), {});
    host_.RunPosted();
    EXPECT_EQ(frees_, 1);
}

TEST_F(TuneHiveEventTest, DoesNothingOnceItsObjectIsGone)
{
    auto receiver = std::make_unique<Receiver>();
    PostCallback(AsyncCallback(receiver.get(), &Receiver::OnEvent),
                 new CountedParam(frees_),
                 receiver->Watch());
    receiver.reset();
    host_.RunPosted(); // The address sanitizer sees a call into the dead object.
    EXPECT_EQ(frees_, 1);
}

TEST_F(TuneHiveEventTest, AQueueThatIsReleasedFreesWithoutCalling)
{
    Receiver receiver;
    PostCallback(
        AsyncCallback(&receiver, &Receiver::OnEvent), new CountedParam(frees_), receiver.Watch());
    EXPECT_EQ(host_.ReleasePosted(), 1);
    EXPECT_EQ(receiver.calls, 0);
    EXPECT_EQ(frees_, 1);
}

} // namespace
} // namespace kivo::tunehive
