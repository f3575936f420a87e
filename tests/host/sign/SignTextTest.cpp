#include "host/sign/SignText.h"

#include "tests/support/CaseName.h"

#include <gtest/gtest.h>

namespace kivo::test {

namespace {

using host::CleanSignText;
using host::NormalizeSignId;

struct TextCase {
    const char* name;
    String text;
    String clean;
};

const String kNul(u"a\0b", 3);
const String kHalf = String(u"a") + char16_t(0xD800) + u"b";
const String kLong(600, u'a');
const String kWhole(512, u'a');
const String kShort(511, u'a');
const String kPairAtTheBound = kShort + u"\U0001F3B5";
const String kBlankAtTheBound = kShort + u" b";

const TextCase kTextCases[] = {
    {"StaysAsItIs",      u"A title \u00E4 \u4E2D",                u"A title \u00E4 \u4E2D"   },
    {"BlanksAtTheEnds",  u"  a  ",                                u"a"                       },
    {"RunsOfWhiteSpace", u"a \t\r\n\u3000 b",                     u"a b"                     },
    {"LineSeparator",    u"a\u2028b",                             u"a b"                     },
    {"Controls",         u"a\u0001b\u007Fc\u009Bd",               u"abcd"                    },
    {"Nul",              kNul,                                    u"ab"                      },
    {"Directions",       u"\u202Egnos\u202C \u2066x\u2069\u200F", u"gnos x"                  },
    {"UnseenMarks",      u"\uFEFFa\u200Bb\u2060c",                u"abc"                     },
    {"NoCharacters",     u"a\uFFFE\uFDD0b",                       u"ab"                      },
    {"JoinersStay",      u"\u0645\u06CC\u200C\u062E",             u"\u0645\u06CC\u200C\u062E"},
    {"HalfACharacter",   kHalf,                                   u"a\uFFFDb"                },
    {"PairsStay",        u"\U0001F3B5",                           u"\U0001F3B5"              },
    {"NothingIsLeft",    u"\u202E \u0007",                        u""                        },
    {"CutAtTheBound",    kLong,                                   kWhole                     },
    {"NotThroughAPair",  kPairAtTheBound,                         kShort                     },
    {"NoBlankAtTheCut",  kBlankAtTheBound,                        kShort                     },
};

class TextTest : public testing::TestWithParam<TextCase> {};

TEST_P(TextTest, IsCleaned)
{
    EXPECT_EQ(CleanSignText(GetParam().text), GetParam().clean);
}

INSTANTIATE_TEST_SUITE_P(Rows, TextTest, testing::ValuesIn(kTextCases), CaseName<TextCase>);

const String kLongId = String(1100, u'a') + u"@b";

const TextCase kIdCases[] = {
    {"AsItIs",        u"bob@sign.example",       u"bob@sign.example"},
    {"SmallLetters",  u"Bob@Sign.Example",       u"bob@sign.example"},
    {"BlanksAround",  u" bob@sign.example\n",    u"bob@sign.example"},
    {"Device",        u"bob@sign.example/home",  u"bob@sign.example"},
    {"AtInTheDevice", u"bob@sign.example/a@b",   u"bob@sign.example"},
    {"NoServer",      u"bob@",                   u""                },
    {"NoName",        u"@sign.example",          u""                },
    {"ServerAlone",   u"sign.example",           u""                },
    {"TwoAts",        u"bob@a@sign.example",     u""                },
    {"BlankInside",   u"bob smith@sign.example", u""                },
    {"Direction",     u"bob\u202E@sign.example", u""                },
    {"Markup",        u"<b>@sign.example",       u""                },
    {"Quote",         u"bob\"@sign.example",     u""                },
    {"TooLong",       kLongId,                   u""                },
};

class IdTest : public testing::TestWithParam<TextCase> {};

TEST_P(IdTest, IsNormalizedOrRefused)
{
    EXPECT_EQ(NormalizeSignId(GetParam().text), GetParam().clean);
}

INSTANTIATE_TEST_SUITE_P(Rows, IdTest, testing::ValuesIn(kIdCases), CaseName<TextCase>);

} // namespace

} // namespace kivo::test
