#include "shell/contracts/framework/Paths.h"

#include "shell/contracts/common/AppPath.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

namespace kivo {
namespace {

TEST(Paths, AnAddressHasASchemeOfTwoLettersOrMore)
{
    struct Row {
        const char16_t* text;
        bool isUrl;
    };
    constexpr Row kRows[] = {
        {u"MMS://a",         true },
        {u"svn+ssh-2.0://a", true },
        {u"ht://",           true },
        {u"c://x",           false},
        {u"1http://x",       false},
        {u"/music/http://x", false},
        {u"mailto:a@b",      false},
        {u"hä://x",         false},
    };
    for (const Row& row : kRows)
        EXPECT_EQ(UrlIsW(row.text), row.isUrl) << testing::PrintToString(row.text);
    EXPECT_FALSE(UrlIsW(u"http://a", 1));
}

TEST(Paths, AreTakenApartAtTheSeparatorAlone)
{
    struct Row {
        const char16_t* path;
        const char16_t* folder;
        const char16_t* name;
        const char16_t* extension;
    };
    constexpr Row kRows[] = {
        {u"/a/b.mp3",     u"/a/",   u"b.mp3",        u".mp3"   },
        {u"/a.b/c",       u"/a.b/", u"c",            u""       },
        {u"b.tar.gz",     u"",      u"b.tar.gz",     u".gz"    },
        {u"/a/.hidden",   u"/a/",   u".hidden",      u".hidden"},
        {u"/a/",          u"/a/",   u"",             u""       },
        {u"C:\\a\\b.mp3", u"",      u"C:\\a\\b.mp3", u".mp3"   },
        {u"",             u"",      u"",             u""       },
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(testing::PrintToString(row.path));
        EXPECT_EQ(common::GetFileDirFromPath(row.path), row.folder);
        EXPECT_EQ(common::GetFileNameFromPath(row.path), row.name);
        EXPECT_EQ(PathFindFileNameW(row.path), row.name);
        EXPECT_EQ(PathFindExtensionW(row.path), row.extension);
    }
    EXPECT_EQ(ComposePath(u"%s\\%s", {u"/a\\b", u"%s"}), u"/a\\b/%s");
    for (const char16_t* folder : {u"/opt/kivo", u"/opt/kivo/"}) {
        common::SetAppPath(folder);
        EXPECT_EQ(common::GetAppPath(), u"/opt/kivo/");
    }
}

TEST(Paths, FilesFoldersAndTheRestAreToldApart)
{
    const test::TempFolder folder;
    folder.Write("file", "x");
    folder.Write("bad\xFFname", "x");
    folder.MakeFolder("folder");
    folder.MakeFifo("fifo");
    folder.Link("folder", "to-folder");
    folder.Link("nowhere", "dangling");
    struct Row {
        const char* name;
        bool exists;
        bool isFolder;
        bool isFile;
    };
    constexpr Row kRows[] = {
        {"bad\xFFname", true,  false, true },
        {"folder",      true,  true,  false},
        {"to-folder",   true,  true,  false},
        {"fifo",        true,  false, true },
        {"dangling",    false, false, false},
        {"file/below",  false, false, false},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(PathFileExistsW(folder.GetPath(row.name)), row.exists);
        EXPECT_EQ(PathIsDirectoryW(folder.GetPath(row.name)), row.isFolder);
        EXPECT_EQ(common::IsFileExist(folder.GetPath(row.name)), row.isFile);
    }
    EXPECT_EQ(CreateDirectoryW(folder.GetPath("new")), 1);
    EXPECT_EQ(CreateDirectoryW(folder.GetPath("new")), 0);
    EXPECT_EQ(CreateDirectoryW(folder.GetPath("a/b")), 0); // One level alone.
    EXPECT_EQ(DeleteFileW(folder.GetPath("new")), 0);
    EXPECT_EQ(DeleteFileW(folder.GetPath("bad\xFFname")), 1);
    EXPECT_FALSE(PathFileExistsW(folder.GetPath("bad\xFFname")));
    const String cut = folder.GetPath("file") + u'\0' + u".mp3";
    EXPECT_FALSE(PathFileExistsW(cut)); // Not the file whose name ends at the NUL.
    EXPECT_EQ(DeleteFileW(cut), 0);
    EXPECT_FALSE(PathFileExistsW(u""));
}

} // namespace
} // namespace kivo
