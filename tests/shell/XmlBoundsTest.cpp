#include "shell/base/XmlBounds.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace kivo::tunehive {
namespace {

struct Piece {
    std::string_view text;
};

std::string operator*(int count, Piece piece)
{
    std::string all;
    for (int i = 0; i < count; ++i)
        all += piece.text;
    return all;
}

constexpr Piece kOpen{"<a>"};
constexpr Piece kChild{"<c>"};
constexpr Piece kAttribute{"b='' "};
const std::string kManyAttributes = "<a " + 200 * kAttribute + "/>";

struct BoundsCase {
    const char* name;
    std::string text;
    bool isInside;
};

const BoundsCase kBoundsCases[] = {
    {"NoText",                           "",                                        true },
    {"DepthAtTheLimit",                  64 * kOpen,                                true },
    {"DepthBeyondTheLimit",              65 * kOpen,                                false},
    {"ClosedElementsAreNoDepth",         1000 * Piece{"<a/>"},                      true },
    {"EndTagsComeBackUp",                1000 * Piece{"<a></a>"},                   true },
    {"SpareEndTagsBuyNoDepth",           100 * Piece{"</a>"} + 65 * kOpen,          false},
    {"AttributesAtTheLimit",             "<a " + 256 * kAttribute + "/>",           true },
    {"AttributesBeyondTheLimit",         "<a " + 257 * kAttribute + "/>",           false},
    {"AttributesAreCountedPerElement",   3 * Piece{kManyAttributes},                true },
    {"QuotedTagsAreText",                "<a b='" + 100 * kChild + "'/>",           true },
    {"ASlashInsideQuotesClosesNothing",  65 * Piece{"<a b='/'>"},                   false},
    {"CommentsAreText",                  "<!--" + 100 * kChild + "-->",             true },
    {"ACommentEndsWhereItEnds",          "<!-- > -->" + 65 * kChild,                false},
    {"CharacterDataIsText",              "<a><![CDATA[" + 100 * kChild + "]]></a>", true },
    {"AnInstructionEndsAtTheFirstAngle", "<? >" + 65 * kChild + " ?>",              false},
    {"ADoctypeEndsAtTheFirstAngle",      "<!DOCTYPE x [>" + 65 * kChild + "]>",     false},
    {"ANameMayBeginWithAHighByte",       65 * Piece{"<\xE4>"},                      false},
    {"AnUnendedTagIsTheParsersMatter",   "<a b='",                                  true },
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
