#include "shell/base/XmlBounds.h"

#include <gtest/gtest.h>

#include <string>

namespace kivo::tunehive {
namespace {

std::string Repeat(std::string_view text, int count)
{
    std::string all;
    for (int i = 0; i < count; ++i)
        all += text;
    return all;
}

struct BoundsCase {
    const char* name;
    std::string text;
    bool isInside;
};

const BoundsCase kBoundsCases[] = {
    {"NoText",                         "",                                                true},
    {"DepthAtTheLimit",                Repeat("<a>",                                      64),true},
    {"DepthBeyondTheLimit",                                Repeat("<a>",                                                             65),false},
    {"ClosedElementsAreNoDepth",                           Repeat("<a/>",                                                                            1000),                                  true},
    {"EndTagsComeBackUp",                           Repeat("<a></a>",1000),true},
    {"SpareEndTagsBuyNoDepth",Repeat("</a>",                                      100) + Repeat("<a>",                                                                       65), false},
    {"AttributesAtTheLimit",         "<a " + Repeat("b='' ",                                                        256) + "/>",true},
    {"AttributesBeyondTheLimit",                           "<a " + Repeat("b='' ",                                                                            257) + "/>",false},
    {"AttributesAreCountedPerElement",                     Repeat("<a " + Repeat("b='' ",           200) + "/>",            3), true},
    {"QuotedTagsAreText","<a b='" + Repeat("<c>",100) + "'/>",true},
    {"ASlashInsideQuotesClosesNothing", Repeat("<a b='/'>", 65),false},
    {"CommentsAreText",                            "<!--" + Repeat("<c>",                                                                             100) + "-->",true},
    {"ACommentEndsWhereItEnds",                    "<!-- > -->" + Repeat("<c>",                                                                                                                       65),                                                                                                                  false},
    {"CharacterDataIsText",              "<a><![CDATA[" + Repeat("<c>",                                                            100) + "]]></a>",                                                                            true},
    {"AnInstructionEndsAtTheFirstAngle",                "<? >" + Repeat("<c>",                 65) + " ?>",false},
    {"ADoctypeEndsAtTheFirstAngle",                                "<!DOCTYPE x [>" + Repeat("<c>",                                                         65) + "]>",false},
    {"ANameMayBeginWithAHighByte",                           Repeat("<\xE4>",                                                                            65),false},
    {"AnUnendedTagIsTheParsersMatter",                "<a b='",  true},
};

TEST(XmlBounds, CountWhatTheParserWouldEnter)
{
    for (const BoundsCase& row : kBoundsCases)
        EXPECT_EQ(IsInsideXmlBounds(row.text), row.isInside) << row.name;
}

struct Utf8Case {
    const char* name;
    const char* text;
    bool isWhole;
};

constexpr Utf8Case kUtf8Cases[] = {
    {"Ascii",                      "a",               true },
    {"TwoThreeAndFourBytes",       "ä中\U0001F3B5", true },
    {"ALoneSurrogate",             "\xED\xB2\x80",    true },
    {"AStrayContinuation",         "\x80",            true },
    {"ALeadBeforeAQuote",          "\xE4\"",          false},
    {"TwoOfThreeBytes",            "\xE4\xB8 ",       false},
    {"ALeadAtTheEnd",              "\xC3",            false},
    {"ALeadThatIsTakenForALetter", "\xF5\"",          true },
};

TEST(IsWholeUtf8, ALeadByteHasItsFollowers)
{
    for (const Utf8Case& row : kUtf8Cases) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(IsWholeUtf8(row.text), row.isWhole);
    }
}

} // namespace
} // namespace kivo::tunehive
