#include "shell/contracts/framework/FileFind.h"

#include "shell/contracts/common/Text.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace kivo {
namespace {

using test::TempFolder;
using Names = std::vector<std::string>;

Names Find(const String& pattern)
{
    Names names;
    CFileFind find;
    for (int more = find.FindFile(pattern); more != 0;) {
        more = find.FindNextFile();
        names.push_back(common::TextToPath(find.GetFileName()));
    }
    return names;
}

TEST(FileFind, MatchesNamesInTheOrderOfTheirBytes)
{
    const TempFolder folder;
    const Names all = {
        ".c.mlib", "B.mlib", "a.mlib.older", "a[1].kvm", "noext", "ä.kvm", "\xFF.kvm"};
    for (const std::string& name : all)
        folder.Write(name, "");
    struct Row {
        const char* pattern;
        Names names;
    };
    const Row rows[] = {
        {"*.mlib",    {".c.mlib", "B.mlib"} },
        {"?.mlib",    {"B.mlib"}            },
        {"?.kvm",     {"ä.kvm", "\xFF.kvm"}}, // One character, however many bytes it takes.
        {"a[1].*",    {"a[1].kvm"}          }, // Brackets are ordinary.
        {"a*b*r",     {"a.mlib.older"}      },
        {"a*b*z",     {}                    },
        {"*.*",       all                   },
        {"**",        all                   },
        {"noext",     {"noext"}             },
        {"NOEXT",     {}                    },
        {"missing/*", {}                    },
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pattern);
        EXPECT_EQ(Find(folder.GetPath(row.pattern)), row.names);
    }
    EXPECT_EQ(Find(u""), Names{});
    EXPECT_EQ(Find(folder.GetPath("*") + u'\0'), Names{});

    folder.Write(std::string(250, 'a'), ""); // Many stars are quick.
    std::string stars;
    for (int i = 0; i < 100; ++i)
        stars += "a*";
    EXPECT_EQ(Find(folder.GetPath(stars + "b")), Names{});
}

TEST(FileFind, TellsWhatItFound)
{
    const TempFolder folder;
    folder.MakeFolder("a");
    folder.Write("b", "");
    folder.MakeFifo("c");
    folder.Link("a", "d");
    folder.Link("b", "e");
    folder.Link("nowhere", "f");
    struct Row {
        const char* name;
        bool isFolder;
        bool isRegular;
    };
    constexpr Row kRows[] = {
        {"a", true,  false},
        {"b", false, true },
        {"c", false, false},
        {"d", true,  false},
        {"e", false, true },
        {"f", false, false},
    };
    CFileFind find;
    EXPECT_EQ(find.GetFileName(), u"");
    ASSERT_EQ(find.FindFile(folder.GetPath("*.*")), 1);
    EXPECT_EQ(find.GetFileName(), u""); // Nothing is current before the first step.
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(find.FindNextFile(), row.name[0] == 'f' ? 0 : 1);
        EXPECT_EQ(find.GetFilePath(), folder.GetPath(row.name));
        EXPECT_EQ(find.IsDirectory(), row.isFolder);
        EXPECT_EQ(find.IsRegular(), row.isRegular);
        EXPECT_FALSE(find.IsDots());
        CFileFind one;
        EXPECT_EQ(one.FindFile(folder.GetPath(row.name)), row.name[0] == 'f' ? 0 : 1);
    }
}

class Collector final : public IFolderVisitor {
public:
    Collector(std::string root, int folders)
        : root_(std::move(root))
        , folders_(folders)
    {
    }
    void OnFile(const String& path) override
    {
        files.push_back(common::TextToPath(path).substr(root_.size()));
    }
    [[nodiscard]] bool GoesOn() override { return folders_-- > 0; }

    Names files;

private:
    std::string root_;
    int folders_;
};

TEST(WalkFolder, ListsBreadthFirstInOrderAndStopsBetweenFolders)
{
    const TempFolder folder;
    for (const char* name : {"b", "a", "a/deep"})
        folder.MakeFolder(name);
    folder.MakeFifo("fifo");
    const Names all = {"c.mp3", "z.mp3", "a/2.mp3", "a/\xFF.mp3", "b/1.mp3", "a/deep/3.mp3"};
    for (const std::string& name : all)
        folder.Write(name, "");
    const Names top(all.begin(), all.begin() + 4);
    struct Row {
        const char* root;
        int folders;
        Names files;
    };
    const Row rows[] = {
        {"",        99, all},
        {"b/..",    99, all}, // With and without a separator at the end.
        {"b/../",   99, all},
        {"",        2,  top},
        {"",        0,  {} },
        {"z.mp3",   99, {} },
        {"fifo",    99, {} },
        {"missing", 99, {} },
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.root);
        std::string root = folder.GetNative(row.root);
        if (!root.ends_with('/'))
            root += '/';
        Collector found(root, row.folders);
        WalkFolder(folder.GetPath(row.root), found);
        EXPECT_EQ(found.files, row.files);
    }
    Collector none("", /*folders=*/99);
    WalkFolder(u"", none);
    EXPECT_EQ(none.files, Names{});
}

TEST(WalkFolder, EntersEachFolderOnceAndListsRegularFilesAlone)
{
    const TempFolder folder;
    folder.MakeFolder("a");
    folder.MakeFolder("a/b");
    folder.Link("..", "a/up");
    folder.Link("../..", "a/b/top");
    folder.Link("a", "again");
    folder.Link(".", "self");
    folder.Link("/dev/null", "device");
    folder.Link("a/song.mp3", "link.mp3");
    folder.MakeFifo("fifo.mp3");
    folder.Write("a/song.mp3", "");
    folder.Write("a/b/song.mp3", "");
    Collector all(folder.GetNative(""), /*folders=*/99);
    WalkFolder(folder.GetPath(), all);
    EXPECT_EQ(all.files, (Names{"link.mp3", "a/song.mp3", "a/b/song.mp3"}));
}

} // namespace
} // namespace kivo
