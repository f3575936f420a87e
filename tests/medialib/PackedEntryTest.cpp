#include "medialib/PackedEntry.h"

#include "shell/contracts/common/Text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace kivo::tunehive {
namespace {

TEST(PackedEntry, GivesBackWhatWentIn)
{
    const std::string longText(70'000, 'x');
    const PackedField fields[] = {
        {-2,      "below"   },
        {0,       ""        },
        {4,       "216"     },
        {6,       longText  },
        {14,      "\xC3\xA4"},
        {100'000, "above"   },
    };
    const CPackedEntry entry("/music/\xC3\xA4.mp3", fields);
    EXPECT_EQ(entry.GetKey(), "/music/\xC3\xA4.mp3");
    const MediaInfo expected = {
        {-2, u"below"     },
        {0,  u""          },
        {4,  u"216"       },
        {6,  String(70'000, u'x')},
        {14,  u"\u00E4"             },
        {100'000,  u"above"},
    };
    EXPECT_EQ(entry.Unpack(), expected);
}

TEST(PackedEntry, HoldsAnEmptyRecord)
{
    const CPackedEntry entry("", {});
    EXPECT_EQ(entry.GetKey(), "");
    EXPECT_TRUE(entry.Unpack().empty());
}

TEST(PackedEntry, OrdersBySixteenBitUnits)
{
    // In this order; by their bytes U+1F3B5 would come last and U+FFFD before it.
    const std::vector<String> ascending = {
        u"",
        u"/a",
        u"/a.mp3",
        u"/a\u00E4",
        u"/a\u4E2D",
        u"/a\uCFFF\u0001",
        u"/a\uD7FF",
        u"/a\U0001F3B5",
        u"/a\U0001F3B5b",
        u"/a\U0001F3B6",
        String(u"/a") + u'\xDC80',
        String(u"/a") + u'\xDC80' + u"b",
        String(u"/a") + u'\xDCFF',
        u"/a\uE000",
        u"/a\uFFFD",
        u"/b",
    };
    ASSERT_TRUE(std::is_sorted(ascending.begin(), ascending.end()));
    for (const String& a : ascending)
        for (const String& b : ascending) {
            SCOPED_TRACE(common::CString_to_utf8(a) + " and " + common::CString_to_utf8(b));
            EXPECT_EQ(ComesBefore(common::CString_to_utf8(a), common::CString_to_utf8(b)), a < b);
        }
}

} // namespace
} // namespace kivo::tunehive
