#include "shell/contracts/framework/Files.h"

#include "shell/contracts/framework/StdioFile.h"
#include "tests/platform/base/ScratchFolder.h"

#include <gtest/gtest.h>

#include <array>

namespace kivo {
namespace {

using test::ScratchFolder;

constexpr std::size_t kMegabyte = std::size_t{1024} * 1024;

TEST(BinaryFile, ReadsAtAnyPlaceAndStopsAtTheEnd)
{
    const ScratchFolder folder;
    folder.Write("a", "0123456789");
    CBinaryFile file;
    ASSERT_TRUE(file.Open(folder.Path("a")));
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
    const ScratchFolder folder;
    folder.MakeFifo("fifo.mp3");
    folder.MakeFolder("folder.mp3");
    folder.Link("loop.mp3", "loop.mp3");
    CBinaryFile binary;
    CStdioFile lines;
    std::string bytes = "before";
    for (const String& path : {folder.Path("fifo.mp3"),
                               folder.Path("folder.mp3"),
                               folder.Path("loop.mp3"),
                               String(u"/dev/zero"),
                               String(u"/dev/tty")}) {
        SCOPED_TRACE(testing::PrintToString(path));
        EXPECT_FALSE(binary.Open(path));
        EXPECT_FALSE(lines.Open(path));
        EXPECT_EQ(ReadFileBytes(path, bytes, 100), ReadResult::Failed);
    }
    EXPECT_FALSE(binary.Open(folder.Path("missing")));
    EXPECT_EQ(ReadFileBytes(folder.Path("missing"), bytes, 100), ReadResult::Missing);
    EXPECT_EQ(ReadFileBytes(folder.Path("missing/below"), bytes, 100), ReadResult::Missing);
    EXPECT_EQ(bytes, "before");
}

TEST(Files, AreReadWholeUpToTheLimit)
{
    const ScratchFolder folder;
    folder.Write("ten", "0123456789");
    folder.Write("empty", "");
    std::string bytes;
    EXPECT_EQ(ReadFileBytes(folder.Path("ten"), bytes, 10), ReadResult::Read);
    EXPECT_EQ(bytes, "0123456789");
    EXPECT_EQ(ReadFileBytes(folder.Path("ten"), bytes, 9), ReadResult::TooLarge);
    EXPECT_EQ(bytes, "0123456789");
    EXPECT_EQ(ReadFileBytes(folder.Path("empty"), bytes, 0), ReadResult::Read);
    EXPECT_EQ(bytes, "");
    // Its size says 0, its content doesn't.
    EXPECT_EQ(ReadFileBytes(u"/proc/self/status", bytes, kMegabyte), ReadResult::Read);
    EXPECT_NE(bytes.find("Pid:"), std::string::npos);
    EXPECT_EQ(ReadFileBytes(u"/proc/self/status", bytes, 100), ReadResult::TooLarge);
}

std::vector<std::string> LinesOf(const ScratchFolder& folder, std::string_view content)
{
    folder.Write("lines", content);
    CStdioFile file;
    EXPECT_TRUE(file.Open(folder.Path("lines")));
    std::vector<std::string> lines;
    for (std::string line; file.ReadString(line);)
        lines.push_back(line);
    std::string line = "before";
    EXPECT_FALSE(file.ReadString(line)); // The end stays the end.
    return lines;
}

TEST(StdioFile, GivesLinesWithoutTheirEnds)
{
    using Lines = std::vector<std::string>;
    const ScratchFolder folder;
    EXPECT_EQ(LinesOf(folder, "a\nb\r\n\nc"), (Lines{"a", "b", "", "c"}));
    EXPECT_EQ(LinesOf(folder, "a\n"), (Lines{"a"}));
    EXPECT_EQ(LinesOf(folder, "a\rb\r\r\n"), (Lines{"a\rb\r"}));
    EXPECT_EQ(LinesOf(folder, std::string_view("a\0b\n", 4)),
              (Lines{
                  {"a\0b", 3}
    }));
    EXPECT_EQ(LinesOf(folder, "\n"), (Lines{""}));
    EXPECT_EQ(LinesOf(folder, ""), Lines{});
}

TEST(StdioFile, DropsLinesAboveItsBoundAndNoOthers)
{
    using Lines = std::vector<std::string>;
    const ScratchFolder folder;
    const std::string longest(kMegabyte / 16, 'x');
    EXPECT_EQ(LinesOf(folder, longest + "\nb"), (Lines{longest, "b"}));
    EXPECT_EQ(LinesOf(folder, "a\n" + longest + "x\nb"), (Lines{"a", "b"}));
    EXPECT_EQ(LinesOf(folder, "a\n" + longest + "x"), (Lines{"a"}));
}

TEST(StdioFile, EndsAfterSixteenMegabytes)
{
    const ScratchFolder folder;
    std::string content;
    for (std::size_t i = 0; i < 17 * kMegabyte / 1024; ++i)
        content += std::string(1023, 'x') + '\n';
    EXPECT_EQ(LinesOf(folder, content).size(), 16 * 1024U);
}

} // namespace
} // namespace kivo
