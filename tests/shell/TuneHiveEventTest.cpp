#include "shell/base/TuneHiveEvent.h"

#include "tests/support/FakeHost.h"

#include <gtest/gtest.h>

#include <memory>

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
    explicit Receiver(int& calls)
        : calls_(calls)
    {
    }
    void OnEvent(ITuneHive_AsyncCallbackParam* param)
    {
        ++calls_;
        EXPECT_NE(dynamic_cast<CountedParam*>(param), nullptr);
    }
    [[nodiscard]] LifeWatch Watch() const { return life_.Watch(); }

private:
    int& calls_;
    LifeToken life_;
};

struct Case {
    const char* name;
    bool hasDelegate;
    bool hasParameter;
    bool objectGoes;
    bool isReleased; // By a queue that runs nothing more.
    int calls;
};

constexpr Case kCases[] = {
    {"CallsTheDelegate",         true,  true,  false, false, 1},
    {"NotWithoutAParameter",     true,  false, false, false, 0},
    {"NotWithoutADelegate",      false, true,  false, false, 0},
    {"NotOnceItsObjectIsGone",   true,  true,  true,  false, 0},
    {"NotFromAQueueThatIsFreed", true,  true,  false, true,  0},
};

TEST(TuneHiveEvent, CallsOnceAtMostAndFreesItsParameterInAnyCase)
{
    for (const Case& row : kCases) {
        SCOPED_TRACE(row.name);
        test::FakeHost host;
        int frees = 0;
        int calls = 0;
        auto receiver = std::make_unique<Receiver>(calls);
        PostCallback(row.hasDelegate ? AsyncCallback(receiver.get(), &Receiver::OnEvent)
                                     : AsyncCallback(),
                     row.hasParameter ? new CountedParam(frees) : nullptr,
                     receiver->Watch());
        if (row.objectGoes)
            receiver.reset(); // The address sanitizer sees a call into the dead object.
        EXPECT_EQ(row.isReleased ? host.ReleasePosted() : host.RunPosted(), 1);
        EXPECT_EQ(calls, row.calls);
        EXPECT_EQ(frees, row.hasParameter ? 1 : 0);
    }
}

} // namespace
} // namespace kivo::tunehive
