#include "host/Terminal.h"

#include "tests/host/Pipe.h"

#include <gtest/gtest.h>
namespace kivo::host {
namespace {

TEST(Terminal, ElsewhereEachChangeIsALine)
{
    Pipe pipe;
    {
        Terminal terminal(pipe.GetInput(), 0);
        terminal.ShowStatus("Opening: a");
        terminal.ShowStatus("Opening: a");
        terminal.PrintLine("told");
        terminal.ShowStatus("");
        terminal.ShowStatus("Playing: a");
    }
    EXPECT_EQ(pipe.Take(), "Opening: a\nkivo: told\nPlaying: a\n");
}

TEST(Terminal, OnATerminalTheStatusIsRewrittenBelowTheLines)
{
    Pipe pipe;
    {
        Terminal terminal(pipe.GetInput(), 8);
        terminal.ShowStatus("Playing: a");
        terminal.PrintLine("told");
        terminal.ShowStatus("b");
    }
    EXPECT_EQ(pipe.Take(),
              "\r\033[KPlaying"
              "\r\033[Kkivo: told\nPlaying"
              "\r\033[Kb\n");
}

struct HarmlessCase {
    const char* name;
    String text;
    std::string shown;
};

TEST(ForTerminal, LeavesNothingThatSteersATerminal)
{
    const HarmlessCase cases[] = {
        {"plain text",        u"Ça va – 你好", "Ça va – 你好"},
        {"escape sequence",   u"a\x1b[2Jb",         "a?[2Jb"           },
        {"eight-bit control",
         u"a\x9b"
         u"2J",                                     "a?2J"             },
        {"line ends",         u"a\r\nb\u2028c",     "a??b?c"           },
        {"direction marks",   u"a\u202Eb\u2066c",   "a?b?c"            },
        {"byte of a path",    u"a\xDCE9.mp3",       "a\uFFFD.mp3"      },
    };
    for (const HarmlessCase& row : cases) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(ForTerminal(row.text), row.shown);
    }
}

TEST(CutToColumns, CutsBetweenCharacters)
{
    EXPECT_EQ(CutToColumns("abc", 2), "ab");
    EXPECT_EQ(CutToColumns("äöü", 2), "äö");
    EXPECT_EQ(CutToColumns("你好吗", 5), "你好");
    EXPECT_EQ(CutToColumns("ab", 0), "");
    EXPECT_EQ(CutToColumns("\xE4", 5), "\xE4"); // A cut sequence ends with the text.
}

} // namespace
} // namespace kivo::host
