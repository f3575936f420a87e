#include "mediares/PackedText.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace kivo::tunehive {
namespace {

int Sign(int value)
{
    return (value > 0 ? 1 : 0) - (value < 0 ? 1 : 0);
}

std::vector<String> MakeTexts()
{
    std::vector<String> texts = {u"",
                                 u"a",
                                 u"aa",
                                 u"ab",
                                 u"\u00FF",
                                 u"\u0100",
                                 u"a\u0100",
                                 u"中",
                                 u"\xDC80",
                                 u"\xFFFF",
                                 String(1, u'\0'),
                                 String(u"a\0b", 3)};
    std::mt19937 random(3);
    for (int i = 0; i < 60; ++i) {
        String text(random() % 5, u'\0');
        for (char16_t& unit : text)
            unit = static_cast<char16_t>(random() % (i % 2 == 0 ? 4U : 0x10000U));
        texts.push_back(text);
    }
    return texts;
}

TEST(PackedText, ComesBackExactly)
{
    for (const String& text : MakeTexts()) {
        EXPECT_TRUE(PackedText(text).IsSet());
        EXPECT_EQ(PackedText(text).Unpack(), text);
    }
    EXPECT_FALSE(PackedText().IsSet());
    EXPECT_EQ(PackedText().Unpack(), u"");
}

TEST(PackedText, ComparesAsStringsDo)
{
    const std::vector<String> texts = MakeTexts();
    for (const String& a : texts)
        for (const String& b : texts) {
            EXPECT_EQ(Sign(PackedText(a).Compare(PackedText(b))), Sign(a.compare(b)));
            EXPECT_EQ(Sign(PackedText(a).Compare(b)), Sign(a.compare(b)));
        }
}

} // namespace
} // namespace kivo::tunehive
