#include "mediares/BySid.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace kivo::tunehive {
namespace {

TEST(BySid, AgreesWithAMapAtEachStepOfARandomRun)
{
    std::mt19937 random(23);
    SIDGenerator sids;
    BySid<int> values;
    std::map<String, int> plain;
    const auto anySid = [&] { return SIDGenerator::FromNumber(1 + random() % 400); };
    for (int step = 0; step < 5000; ++step) {
        const auto kind = random() % 100;
        if (kind < 45) {
            const String sid = sids.Next();
            values.Add(sid, step);
            plain[sid] = step;
        } else if (kind < 97) {
            // From both ends and between, also what isn't there.
            const String sid = kind < 60 && !plain.empty() ? plain.begin()->first : anySid();
            values.Remove(sid);
            plain.erase(sid);
        } else if (kind == 99) {
            values.Clear();
            plain.clear();
            if (random() % 2 == 0)
                sids.SetCurrent(String()); // As a load that failed goes on counting from before.
        } else {
            static_cast<void>(sids.Next()); // One that was never added.
        }
        const String sid = anySid();
        const int* const found = values.Find(sid);
        ASSERT_EQ(found != nullptr, plain.contains(sid));
        if (found != nullptr) {
            ASSERT_EQ(*found, plain[sid]);
        }
    }
    EXPECT_EQ(values.Find(u""), nullptr);
    EXPECT_EQ(values.Find(u"no sid"), nullptr);
    EXPECT_EQ(values.Find(String(40, u'z')), nullptr);
}

TEST(BySid, AValueStaysWhereItIs)
{
    SIDGenerator sids;
    BySid<int> values;
    const int* const first = &values.Add(sids.Next(), 7);
    for (int i = 0; i < 1000; ++i)
        values.Add(sids.Next(), i);
    EXPECT_EQ(values.Find(u"a"), first);
    EXPECT_EQ(*first, 7);
}

} // namespace
} // namespace kivo::tunehive
