#include "mediares/PackedText.h"

#include "shell/contracts/common/Text.h"

#include <gtest/gtest.h>

#include <memory_resource>
#include <random>
#include <vector>

namespace kivo::tunehive {
namespace {

std::vector<String> MakeTexts()
{
    std::vector<String> texts = {
        u"", u"a", u"aa", u"ab", u"\u00FF", u"\u0100", u"a\u0100", u"中", u"\xDC80", u"\xFFFF"};
    texts.emplace_back(1, u'\0');
    texts.emplace_back(u"a\0b", 3);
    std::mt19937 random(3);
    for (int i = 0; i < 60; ++i) {
        String text(random() % 5, u'\0');
        for (char16_t& unit : text)
            unit = static_cast<char16_t>(random() % (i % 2 == 0 ? 4U : 0x10000U));
        texts.push_back(text);
    }
    return texts;
}

TEST(PackedText, ComesBackExactlyAndIsTheSameForTheSameTextAlone)
{
    const std::vector<String> texts = MakeTexts();
    PackedTexts packed(*std::pmr::new_delete_resource());
    for (const String& text : texts) {
        const PackedText a = packed.Pack(text);
        EXPECT_TRUE(a.IsSet());
        EXPECT_EQ(a.Unpack(), text);
        for (const String& other : texts) {
            const PackedText b = packed.Pack(other);
            EXPECT_EQ(a == b, text == other);
            packed.Drop(b);
        }
        packed.Drop(a);
    }
    packed.Drop(PackedText());
    EXPECT_FALSE(PackedText().IsSet());
    EXPECT_EQ(PackedText().Unpack(), u"");
}

TEST(PackedText, ItsUtf8IsThatOfTheText)
{
    std::vector<String> texts = MakeTexts();
    // Each place of a word of eight, and the rest behind it.
    for (const char16_t unit : {u'\0', u'\x01', u'\x7F', u'\x80', u'\xFF'})
        for (std::size_t place = 0; place < 19; ++place)
            texts.emplace_back(19, u'x')[place] = unit;
    std::pmr::monotonic_buffer_resource memory;
    PackedTexts packed(memory);
    std::string scratch;
    for (const String& text : texts)
        EXPECT_EQ(packed.Pack(text).ToUtf8(scratch), common::CString_to_utf8(text));
    EXPECT_EQ(PackedText().ToUtf8(scratch), "");
}

} // namespace
} // namespace kivo::tunehive
