#include "medialib/MediaLibManager.h"

#include "medialib/MediaFileType.h"
#include "medialib/MediaLibUpdateParam.h"
#include "medialib/MP3Provider.h"
#include "medialib/NewerFormats.h"
#include "medialib/NewerFormatsProvider.h"
#include "medialib/WMFProvider.h"
#include "shell/contracts/base/Beyond.h"
#include "tests/medialib/Record.h"
#include "tests/medialib/ScriptedAttributes.h"
#include "tests/support/CaseName.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <future>
#include <utility>
#include <vector>

namespace kivo::tunehive {
namespace {

constexpr int kLater = static_cast<int>(NotifyMode::Later);
constexpr int kNow = static_cast<int>(NotifyMode::Now);

class Listener {
public:
    void OnUpdate(ITuneHive_AsyncCallbackParam* param)
    {
        paths.push_back(static_cast<MediaLibUpdateParam*>(param)->GetPath());
    }
    void OnUpdateToo(ITuneHive_AsyncCallbackParam* param) { OnUpdate(param); }

    std::vector<String> paths;
    LifeToken life;
};

class MediaLibManagerTest : public testing::Test {
protected:
    MediaLibManagerTest() { manager_.Initialize(folder_.GetPath("lib") + u"/"); }

    String Write(const char* name)
    {
        folder_.Write(name, "");
        return folder_.GetPath(name);
    }
    String GetTitle(const String& path)
    {
        MediaInfo info;
        manager_.GetMediaInfo(path, info);
        return GetInfoText(info, kInfoTitle);
    }
    MediaInfo Peek(const String& path)
    {
        MediaInfo info = Record(99, u"miss");
        static_cast<void>(manager_.PeekMediaInfo(path, info));
        return info;
    }

    test::FakeHost host_;
    test::ScriptedAttributes attributes_;
    test::TempFolder folder_;
    MediaLibManager manager_;
    Listener listener_;
    const MediaInfo miss_ = Record(99, u"miss");
};

TEST_F(MediaLibManagerTest, AFirstRequestReadsTheFileAndALaterOneTheCache)
{
    const String path = Write("a.wma");
    attributes_.headers[path].SetText(u"Title", u"T");
    manager_.AddListener(AsyncCallback(&listener_, &Listener::OnUpdate), {});
    EXPECT_EQ(GetTitle(path), u"T");
    std::filesystem::remove(folder_.GetNative() / "a.wma");
    EXPECT_EQ(GetTitle(path), u"T");
    EXPECT_EQ(attributes_.editorOpens, 1);
    host_.RunPosted();
    EXPECT_TRUE(listener_.paths.empty()) << "a read tells nobody";
}

struct UnreadCase {
    const char* name;
    const char* file; // Below the test's folder; a URL stands as it is.
    int result;
    String title;
};

class UnreadTest : public MediaLibManagerTest, public testing::WithParamInterface<UnreadCase> {};

TEST_P(UnreadTest, EndsAs)
{
    const UnreadCase& row = GetParam();
    for (const char* file : {"a.txt", "A.MP3", "a.m3u", "a.rmvb", "album/x"})
        folder_.Write(file, "");
    const std::string name = row.file;
    const String path = name.find("://") != std::string::npos ? String(name.begin(), name.end())
                                                              : folder_.GetPath(name);
    MediaInfo info = Record(kInfoAlbum, u"of another file");
    EXPECT_EQ(manager_.GetMediaInfo(path, info), row.result);
    EXPECT_EQ(info, Record(kInfoTitle, row.title));
    EXPECT_EQ(Peek(path), row.result != 0 ? MediaInfo() : miss_);
    manager_.GetMediaInfo(path, info);
    EXPECT_EQ(attributes_.editorOpens, row.result) << "an entry is never tried again";
}

const UnreadCase kUnreadCases[] = {
    {"AMissingFile",       "a.mp3",             0, u"a.mp3"            },
    {"AnUnknownExtension", "a.txt",             0, u"a.txt"            },
    {"ACapitalExtension",  "A.MP3",             0, u"A.MP3"            },
    {"APlaylist",          "a.m3u",             0, u"a.m3u"            },
    {"AFolder",            "album",             0, u"album"            },
    {"AUrl",               "http://host/a.mp3", 0, u"http://host/a.mp3"},
    {"AFileThatWontOpen",  "a.rmvb",            1, u"a.rmvb"           },
};

INSTANTIATE_TEST_SUITE_P(MediaLibManager,
                         UnreadTest,
                         testing::ValuesIn(kUnreadCases),
                         test::CaseName<UnreadCase>);

TEST_F(MediaLibManagerTest, TheTitleThatIsMadeUpNeverReachesTheCache)
{
    const String path = Write("a.wma");
    attributes_.headers[path].SetText(u"Author", u"A");
    EXPECT_EQ(GetTitle(path), u"a.wma");
    EXPECT_EQ(GetInfoText(Peek(path), kInfoArtist), u"A");
    EXPECT_EQ(Peek(path).at(kInfoTitle), u"");
    EXPECT_EQ(GetTitle(path), u"a.wma") << "and is made up anew from the cache";
    EXPECT_EQ(GetTitle(u"/album/"), u"/album/") << "where there is no name of a file";
}

struct NotifyCase {
    const char* name;
    int mode;
    bool onMainThread;
    std::size_t toldNow;
    std::size_t toldLater;
};

class NotifyTest : public MediaLibManagerTest, public testing::WithParamInterface<NotifyCase> {};

TEST_P(NotifyTest, Tells)
{
    manager_.AddListener(AsyncCallback(&listener_, &Listener::OnUpdate), {});
    const auto update = [this] {
        manager_.UpdateMediaInfo(u"/a", Record(0, u"T"), GetParam().mode);
    };
    if (GetParam().onMainThread)
        update();
    else
        std::async(std::launch::async, update).get();
    EXPECT_EQ(listener_.paths, std::vector<String>(GetParam().toldNow, u"/a"));
    listener_.paths.clear();
    host_.RunPosted();
    EXPECT_EQ(listener_.paths, std::vector<String>(GetParam().toldLater, u"/a"));
    EXPECT_EQ(Peek(u"/a"), Record(0, u"T")) << "the cache has it in any case";
}

constexpr NotifyCase kNotifyCases[] = {
    {"Nobody",                 0,  true,  0, 0},
    {"Later",                  1,  true,  0, 1},
    {"LaterFromAnotherThread", 1,  false, 0, 1},
    {"Now",                    2,  true,  1, 0},
    {"NowOnAnotherThread",     2,  false, 0, 0},
    {"AnUnknownMode",          3,  true,  0, 0},
    {"ANegativeMode",          -1, true,  0, 0},
};

INSTANTIATE_TEST_SUITE_P(MediaLibManager,
                         NotifyTest,
                         testing::ValuesIn(kNotifyCases),
                         test::CaseName<NotifyCase>);

TEST_F(MediaLibManagerTest, APairOfObjectAndFunctionStandsOnce)
{
    const AsyncCallback first(&listener_, &Listener::OnUpdate);
    manager_.AddListener(first, {});
    manager_.AddListener(first, {});
    manager_.AddListener(AsyncCallback(&listener_, &Listener::OnUpdateToo), {});
    manager_.UpdateMediaInfo(u"/a", {}, kNow);
    EXPECT_EQ(listener_.paths.size(), 2U);
    manager_.RemoveListener(first);
    manager_.RemoveListener(first);
    manager_.UpdateMediaInfo(u"/a", {}, kNow);
    EXPECT_EQ(listener_.paths.size(), 3U);
}

TEST_F(MediaLibManagerTest, AListenerThatIsGoneIsNotTold)
{
    manager_.AddListener(AsyncCallback(&listener_, &Listener::OnUpdate), listener_.life.Watch());
    manager_.UpdateMediaInfo(u"/a", {}, kLater);
    listener_.life.End();
    host_.RunPosted();
    manager_.UpdateMediaInfo(u"/a", {}, kNow);
    EXPECT_TRUE(listener_.paths.empty());
}

// Removes itself and adds another while it is told.
struct Leaver {
    void OnUpdate(ITuneHive_AsyncCallbackParam* /*param*/)
    {
        manager.RemoveListener(AsyncCallback(this, &Leaver::OnUpdate));
        manager.AddListener(AsyncCallback(&other, &Listener::OnUpdateToo), {});
    }
    MediaLibManager& manager;
    Listener& other;
};

TEST_F(MediaLibManagerTest, AListenerMayLeaveAndAddWhileItIsTold)
{
    Leaver leaver{manager_, listener_};
    manager_.AddListener(AsyncCallback(&leaver, &Leaver::OnUpdate), {});
    manager_.AddListener(AsyncCallback(&listener_, &Listener::OnUpdate), {});
    manager_.UpdateMediaInfo(u"/a", {}, kNow);
    EXPECT_EQ(listener_.paths.size(), 1U) << "the new one hears of the next update";
    manager_.UpdateMediaInfo(u"/a", {}, kNow);
    EXPECT_EQ(listener_.paths.size(), 3U);
}

// Answers as its test says, and counts.
class ScriptedProvider final : public ILocalMediaInfoProvider {
public:
    struct Script {
        int answer = 0;
        int calls = 0;
        bool isReleased = false;
    };

    explicit ScriptedProvider(Script& script)
        : script_(script)
    {
    }
    void Release() override
    {
        script_.isReleased = true;
        delete this;
    }
    int GetMediaInfo(String /*path*/, MediaInfo& info) override
    {
        ++script_.calls;
        if (script_.answer != 0)
            info[kInfoTitle] = u"scripted";
        return script_.answer;
    }
    void GetSupportedTypes(std::vector<int>& types) const override { types = {kFileM3u, kFileM3u}; }

private:
    Script& script_;
};

TEST_F(MediaLibManagerTest, ProvidersAreAskedInOrderUntilOneAnswers)
{
    ScriptedProvider::Script scripts[] = {{0}, {1}, {1}};
    const String path = Write("list.m3u");
    for (ScriptedProvider::Script& script : scripts) {
        manager_.AddProvider(Released<ILocalMediaInfoProvider>(new ScriptedProvider(script)));
        if (script.answer == 0) {
            EXPECT_EQ(GetTitle(path), u"list.m3u");
            EXPECT_EQ(Peek(path), miss_) << "without an answer there is no entry";
        }
    }
    manager_.AddProvider(nullptr);
    EXPECT_EQ(GetTitle(path), u"scripted");
    manager_.Uninitialize();
    constexpr int kCalls[] = {2, 1, 0};
    for (std::size_t i = 0; i < std::size(scripts); ++i) {
        EXPECT_EQ(scripts[i].calls, kCalls[i]);
        EXPECT_TRUE(scripts[i].isReleased);
    }
}

TEST_F(MediaLibManagerTest, NewerFormatsAndCapitalsAreReadBeyond)
{
    SetBeyond(true);
    MediaLibManager beyond;
    beyond.Initialize(folder_.GetPath("other") + u"/");
    for (const char* name : {"a.flac", "A.MP3"}) {
        const String path = Write(name);
        attributes_.headers[path].SetText(u"Title", u"T");
        MediaInfo info;
        EXPECT_EQ(beyond.GetMediaInfo(path, info), 1);
        EXPECT_EQ(GetInfoText(info, kInfoTitle), u"T");
    }
    SetBeyond(false);
}

TEST_F(MediaLibManagerTest, WithoutItsCacheItReadsAndForgets)
{
    MediaLibManager manager;
    MediaInfo info;
    manager.UpdateMediaInfo(u"/a", Record(0, u"T"), kNow);
    EXPECT_EQ(manager.GetMediaInfo(u"/dir/a", info), 0);
    EXPECT_EQ(GetInfoText(info, kInfoTitle), u"a");
    EXPECT_EQ(manager.PeekMediaInfo(u"/a", info), CacheLook::Miss);
    EXPECT_EQ(manager.GetWorker(), nullptr);
    EXPECT_TRUE(manager.StopWork(0));
    EXPECT_EQ(manager.Uninitialize(), 1);
    EXPECT_EQ(manager.IsReady(), 1);
}

TEST_F(MediaLibManagerTest, ItStartsOnceAndAnewAfterItsEnd)
{
    manager_.UpdateMediaInfo(u"/a", Record(0, u"T"), 0);
    EXPECT_EQ(manager_.Initialize(folder_.GetPath("other") + u"/"), 0) << "it was started already";
    EXPECT_EQ(Peek(u"/a"), Record(0, u"T"));
    EXPECT_EQ(manager_.Uninitialize(), 1);
    EXPECT_EQ(Peek(u"/a"), miss_);
    EXPECT_EQ(manager_.Initialize(folder_.GetPath("lib") + u"/"), 1);
    EXPECT_EQ(GetTitle(u"/a"), u"T");
}

struct ProviderCase {
    ILocalMediaInfoProvider* provider;
    std::vector<int> types;
};

TEST_F(MediaLibManagerTest, ProvidersNameTheirTypesAndAnswerForFilesThatWontOpen)
{
    std::vector<int> newer;
    for (const NewerFormat& format : GetNewerFormats())
        newer.push_back(format.type);
    for (const auto& [provider, expected] : {
             ProviderCase{new WMFProvider,          {1, 2, 4, 6, 0, 3, 5, 7, 9, 10, 11, 12}},
             ProviderCase{new MP3Provider,          {0}                                    },
             ProviderCase{new NewerFormatsProvider, newer                                  },
    }) {
        const Released<ILocalMediaInfoProvider> owned(provider);
        std::vector<int> types = {99};
        provider->GetSupportedTypes(types);
        EXPECT_EQ(types, expected);
        MediaInfo info;
        EXPECT_EQ(provider->GetMediaInfo(u"/missing.mp3", info), 1);
        EXPECT_TRUE(info.empty());
    }
    // One that stands ready but isn't set up at the start.
    MediaInfo info;
    const Released<ILocalMediaInfoProvider> mp3(new MP3Provider);
    EXPECT_EQ(mp3->GetMediaInfo(Write("a.mp3"), info), 1);
    EXPECT_EQ(info.size(), 14U);
}

TEST(MediaLibManagerInstance, IsMadeByTheFirstGetterAlone)
{
    const test::FakeHost host;
    EXPECT_EQ(FindMediaLibManager(), nullptr);
    DestroyMediaLibManager();
    IMediaLibManager* const manager = GetMediaLibManager();
    EXPECT_NE(manager, nullptr);
    EXPECT_EQ(GetMediaLibManager(), manager);
    EXPECT_EQ(FindMediaLibManager(), manager);
    DestroyMediaLibManager();
    EXPECT_EQ(FindMediaLibManager(), nullptr);
}

} // namespace
} // namespace kivo::tunehive
