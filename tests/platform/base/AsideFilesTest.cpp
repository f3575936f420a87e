#include "shell/contracts/framework/Files.h"
#include "tests/support/TempFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <ctime>

namespace kivo {
namespace {

using test::TempFolder;
using Names = std::vector<std::string>;

TEST(KeepAside, TakesTheFirstFreeNumberAndReplacesNothing)
{
    const TempFolder folder;
    folder.Write("lib.mlib", "third");
    folder.Write("lib.mlib.broken-1", "first");
    folder.Link("nowhere", "lib.mlib.broken-2");
    EXPECT_EQ(KeepAside(folder.GetPath("lib.mlib")), 1);
    EXPECT_EQ(folder.ListNames(),
              (Names{"lib.mlib.broken-1", "lib.mlib.broken-2", "lib.mlib.broken-3"}));
    EXPECT_EQ(folder.Read("lib.mlib.broken-1"), "first");
    EXPECT_EQ(folder.Read("lib.mlib.broken-3"), "third");
    EXPECT_EQ(KeepAside(folder.GetPath("lib.mlib")), 1); // Nothing stands there: it is free.
    EXPECT_EQ(KeepAside(folder.GetPath("missing/lib.mlib")), 1);
    EXPECT_EQ(folder.ListNames().size(), 3U);
}

TEST(OlderFiles, OneFormIsAlwaysThere)
{
    const TempFolder folder;
    folder.Write("a.kvm", "older form");
    EXPECT_EQ(SetOlderAside(folder.GetPath("a.kvm")), 1);
    EXPECT_EQ(folder.ListNames(), Names{"a.kvm.older"});
    EXPECT_EQ(SetOlderAside(folder.GetPath("a.kvm")), 0);
    RestoreOlder(folder.GetPath()); // The start after a crash before the save,
    EXPECT_EQ(folder.Read("a.kvm"), "older form");
    EXPECT_EQ(folder.ListNames(), Names{"a.kvm"});

    EXPECT_EQ(SetOlderAside(folder.GetPath("a.kvm")), 1);
    folder.Write("a.kvm", "new form");
    RestoreOlder(folder.GetPath()); // after one between the save and the drop,
    EXPECT_EQ(folder.Read("a.kvm"), "new form");
    EXPECT_EQ(folder.ListNames(), Names{"a.kvm"});

    folder.Write("a.kvm.older", "older form");
    DropOlder(folder.GetPath("a.kvm")); // and the orderly end of a save.
    DropOlder(folder.GetPath("a.kvm"));
    EXPECT_EQ(folder.ListNames(), Names{"a.kvm"});
}

// A save that failed leaves the older form aside; neither a group's creation nor the next start may
// take an empty file for its successor.
TEST(OlderFiles, AnEmptyFileNeverTakesThePlaceOfAnOlderForm)
{
    const TempFolder folder;
    folder.Write("a.kvm.older", "older form");
    EXPECT_EQ(CreateFileIfMissing(folder.GetPath("a.kvm")), 1);
    EXPECT_EQ(folder.ListNames(), Names{"a.kvm"});
    EXPECT_EQ(folder.Read("a.kvm"), "older form");

    folder.Write("b.kvm", "");
    folder.Write("b.kvm.older", "older form");
    RestoreOlder(folder.GetPath());
    EXPECT_EQ(folder.ListNames(), (Names{"a.kvm", "b.kvm"}));
    EXPECT_EQ(folder.Read("b.kvm"), "older form");
}

TEST(OlderFiles, LeftoversOfTheWriterGoAfterADayAndNothingElse)
{
    const TempFolder folder;
    constexpr std::time_t kDay = 24 * 60 * 60;
    struct Row {
        const char* name;
        std::time_t age;
    };
    constexpr Row kRows[] = {
        {".config.xml.aB3xYz", kDay + 60},
        {".config.xml.fresh1", kDay - 60},
        {".notes.backup",      kDay + 60},
        {"config.xml",         kDay + 60},
    };
    for (const Row& row : kRows) {
        folder.Write(row.name, "x");
        const std::time_t when = std::time(nullptr) - row.age;
        const timespec times[] = {
            {when, 0},
            {when, 0}
        };
        ASSERT_EQ(utimensat(AT_FDCWD, folder.GetNative(row.name).c_str(), times, 0), 0);
    }
    folder.MakeFolder("folder.older");
    folder.MakeFifo("fifo.older");
    folder.Write(".older", "x");
    folder.MakeFolder("a.kvm");
    folder.Write("a.kvm.older", "x"); // Its successor is none, nor is this one's.
    folder.Link("nowhere", "b.kvm");
    folder.Write("b.kvm.older", "x");
    Names left = folder.ListNames();
    std::erase(left, ".config.xml.aB3xYz");
    RestoreOlder(folder.GetPath());
    RestoreOlder(folder.GetPath("missing/"));
    EXPECT_EQ(folder.ListNames(), left);
}

} // namespace
} // namespace kivo
