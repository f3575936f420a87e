#include "medialib/IMediaLibManager.h"
#include "medialib/LibCache.h"
#include "medialib/MediaLibUpdateParam.h"
#include "tests/medialib/Record.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <array>
#include <future>
#include <string>
#include <vector>

namespace kivo::tunehive {
namespace {

std::string MakeLibrary(int count)
{
    std::string text = "<?xml version=\"1.0\" encoding=\"utf-8\"?><Caches>";
    for (int i = 0; i < count; ++i)
        text += "<Cache id=\"/music/" + std::to_string(i) + ".mp3\" title=\"T\" length=\"1\"/>";
    return text + "</Caches>";
}

const std::string kLocal = "{9B912E53-6318-4ac6-8C10-01D0357FFA48}.mlib";

TEST(LibCacheThreads, WhoAsksDuringTheLoadWaitsAndHits)
{
    const test::TempFolder folder;
    folder.Write(kLocal, MakeLibrary(5'000));
    CLibCache cache;
    cache.Initialize(folder.GetPath());
    std::array<std::future<bool>, 3> askers;
    for (std::future<bool>& asker : askers)
        asker = std::async(std::launch::async, [&cache] {
            MediaInfo info;
            return cache.GetMediaInfo(u"/music/4999.mp3", info) &&
                   cache.SetMediaInfo(u"/music/4999.mp3", Record(kInfoArtist, u"A"));
        });
    for (auto& asker : askers)
        EXPECT_TRUE(asker.get());
    MediaInfo info;
    cache.GetMediaInfo(u"/music/4999.mp3", info);
    EXPECT_EQ(info.size(), 3U) << "the merge came on top of what was loaded";
}

// Nor does an earlier one between the set-aside and the save.
TEST(LibCacheThreads, TheEndDuringTheLoadLosesNothing)
{
    const test::TempFolder folder;
    folder.Write(kLocal + ".older", "<Caches><Cache id='/a' title='T'/></Caches>");
    {
        CLibCache cache;
        cache.Initialize(folder.GetPath());
        cache.Uninitialize();
        CLibCache abandoned; // Its end alone waits for its load too.
        abandoned.Initialize(folder.GetPath());
    }
    EXPECT_EQ(folder.List(), std::vector<std::string>{kLocal});
    EXPECT_NE(folder.Read(kLocal).find("<Cache id=\"/a\" title=\"T\" />"), std::string::npos);
}

class Waiter {
public:
    void OnLoaded(ITuneHive_AsyncCallbackParam* param)
    {
        EXPECT_EQ(static_cast<MediaLibUpdateParam*>(param)->GetPath(), u"");
        ++calls;
    }
    int calls = 0;
    LifeToken life;
};

TEST(LibCacheThreads, TheLookNeverWaitsAndIsCalledWhenItMayAskAgain)
{
    const test::TempFolder folder;
    folder.Write(kLocal, MakeLibrary(20'000));
    test::FakeHost host;
    IMediaLibManager* const manager = GetMediaLibManager();
    manager->Initialize(folder.GetPath());
    Waiter waiter;
    Waiter gone;
    MediaInfo info;
    const CacheLook first = manager->PeekMediaInfo(u"/music/19999.mp3", info);
    EXPECT_NE(first, CacheLook::Miss);
    manager->CallWhenLoaded(AsyncCallback(&waiter, &Waiter::OnLoaded), waiter.life.Watch());
    manager->CallWhenLoaded(AsyncCallback(&gone, &Waiter::OnLoaded), gone.life.Watch());
    gone.life.End();
    while (waiter.calls == 0)
        host.RunPosted();
    EXPECT_EQ(manager->PeekMediaInfo(u"/music/19999.mp3", info), CacheLook::Hit);
    manager->CallWhenLoaded(AsyncCallback(&waiter, &Waiter::OnLoaded), waiter.life.Watch());
    DestroyMediaLibManager();
    host.RunPosted();
    EXPECT_EQ(waiter.calls, 2) << "once for each time that it asked";
    EXPECT_EQ(gone.calls, 0);
}

} // namespace
} // namespace kivo::tunehive
