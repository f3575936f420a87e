#include "shell/contracts/framework/Files.h"

#include "shell/contracts/framework/StdioFile.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <array>

namespace kivo {
namespace {

using namespace std::string_literals; // The rows hold NULs.
using test::TempFolder;

constexpr std::size_t kMegabyte = std::size_t{1024} * 1024;

TEST(BinaryFile, ReadsAtAnyPlaceAndStopsAtTheEnd)
{
    const TempFolder folder;
    folder.Write("a", "0123456789");
    CBinaryFile file;
    ASSERT_TRUE(file.Open(folder.GetPath("a")));
    EXPECT_EQ(file.GetLength(), 10);
    std::array<char, 8> bytes{};
    EXPECT_EQ(file.ReadAt(2, bytes.data(), 4), 4U);
    EXPECT_EQ(std::string_view(bytes.data(), 4), "2345");
    EXPECT_EQ(file.ReadAt(7, bytes.data(), 8), 3U);
    EXPECT_EQ(file.ReadAt(10, bytes.data(), 8), 0U);
    EXPECT_EQ(file.ReadAt(std::int64_t{1} << 40, bytes.data(), 8), 0U);
    EXPECT_EQ(file.ReadAt(-1, bytes.data(), 8), 0U);
    file.Close();
    EXPECT_EQ(file.GetLength(), 0);
    EXPECT_EQ(file.ReadAt(0, bytes.data(), 8), 0U);
}

// A FIFO without a writer would keep an open for reading waiting for ever.
TEST(Files, OnlyRegularFilesAreOpened)
{
    const TempFolder folder;
    folder.MakeFifo("fifo.mp3");
    folder.MakeFolder("folder.mp3");
    folder.Link("loop.mp3", "loop.mp3");
    CBinaryFile binary;
    CStdioFile lines;
    std::string bytes = "before";
    for (const String& path : {folder.GetPath("fifo.mp3"),
                               folder.GetPath("folder.mp3"),
                               folder.GetPath("loop.mp3"),
                               String(u"/dev/zero"),
                               String(u"/dev/tty")}) {
        SCOPED_TRACE(testing::PrintToString(path));
        EXPECT_FALSE(binary.Open(path));
        EXPECT_FALSE(lines.Open(path));
        EXPECT_EQ(ReadFileBytes(path, bytes, 100), ReadResult::Failed);
    }
    EXPECT_FALSE(binary.Open(folder.GetPath("missing")));
    EXPECT_EQ(ReadFileBytes(folder.GetPath("missing"), bytes, 100), ReadResult::Missing);
    EXPECT_EQ(ReadFileBytes(folder.GetPath("missing/below"), bytes, 100), ReadResult::Missing);
    EXPECT_EQ(bytes, "before");
}

TEST(Files, AreReadWholeUpToTheLimit)
{
    const TempFolder folder;
    folder.Write("ten", "0123456789");
    folder.Write("empty", "");
    std::string bytes;
    EXPECT_EQ(ReadFileBytes(folder.GetPath("ten"), bytes, 10), ReadResult::Read);
    EXPECT_EQ(bytes, "0123456789");
    EXPECT_EQ(ReadFileBytes(folder.GetPath("ten"), bytes, 9), ReadResult::TooLarge);
    EXPECT_EQ(bytes, "0123456789");
    EXPECT_EQ(ReadFileBytes(folder.GetPath("empty"), bytes, 0), ReadResult::Read);
    EXPECT_EQ(bytes, "");
    // Its size says 0, its content doesn't.
    EXPECT_EQ(ReadFileBytes(u"/proc/self/status", bytes, kMegabyte), ReadResult::Read);
    EXPECT_NE(bytes.find("Pid:"), std::string::npos);
    EXPECT_EQ(ReadFileBytes(u"/proc/self/status", bytes, 100), ReadResult::TooLarge);
}

TEST(StdioFile, GivesLinesWithoutTheirEndsAndDropsThoseAboveItsBound)
{
    using Lines = std::vector<std::string>;
    const std::string longest(kMegabyte / 16, 'x');
    struct Row {
        const char* name;
        std::string content;
        Lines lines;
    };
    const Row rows[] = {
        {"EachKindOfEnd",       "a\nb\r\n\nc",            {"a", "b", "", "c"}},
        {"NoEmptyLineAtTheEnd", "a\n",                    {"a"}              },
        {"OnlyOneReturnGoes",   "a\rb\r\r\n",             {"a\rb\r"}         },
        {"ANulIsAByte",         "a\0b\n"s,                {"a\0b"s}          },
        {"OneEmptyLine",        "\n",                     {""}               },
        {"Empty",               "",                       {}                 },
        {"TheLongest",          longest + "\nb",          {longest, "b"}     },
        {"Longer",              "a\n" + longest + "x\nb", {"a", "b"}         },
        {"LongerAtTheEnd",      "a\n" + longest + "x",    {"a"}              },
    };
    const TempFolder folder;
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        folder.Write("lines", row.content);
        CStdioFile file;
        ASSERT_TRUE(file.Open(folder.GetPath("lines")));
        Lines lines;
        std::string line;
        while (file.ReadString(line))
            lines.push_back(line);
        EXPECT_EQ(lines, row.lines);
        EXPECT_FALSE(file.ReadString(line)); // The end stays the end.
    }
}

TEST(StdioFile, EndsAfterSixteenMegabytes)
{
    const TempFolder folder;
    std::string content;
    for (std::size_t i = 0; i < 17 * kMegabyte / 1024; ++i)
        content += std::string(1023, 'x') + '\n';
    folder.Write("lines", content);
    CStdioFile file;
    ASSERT_TRUE(file.Open(folder.GetPath("lines")));
    std::size_t count = 0;
    for (std::string line; file.ReadString(line);)
        ++count;
    EXPECT_EQ(count, 16 * 1024U);
}

} // namespace
} // namespace kivo
