#include "medialib/AddFolderThread.h"
#include "medialib/MediaLibManager.h"
#include "medialib/RemoteProvider.h"
#include "platform/base/PostQueue.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Text.h"
#include "tests/support/FakeHost.h"
#include "tests/support/HttpServer.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <thread>

// With the real reader of tags and streams.
namespace kivo::tunehive {
namespace {

class MediaDoor : public testing::Test {
protected:
    MediaDoor()
    {
        common::SetAppPath(common::PathToText(KIVO_TEST_APP_DIR));
        SetBeyond(true);
        GetManager().Initialize(library_.GetPath());
    }
    ~MediaDoor() override
    {
        DestroyMediaLibManager();
        SetBeyond(false);
    }

    static MediaLibManager& GetManager()
    {
        return static_cast<MediaLibManager&>(*GetMediaLibManager());
    }
    static std::string ReadMedia(const std::string& name)
    {
        std::ifstream file(KIVO_TEST_MEDIA + name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    // Delivers what the reader posts until the condition holds.
    template <class Condition>
    void RunUntil(Condition holds)
    {
        while (!holds()) {
            host_.RunPosted();
            std::this_thread::yield();
        }
    }
    MediaInfo Peek(const String& path)
    {
        MediaInfo info;
        static_cast<void>(GetManager().PeekMediaInfo(path, info));
        return info;
    }

    test::FakeHost host_;
    test::TempFolder library_;
};

class ImportWindow : public CWnd {
public:
    ImportWindow() { CreateHandle(); }
    LPARAM WindowProc(unsigned /*message*/, WPARAM wParam, LPARAM lParam) override
    {
        paths = *TakeFolderImport(wParam, lParam).paths;
        return 0;
    }
    CStringArray paths;
};

TEST_F(MediaDoor, AnImportReadsTheTagsOfAllKinds)
{
    ImportWindow window;
    const String folder = common::PathToText(KIVO_TEST_MEDIA);
    CAddFolderThread::Start(window.GetHandle(), u"mine", folder);
    while (window.paths.empty()) {
        PostQueue::Get().RunPending();
        std::this_thread::yield();
    }
    const MediaInfo tone = Peek(folder + u"tone.mp3");
    EXPECT_EQ(GetInfoText(tone, kInfoTitle), u"A Tone");
    EXPECT_EQ(GetInfoText(tone, kInfoArtist), u"Its Maker");
    EXPECT_EQ(GetInfoText(tone, kInfoAlbum), u"Tones");
    EXPECT_EQ(GetInfoText(tone, kInfoLength), u"1");
    for (const char16_t* name :
         {u"tone.wma", u"tone.wav", u"tone.avi", u"tone.flac", u"tone.mkv"}) {
        SCOPED_TRACE(common::CString_to_utf8(name));
        EXPECT_EQ(GetInfoText(Peek(folder + name), kInfoLength), u"1");
        EXPECT_EQ(std::count(window.paths.begin(), window.paths.end(), folder + name), 1);
    }
}

TEST_F(MediaDoor, AStreamTellsItsTitleBehindTheFirstRequest)
{
    test::HttpServer server;
    server.ServeBytes("/tone.mp3", ReadMedia("tone.mp3"), "audio/mpeg");
    GetManager().SetRemoteProvider(Released<IRemoteMediaInfoProvider>(new RemoteProvider));
    const String url = common::utf8_to_CString(server.GetUrl("/tone.mp3"));
    MediaInfo info;
    EXPECT_EQ(GetManager().GetMediaInfo(url, info), 0);
    EXPECT_EQ(GetInfoText(info, kInfoTitle), url);
    RunUntil([&] { return !Peek(url).empty(); });
    EXPECT_EQ(GetManager().GetMediaInfo(url, info), 1);
    EXPECT_EQ(GetInfoText(info, kInfoTitle), u"A Tone");
}

TEST_F(MediaDoor, TheEndInTheMiddleOfAnOpeningWaitsForNobody)
{
    test::HttpServer server;
    server.Serve("/silent",
                 [](const test::HttpRequest&, test::HttpAnswer& answer) { answer.Hang(); });
    GetManager().SetRemoteProvider(Released<IRemoteMediaInfoProvider>(new RemoteProvider));
    MediaInfo info;
    GetManager().GetMediaInfo(common::utf8_to_CString(server.GetUrl("/silent")), info);
    RunUntil([&] { return server.CountRequests("/silent") == 1; });
    GetManager().Uninitialize(); // The server answers after this alone.
    host_.RunPosted();
}

} // namespace
} // namespace kivo::tunehive
