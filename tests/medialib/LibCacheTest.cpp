#include "medialib/LibCache.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace kivo::tunehive {
namespace {

const std::string kLocal = "{9B912E53-6318-4ac6-8C10-01D0357FFA48}.mlib";
const std::string kUrls = "{20AC30B6-3643-4adf-A87A-D67E1A12B000}.mlib";
const std::string kHead = "<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"no\" ?>\n";

class LibCache : public testing::Test {
protected:
    test::TempFolder folder_;
    CLibCache cache_;
    MediaInfo info_;
};

TEST_F(LibCache, BeforeAndAfterItsTimeItKnowsNothing)
{
    EXPECT_FALSE(cache_.SetMediaInfo(u"/a", {}));
    EXPECT_FALSE(cache_.GetMediaInfo(u"/a", info_));
    cache_.Uninitialize();
    cache_.Initialize(folder_.GetPath());
    EXPECT_TRUE(cache_.SetMediaInfo(u"/a", {}));
    cache_.Initialize(folder_.GetPath("elsewhere") + u"/"); // Is on already.
    EXPECT_TRUE(cache_.GetMediaInfo(u"/a", info_));
    EXPECT_FALSE(folder_.Has("elsewhere"));
    cache_.Uninitialize();
    EXPECT_FALSE(cache_.GetMediaInfo(u"/a", info_));
    EXPECT_FALSE(cache_.SetMediaInfo(u"/a", {}));
}

TEST_F(LibCache, MakesExactlyTheFilesThatWereMergedIntoAtItsEnd)
{
    const String lib = folder_.GetPath("lib") + u"/";
    cache_.Initialize(lib);
    cache_.Uninitialize();
    EXPECT_TRUE(folder_.Has("lib"));
    EXPECT_TRUE(folder_.List().empty());

    cache_.Initialize(lib);
    cache_.SetMediaInfo(u"mms://host/c", {});
    EXPECT_TRUE(folder_.List().empty()) << "nothing is saved before the end";
    cache_.Uninitialize();
    EXPECT_EQ(folder_.List(), std::vector<std::string>{"lib/" + kUrls});

    cache_.Initialize(lib);
    cache_.SetMediaInfo(u"/a.mp3", {});
    cache_.SetMediaInfo(u"c://b.mp3", {}); // One letter is a drive.
    cache_.Uninitialize();
    EXPECT_EQ(folder_.Read("lib/" + kLocal),
              kHead + "<Caches>\n    <Cache id=\"/a.mp3\" />\n    <Cache id=\"c://b.mp3\" />\n"
                      "</Caches>\n");
    EXPECT_EQ(folder_.Read("lib/" + kUrls),
              kHead + "<Caches>\n    <Cache id=\"mms://host/c\" />\n</Caches>\n");
}

TEST_F(LibCache, AThirdFileIsReadButNeverAskedOrRewritten)
{
    const std::string text = "<?xml version='1.0'?><Caches><Cache id='/a' title='T'/></Caches>";
    folder_.Write("third.mlib", text);
    folder_.Write("old.mlib", "<Caches><Cache id='/a' title='T'/></Caches>");
    folder_.Write(".mlib", "<Caches><Cache id='/b' title='T'/></Caches>");
    folder_.Write("folder.mlib/x", "");
    cache_.Initialize(folder_.GetPath());
    EXPECT_FALSE(cache_.GetMediaInfo(u"/a", info_));
    EXPECT_TRUE(folder_.Has("old.mlib.older")) << "it was read, and its older form replaced";
    EXPECT_TRUE(folder_.Has(".mlib")) << "no stem, not read";
    cache_.Uninitialize();
    EXPECT_EQ(folder_.Read("third.mlib"), text);
    EXPECT_EQ(folder_.Read("old.mlib"),
              kHead + "<Caches>\n    <Cache id=\"/a\" title=\"T\" />\n</Caches>\n");
    EXPECT_FALSE(folder_.Has("old.mlib.older"));
}

} // namespace
} // namespace kivo::tunehive
