#include "medialib/MediaLibManager.h"

#include "medialib/MediaFileType.h"
#include "medialib/MediaLibUpdateParam.h"
#include "medialib/MP3Provider.h"
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

struct TypeCase {
    const char* name;
    const char* file;
    int type;
    int typeBeyond;
};

class FileTypeTest : public testing::TestWithParam<TypeCase> {};

TEST_P(FileTypeTest, GoesByTheExtension)
{
    const test::TempFolder folder;
    folder.Write(GetParam().file, "");
    const String path = folder.GetPath(GetParam().file);
    EXPECT_EQ(MediaLibManager::GetFileType(path), GetParam().type);
    SetBeyond(true);
    EXPECT_EQ(MediaLibManager::GetFileType(path), GetParam().typeBeyond);
    SetBeyond(false);
}

constexpr TypeCase kTypeCases[] = {
    {"Mp3",        "a.mp3",      0,           0          },
    {"Wma",        "a.wma",      1,           1          },
    {"Wmv",        "a.wmv",      2,           2          },
    {"Wav",        "a.wav",      3,           3          },
    {"Asf",        "a.asf",      4,           4          },
    {"Midi",       "a.midi",     5,           5          },
    {"Avi",        "a.avi",      6,           6          },
    {"Mpg",        "a.mpg",      7,           7          },
    {"Mpeg",       "a.mpeg",     7,           7          },
    {"Rm",         "a.rm",       9,           9          },
    {"Rmvb",       "a.rmvb",     10,          10         },
    {"Mp4",        "a.mp4",      11,          11         },
    {"Ape",        "a.ape",      12,          12         },
    {"Asx",        "a.asx",      13,          13         },
    {"M3u",        "a.m3u",      14,          14         },
    {"Mid",        "a.mid",      kNoFileType, kNoFileType},
    {"UpperCase",  "a.MP3",      kNoFileType, 0          },
    {"MixedCase",  "a.Wma",      kNoFileType, 1          },
    {"Flac",       "a.flac",     kNoFileType, 100        },
    {"FlacUpper",  "a.FLAC",     kNoFileType, 100        },
    {"NoDot",      "mp3",        kNoFileType, kNoFileType},
    {"DotAlone",   "a.",         kNoFileType, kNoFileType},
    {"TheLastDot", "a.mp3.txt",  kNoFileType, kNoFileType},
    {"FolderDot",  "x.mp3/file", kNoFileType, kNoFileType},
};

INSTANTIATE_TEST_SUITE_P(MediaLibManager,
                         FileTypeTest,
                         testing::ValuesIn(kTypeCases),
                         test::CaseName<TypeCase>);

TEST_F(MediaLibManagerTest, OnlyAnExistingFileHasAType)
{
    EXPECT_EQ(MediaLibManager::GetFileType(folder_.GetPath("missing.mp3")), kNoFileType);
    EXPECT_EQ(MediaLibManager::GetFileType(u"http://host/a.mp3"), kNoFileType);
    Write("folder.mp3/x");
    EXPECT_EQ(MediaLibManager::GetFileType(folder_.GetPath("folder.mp3")), kNoFileType);
}

TEST_F(MediaLibManagerTest, AFirstRequestReadsTheFileAndALaterOneTheCache)
{
    const String path = Write("a.wma");
    attributes_.headers[path].SetText(u"Title", u"T");
    manager_.AddListener(AsyncCallback(&listener_, &Listener::OnUpdate), {});
    EXPECT_EQ(GetTitle(path), u"T");
    std::filesystem::remove(folder_.GetNative() / "a.wma");
    MediaInfo info;
    EXPECT_EQ(manager_.GetMediaInfo(path, info), 1);
    EXPECT_EQ(GetInfoText(info, kInfoTitle), u"T");
    EXPECT_EQ(attributes_.editorOpens, 1);
    host_.RunPosted();
    EXPECT_TRUE(listener_.paths.empty()) << "a read tells nobody";
}

struct UnreadCase {
    const char* name;
    const char* file; // Below the test's folder; a URL stands as it is.
    bool exists;
    int result;
    String title;
    bool hasEntry;
};

class UnreadTest : public MediaLibManagerTest, public testing::WithParamInterface<UnreadCase> {};

TEST_P(UnreadTest, EndsAs)
{
    const UnreadCase& row = GetParam();
    if (row.exists)
        folder_.Write(row.file, "");
    const std::string name = row.file;
    const String path = name.find("://") != std::string::npos ? String(name.begin(), name.end())
                                                              : folder_.GetPath(name);
    MediaInfo info = Record(kInfoAlbum, u"of another file");
    EXPECT_EQ(manager_.GetMediaInfo(path, info), row.result);
    EXPECT_EQ(info, Record(kInfoTitle, row.title));
    EXPECT_EQ(Peek(path), row.hasEntry ? MediaInfo() : miss_);
    manager_.GetMediaInfo(path, info);
    EXPECT_EQ(attributes_.editorOpens, row.hasEntry ? 1 : 0) << "an entry is never tried again";
}

const UnreadCase kUnreadCases[] = {
    {"AMissingFile",       "a.mp3",             false, 0, u"a.mp3",             false},
    {"AnUnknownExtension", "a.txt",             true,  0, u"a.txt",             false},
    {"ACapitalExtension",  "A.MP3",             true,  0, u"A.MP3",             false},
    {"APlaylist",          "a.m3u",             true,  0, u"a.m3u",             false},
    {"AUrl",               "http://host/a.mp3", false, 0, u"http://host/a.mp3", false},
    {"AFileThatWontOpen",  "a.rmvb",            true,  1, u"a.rmvb",            true },
};

INSTANTIATE_TEST_SUITE_P(MediaLibManager,
                         UnreadTest,
                         testing::ValuesIn(kUnreadCases),
                         test::CaseName<UnreadCase>);

TEST_F(MediaLibManagerTest, AFolderIsNoTrack)
{
    Write("album/x");
    MediaInfo info;
    EXPECT_EQ(manager_.GetMediaInfo(folder_.GetPath("album"), info), 0);
    EXPECT_EQ(info, Record(kInfoTitle, u"album"));
    // A title stands in any case.
    EXPECT_EQ(GetTitle(folder_.GetPath("album") + u"/"), folder_.GetPath("album") + u"/");
}

TEST_F(MediaLibManagerTest, TheTitleThatIsMadeUpNeverReachesTheCache)
{
    const String path = Write("a.wma");
    attributes_.headers[path].SetText(u"Author", u"A");
    EXPECT_EQ(GetTitle(path), u"a.wma");
    EXPECT_EQ(GetInfoText(Peek(path), kInfoArtist), u"A");
    EXPECT_EQ(Peek(path).at(kInfoTitle), u"");
    EXPECT_EQ(GetTitle(path), u"a.wma") << "and is made up anew from the cache";
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

// Removes itself and another while it is told.
class Leaver {
public:
    Leaver(MediaLibManager& manager, Listener& other)
        : manager_(manager)
        , other_(other)
    {
    }
    void OnUpdate(ITuneHive_AsyncCallbackParam* /*param*/)
    {
        manager_.RemoveListener(AsyncCallback(this, &Leaver::OnUpdate));
        manager_.AddListener(AsyncCallback(&other_, &Listener::OnUpdateToo), {});
    }

private:
    MediaLibManager& manager_;
    Listener& other_;
};

TEST_F(MediaLibManagerTest, AListenerMayLeaveAndAddWhileItIsTold)
{
    Leaver leaver(manager_, listener_);
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
    ScriptedProvider(std::vector<int> types, int answer, int& calls, int& alive)
        : types_(std::move(types))
        , answer_(answer)
        , calls_(calls)
        , alive_(alive)
    {
        ++alive_;
    }
    void Release() override { delete this; }
    int GetMediaInfo(String /*path*/, MediaInfo& info) override
    {
        ++calls_;
        if (answer_ != 0)
            info[kInfoTitle] = u"scripted";
        return answer_;
    }
    void GetSupportedTypes(std::vector<int>& types) const override { types = types_; }

private:
    ~ScriptedProvider() override { --alive_; }

    std::vector<int> types_;
    int answer_;
    int& calls_;
    int& alive_;
};

TEST_F(MediaLibManagerTest, ProvidersAreAskedInOrderUntilOneAnswers)
{
    int calls[3] = {};
    int alive = 0;
    const int answers[3] = {0, 1, 1};
    const String path = Write("list.m3u");
    for (int i = 0; i < 3; ++i) {
        manager_.AddProvider(Released<ILocalMediaInfoProvider>(
            new ScriptedProvider({kFileM3u, kFileM3u}, answers[i], calls[i], alive)));
        if (i == 0) {
            EXPECT_EQ(GetTitle(path), u"list.m3u");
            EXPECT_EQ(Peek(path), miss_) << "without an answer there is no entry";
        }
    }
    manager_.AddProvider(nullptr);
    EXPECT_EQ(GetTitle(path), u"scripted");
    EXPECT_EQ(calls[0], 2);
    EXPECT_EQ(calls[1], 1);
    EXPECT_EQ(calls[2], 0);
    EXPECT_EQ(alive, 3);
    manager_.Uninitialize();
    EXPECT_EQ(alive, 0);
}

// It has the same place in the table, behind the one that the start sets up.
TEST_F(MediaLibManagerTest, TheMp3ProviderFitsIn)
{
    manager_.AddProvider(Released<ILocalMediaInfoProvider>(new MP3Provider));
    const String path = Write("a.mp3");
    GetTitle(path);
    EXPECT_EQ(Peek(path), MediaInfo()) << "the first of the two has answered";
}

// Answers for a stream at once.
class ScriptedRemote final : public IRemoteMediaInfoProvider {
public:
    void Release() override { delete this; }
    int GetMediaInfo(String url, MediaInfo& info) override
    {
        info[kInfoTitle] = u"of " + url;
        return 1;
    }
};

TEST_F(MediaLibManagerTest, ARemoteProviderAnswersForUrls)
{
    manager_.SetRemoteProvider(Released<IRemoteMediaInfoProvider>(new ScriptedRemote));
    EXPECT_EQ(GetTitle(u"http://host/"), u"of http://host/");
    EXPECT_EQ(GetInfoText(Peek(u"http://host/"), kInfoTitle), u"of http://host/");
}

TEST_F(MediaLibManagerTest, NewerFormatsAreReadBeyond)
{
    const String flac = Write("a.flac");
    attributes_.headers[flac].SetText(u"Title", u"T");
    const String upper = Write("A.MP3");
    attributes_.headers[upper].SetText(u"Title", u"U");
    EXPECT_EQ(GetTitle(flac), u"a.flac");
    SetBeyond(true);
    MediaLibManager beyond;
    beyond.Initialize(folder_.GetPath("other") + u"/");
    MediaInfo info;
    EXPECT_EQ(beyond.GetMediaInfo(flac, info), 1);
    EXPECT_EQ(GetInfoText(info, kInfoTitle), u"T");
    EXPECT_EQ(beyond.GetMediaInfo(upper, info), 1);
    EXPECT_EQ(GetInfoText(info, kInfoTitle), u"U");
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

TEST_F(MediaLibManagerTest, WhoWaitsForTheLoadIsCalledOnce)
{
    manager_.CallWhenLoaded(AsyncCallback(&listener_, &Listener::OnUpdate), {});
    GetTitle(u"/a"); // Waits for the load.
    manager_.CallWhenLoaded(AsyncCallback(&listener_, &Listener::OnUpdateToo), {});
    manager_.Uninitialize(); // The loading thread is gone: all has been posted.
    host_.RunPosted();
    EXPECT_EQ(listener_.paths, (std::vector<String>{u"", u""}));
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
