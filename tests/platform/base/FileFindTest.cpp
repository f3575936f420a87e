#include "shell/contracts/framework/FileFind.h"

#include "shell/contracts/common/Text.h"
#include "tests/platform/base/ScratchFolder.h"

#include <gtest/gtest.h>

namespace kivo {
namespace {

using test::ScratchFolder;
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
    const ScratchFolder folder;
    for (const char* name : {"b.mlib",
                             "a.mlib",
                             "B.mlib",
                             ".c.mlib",
                             "a.mlib.older",
                             "a[1].kvm",
                             "ab.kvm",
                             "\xFF.kvm",
                             "ä.kvm",
                             "noext"})
        folder.Write(name, "");
    struct Row {
        const char* pattern;
        Names names;
    };
    const Row rows[] = {
        {"*.mlib", {".c.mlib", "B.mlib", "a.mlib", "b.mlib"}},
        {"?.mlib", {"B.mlib", "a.mlib", "b.mlib"}           },
        {"?.kvm",  {"ä.kvm", "\xFF.kvm"}                   }, // One character, however many bytes it takes.
        {"a[1].*", {"a[1].kvm"}                             }, // Brackets are ordinary.
        {"a*b*r",  {"a.mlib.older"}                         },
        {"a*b*z",  {}                                       },
        {"*.*",
         {".c.mlib",
          "B.mlib",
          "a.mlib",
          "a.mlib.older",
          "a[1].kvm",
          "ab.kvm",
          "b.mlib",
          "noext",
          "ä.kvm",
          "\xFF.kvm"}                                       },
        {"*x",     {}                                       },
        {"**",     Find(folder.Path("*"))                   },
        {"ab.kvm", {"ab.kvm"}                               },
        {"AB.kvm", {}                                       },
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.pattern);
        EXPECT_EQ(Find(folder.Path(row.pattern)), row.names);
    }
    EXPECT_EQ(Find(folder.Path("missing/*")), Names{});
    EXPECT_EQ(Find(u""), Names{});
    EXPECT_EQ(Find(folder.Path("*") + u'\0'), Names{});
}

TEST(FileFind, TellsWhatItFound)
{
    const ScratchFolder folder;
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
    ASSERT_EQ(find.FindFile(folder.Path("*.*")), 1);
    EXPECT_EQ(find.GetFileName(), u""); // Nothing is current before the first step.
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(find.FindNextFile(), row.name[0] == 'f' ? 0 : 1);
        EXPECT_EQ(find.GetFilePath(), folder.Path(row.name));
        EXPECT_EQ(find.IsDirectory(), row.isFolder);
        EXPECT_EQ(find.IsRegular(), row.isRegular);
        EXPECT_FALSE(find.IsDots());
        CFileFind one;
        EXPECT_EQ(one.FindFile(folder.Path(row.name)), row.name[0] == 'f' ? 0 : 1);
    }
}

TEST(FileFind, APatternOfManyStarsIsQuick)
{
    const ScratchFolder folder;
    folder.Write(std::string(250, 'a'), "");
    std::string pattern;
    for (int i = 0; i < 100; ++i)
        pattern += "a*";
    EXPECT_EQ(Find(folder.Path(pattern + "b")), Names{});
}

class Collector final : public IFolderVisitor {
public:
    explicit Collector(std::string root, int folders = 1000)
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

TEST(WalkFolder, ListsBreadthFirstInOrder)
{
    const ScratchFolder folder;
    for (const char* name : {"b", "a", "a/deep"})
        folder.MakeFolder(name);
    for (const char* name : {"z.mp3", "b/1.mp3", "a/deep/3.mp3", "a/2.mp3", "a/\xFF.mp3", "c.mp3"})
        folder.Write(name, "");
    for (const char* root : {"", "b/../"}) {
        Collector all(folder.Native(root));
        WalkFolder(folder.Path(root), all);
        EXPECT_EQ(all.files,
                  (Names{"c.mp3", "z.mp3", "a/2.mp3", "a/\xFF.mp3", "b/1.mp3", "a/deep/3.mp3"}));
    }
    Collector bare(folder.Native());
    WalkFolder(folder.Path().substr(0, folder.Path().size() - 1), bare);
    EXPECT_EQ(bare.files.size(), 6U);
}

TEST(WalkFolder, EntersEachFolderOnceAndListsRegularFilesAlone)
{
    const ScratchFolder folder;
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
    Collector all(folder.Native());
    WalkFolder(folder.Path(), all);
    EXPECT_EQ(all.files, (Names{"link.mp3", "a/song.mp3", "a/b/song.mp3"}));
}

TEST(WalkFolder, StopsBetweenFoldersWhenAsked)
{
    const ScratchFolder folder;
    folder.MakeFolder("a");
    folder.Write("1", "");
    folder.Write("2", "");
    folder.Write("a/3", "");
    Collector one(folder.Native(), /*folders=*/1);
    WalkFolder(folder.Path(), one);
    EXPECT_EQ(one.files, (Names{"1", "2"}));
    Collector none(folder.Native(), /*folders=*/0);
    WalkFolder(folder.Path(), none);
    EXPECT_EQ(none.files, Names{});
}

TEST(WalkFolder, WhatIsNoFolderHasNoFiles)
{
    const ScratchFolder folder;
    folder.Write("file", "");
    folder.MakeFifo("fifo");
    for (const String& path :
         {folder.Path("file"), folder.Path("fifo"), folder.Path("missing"), String()}) {
        Collector all("");
        WalkFolder(path, all);
        EXPECT_EQ(all.files, Names{});
    }
}

} // namespace
} // namespace kivo
