#include "mediares/SIDGenerator.h"

#include <gtest/gtest.h>

namespace kivo::tunehive {
namespace {

struct NextCase {
    const char16_t* current;
    const char16_t* next;
};

constexpr NextCase kNextCases[] = {
    {u"",    u"a"  },
    {u"a",   u"b"  },
    {u"z",   u"aa" },
    {u"az",  u"ba" },
    {u"zy",  u"zz" },
    {u"zz",  u"aaa"},
    {u"azz", u"baa"},
    {u"ab1", u"a"  }, // What is no SID counts as none.
    {u"A",   u"a"  },
};

TEST(SIDGenerator, CountsWithTheLastLetterLowest)
{
    for (const NextCase& row : kNextCases) {
        SIDGenerator generator;
        generator.SetCurrent(row.current);
        EXPECT_EQ(generator.Next(), row.next);
    }
}

TEST(SIDGenerator, AMillionComeInOrderAndKnowTheirPlace)
{
    SIDGenerator generator;
    String last;
    for (std::uint64_t number = 1; number <= 1000000; ++number) {
        const String sid = generator.Next();
        ASSERT_EQ(SIDGenerator::CompareSID(last, sid), -1);
        ASSERT_EQ(SIDGenerator::ToNumber(sid), number);
        ASSERT_EQ(SIDGenerator::FromNumber(number), sid);
        last = sid;
    }
}

TEST(SIDGenerator, ComparesByLengthThenByLetter)
{
    EXPECT_EQ(SIDGenerator::CompareSID(u"z", u"aa"), -1);
    EXPECT_EQ(SIDGenerator::CompareSID(u"ab", u"z"), 1);
    EXPECT_EQ(SIDGenerator::CompareSID(u"ab", u"ac"), -1);
    EXPECT_EQ(SIDGenerator::CompareSID(u"ba", u"az"), 1);
    EXPECT_EQ(SIDGenerator::CompareSID(u"ab", u"ab"), 0);
}

TEST(SIDGenerator, OnlyLettersFromAToZMakeASid)
{
    for (const char16_t* sid : {u"", u"A", u"a1", u"ä", u" a"}) {
        EXPECT_FALSE(SIDGenerator::IsValidSID(sid));
        EXPECT_FALSE(SIDGenerator::ToNumber(sid));
    }
    EXPECT_TRUE(SIDGenerator::IsValidSID(u"az"));
    EXPECT_TRUE(SIDGenerator::ToNumber(u"zzzzzzzzzzzzz"));
    EXPECT_FALSE(SIDGenerator::ToNumber(u"aaaaaaaaaaaaaa"));
    EXPECT_EQ(SIDGenerator::FirstSID(), u"a");
}

} // namespace
} // namespace kivo::tunehive
