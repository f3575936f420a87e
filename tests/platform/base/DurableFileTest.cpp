#include "platform/base/TemporaryName.h"
#include "shell/contracts/framework/Files.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

namespace kivo {
namespace {

using test::TempFolder;
using Names = std::vector<std::string>;
using Paths = std::vector<String>;

constexpr std::size_t kChunk = std::size_t{256} * 1024;
constexpr uid_t kNobody = 65534;

struct stat StatusOf(const std::string& path)
{
    struct stat status = {};
    EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
    return status;
}

// Runs the body in a process of another user, whom permissions bind. True: the body did.
bool RunAsNobody(const std::function<bool()>& body)
{
    const pid_t child = fork();
    if (child == 0)
        _exit(setgid(kNobody) == 0 && setuid(kNobody) == 0 && body() ? 0 : 1);
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

class DurableFile : public testing::Test {
protected:
    DurableFile() { static_cast<void>(TakeFailedWrites()); }

    TempFolder folder_;
};

TEST_F(DurableFile, HoldsExactlyWhatWasWritten)
{
    // Old and new content, by length and by the place of their first difference.
    struct Row {
        const char* name;
        std::string old;
        std::string now;
    };
    const std::string big(2 * kChunk + 17, 'x');
    const std::string shorter = big.substr(kChunk);
    const std::string nuls("a\0b", 3);
    const Row rows[] = {
        {"Other",              "abc",     "abd"     },
        {"Longer",             "abc",     "abcd"    },
        {"Emptied",            "abc",     ""        },
        {"FromEmpty",          "",        "abc"     },
        {"BigEqual",           big,       big       },
        {"BigOtherAtTheEnd",   big + "a", big + "b" },
        {"BigShorterByAChunk", big,       shorter   },
        {"BigLongerByAChunk",  shorter,   big       },
        {"WithNuls",           nuls,      nuls + "c"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        folder_.Write("file", row.old);
        const auto before = StatusOf(folder_.GetNative("file"));
        CDurableFile file(folder_.GetPath("file"));
        for (std::size_t i = 0; i < row.now.size(); i += 100000)
            file.Write(std::string_view(row.now).substr(i, 100000));
        EXPECT_EQ(folder_.Read("file"), row.old); // Nothing shows before the commit.
        EXPECT_TRUE(file.Commit());
        EXPECT_EQ(folder_.Read("file"), row.now);
        const auto after = StatusOf(folder_.GetNative("file"));
        EXPECT_EQ(before.st_ino == after.st_ino, row.old == row.now); // Written only if it differs.
        EXPECT_EQ(folder_.ListNames(), Names{"file"});
    }
    EXPECT_EQ(TakeFailedWrites(), Paths{});
}

TEST_F(DurableFile, IsNewWithTheUsersMask)
{
    const mode_t mask = umask(0027);
    EXPECT_EQ(WriteFileDurably(folder_.GetPath("new"), "abc"), 1);
    EXPECT_EQ(WriteFileDurably(folder_.GetPath("empty"), ""), 1);
    umask(mask);
    EXPECT_EQ(StatusOf(folder_.GetNative("new")).st_mode & 07777U, 0640U);
    EXPECT_EQ(folder_.ListNames(), (Names{"empty", "new"}));
}

TEST_F(DurableFile, KeepsModeOwnerAndLinks)
{
    folder_.MakeFolder("real");
    folder_.Write("real/file", "old");
    ASSERT_EQ(chmod(folder_.GetNative("real/file").c_str(), 0640), 0);
    const bool isRoot = geteuid() == 0;
    ASSERT_TRUE(!isRoot || chown(folder_.GetNative("real/file").c_str(), kNobody, kNobody) == 0);
    folder_.Link("real/file", "link");
    folder_.Link(folder_.GetNative("link"), "link-to-link");
    EXPECT_EQ(WriteFileDurably(folder_.GetPath("link-to-link"), "new"), 1);
    EXPECT_EQ(folder_.Read("real/file"), "new");
    const auto status = StatusOf(folder_.GetNative("real/file"));
    EXPECT_EQ(status.st_mode & 07777U, 0640U);
    EXPECT_EQ(status.st_uid, isRoot ? kNobody : geteuid());
    struct stat link = {};
    EXPECT_EQ(lstat(folder_.GetNative("link-to-link").c_str(), &link), 0);
    EXPECT_TRUE(S_ISLNK(link.st_mode));
    folder_.Link("real/new", "dangling");
    EXPECT_EQ(WriteFileDurably(folder_.GetPath("dangling"), "new"), 1);
    EXPECT_EQ(folder_.Read("real/new"), "new");
}

TEST_F(DurableFile, RefusesWhatIsNoRegularFile)
{
    folder_.MakeFolder("folder");
    folder_.MakeFifo("fifo");
    folder_.Link("loop", "loop");
    Paths paths;
    for (const char* name : {"folder", "fifo", "loop", "missing/file"})
        paths.push_back(folder_.GetPath(name));
    paths.push_back(u"/dev/full");
    paths.push_back(folder_.GetPath("cut") + u'\0');
    for (const String& path : paths) {
        SCOPED_TRACE(testing::PrintToString(path));
        EXPECT_EQ(WriteFileDurably(path, "new"), 0);
    }
    EXPECT_EQ(folder_.ListNames(), (Names{"fifo", "folder", "loop"}));
    EXPECT_EQ(TakeFailedWrites(), paths);
    EXPECT_EQ(TakeFailedWrites(), Paths{});
}

TEST_F(DurableFile, WithoutACommitTheTargetStands)
{
    folder_.Write("file", "old");
    {
        CDurableFile file(folder_.GetPath("file"));
        file.Write(std::string(2 * kChunk, 'x'));
        EXPECT_EQ(folder_.ListNames().size(), 2U); // The temporary file is there,
    }
    EXPECT_EQ(folder_.ListNames(), Names{"file"}); // and goes with the object.
    EXPECT_EQ(folder_.Read("file"), "old");
    EXPECT_EQ(TakeFailedWrites(), Paths{});
}

// What was equal when it was compared is so no more: only an unchanged file may lend its bytes.
TEST_F(DurableFile, AFileThatChangesMeanwhileIsNeverMixedIn)
{
    const std::string old(2 * kChunk, 'x');
    folder_.Write("file", old);
    CDurableFile file(folder_.GetPath("file"));
    file.Write(std::string(kChunk, 'x'));
    folder_.Write("file", std::string(2 * kChunk, 'y'));
    file.Write(std::string(kChunk, 'z'));
    if (file.Commit())
        EXPECT_EQ(folder_.Read("file"), std::string(kChunk, 'x') + std::string(kChunk, 'z'));
    else
        EXPECT_EQ(folder_.Read("file"), std::string(2 * kChunk, 'y'));
    EXPECT_EQ(folder_.ListNames(), Names{"file"});
}

TEST_F(DurableFile, NamesOfEveryLengthAndByteWork)
{
    for (const std::string& name :
         {std::string(255, 'n'), std::string("\xFF\xFE"), std::string("-")}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(WriteFileDurably(folder_.GetPath(name), "old"), 1);
        EXPECT_EQ(WriteFileDurably(folder_.GetPath(name), "new"), 1);
        EXPECT_EQ(folder_.Read(name), "new");
    }
    EXPECT_EQ(folder_.ListNames().size(), 3U);
}

TEST_F(DurableFile, AFullDiskLeavesTheOldFileWhole)
{
    folder_.MakeFolder("disk");
    if (mount("none", folder_.GetNative("disk").c_str(), "tmpfs", 0, "size=1m,mode=0755") != 0)
        GTEST_SKIP() << "only root may mount";
    folder_.Write("disk/file", "old");
    const int written = WriteFileDurably(folder_.GetPath("disk/file"), std::string(2 << 20, 'x'));
    const std::string content = folder_.Read("disk/file");
    const Names names = folder_.ListNames("disk");
    EXPECT_EQ(umount(folder_.GetNative("disk").c_str()), 0);
    EXPECT_EQ(written, 0);
    EXPECT_EQ(content, "old");
    EXPECT_EQ(names, Names{"file"});
    EXPECT_EQ(TakeFailedWrites(), Paths{folder_.GetPath("disk/file")});
}

TEST_F(DurableFile, AReadOnlyFolderLeavesTheOldFileWhole)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "permissions are tried as another user";
    folder_.Write("file", "old");
    ASSERT_EQ(chmod(folder_.GetNative("file").c_str(), 0666), 0);
    EXPECT_TRUE(RunAsNobody([this] {
        return WriteFileDurably(folder_.GetPath("file"), "new") == 0 &&
               WriteFileDurably(folder_.GetPath("file"), "old") == 1 && // Equal: nothing to write.
               WriteFileDurably(folder_.GetPath("new"), "new") == 0 &&
               CreateFileIfMissing(folder_.GetPath("new")) == 0 &&
               CreateFileIfMissing(folder_.GetPath("file")) == 1 &&
               KeepAside(folder_.GetPath("file")) == 0 &&
               SetOlderAside(folder_.GetPath("file")) == 0 &&
               TakeFailedWrites() == Paths{folder_.GetPath("new"), folder_.GetPath("file")};
    }));
    EXPECT_EQ(folder_.ListNames(), Names{"file"});
    EXPECT_EQ(folder_.Read("file"), "old");
}

TEST_F(DurableFile, AFileThatCantBeReadCanBeReplaced)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "permissions are tried as another user";
    ASSERT_EQ(chmod(folder_.GetNative().c_str(), 0777), 0);
    folder_.Write("file", "old");
    ASSERT_EQ(chmod(folder_.GetNative("file").c_str(), 0), 0);
    EXPECT_TRUE(RunAsNobody([this] {
        std::string bytes;
        return ReadFileBytes(folder_.GetPath("file"), bytes, 100) == ReadResult::Failed &&
               WriteFileDurably(folder_.GetPath("file"), "new") == 1;
    }));
    EXPECT_EQ(folder_.Read("file"), "new");
}

TEST_F(DurableFile, ALaterSuccessTakesThePathOffTheListOfFailures)
{
    const String path = folder_.GetPath("sub/file");
    EXPECT_EQ(WriteFileDurably(path, "a"), 0);
    EXPECT_EQ(WriteFileDurably(folder_.GetPath("other/file"), "a"), 0);
    EXPECT_EQ(WriteFileDurably(path, "a"), 0);
    folder_.MakeFolder("sub");
    EXPECT_EQ(WriteFileDurably(path, "a"), 1);
    EXPECT_EQ(TakeFailedWrites(), Paths{folder_.GetPath("other/file")});
}

TEST_F(DurableFile, CreatesAnEmptyFileOnlyWhereNoneIs)
{
    folder_.Write("b", "old");
    EXPECT_EQ(CreateFileIfMissing(folder_.GetPath("a")), 1);
    EXPECT_EQ(CreateFileIfMissing(folder_.GetPath("b")), 1);
    EXPECT_EQ(folder_.ListNames(), (Names{"a", "b"}));
    EXPECT_EQ(folder_.Read("b"), "old");
    EXPECT_EQ(CreateFileIfMissing(folder_.GetPath("missing/c")), 0);
    EXPECT_EQ(TakeFailedWrites(), Paths{folder_.GetPath("missing/c")});
}

TEST(TemporaryName, IsToldFromOtherHiddenNames)
{
    struct Row {
        const char* name;
        bool isTemporary;
    };
    constexpr Row kRows[] = {
        {".config.xml.aB3xYz", true },
        {".config.backup",     false}, // The user's own: NAME would have no extension.
        {".config.xml.aB3x",   false},
        {".config.xml.aB3_Yz", false},
        {"config.xml.aB3xYz",  false},
        {"..xml.aB3xYz",       false},
        {".",                  false},
    };
    for (const Row& row : kRows)
        EXPECT_EQ(IsTemporaryName(row.name), row.isTemporary) << row.name;
}

} // namespace
} // namespace kivo
