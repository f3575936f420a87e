#include "medialib/RemoteProvider.h"

#include "medialib/IMediaLibManager.h"
#include "medialib/MediaLibUpdateParam.h"
#include "medialib/RemoteReaderCallback.h"
#include "tests/medialib/ScriptedAttributes.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <vector>

namespace kivo::tunehive {
namespace {

const String kUrl = u"http://host/stream";

class RemoteProviderTest : public testing::Test {
protected:
    RemoteProviderTest()
    {
        GetMediaLibManager()->Initialize(folder_.GetPath());
        GetMediaLibManager()->AddListener(AsyncCallback(this, &RemoteProviderTest::OnUpdate), {});
    }
    ~RemoteProviderTest() override
    {
        provider_.reset();
        DestroyMediaLibManager();
    }

    void OnUpdate(ITuneHive_AsyncCallbackParam* param)
    {
        updates_.push_back(static_cast<MediaLibUpdateParam*>(param)->GetPath());
    }
    int Ask(const String& url = kUrl)
    {
        MediaInfo info;
        const int result = provider_->GetMediaInfo(url, info);
        EXPECT_TRUE(info.empty());
        return result;
    }
    void Report(WMT_STATUS status)
    {
        IWMReaderCallback* const callback = attributes_.GetCallback(kUrl);
        ASSERT_NE(callback, nullptr);
        EXPECT_EQ(callback->OnStatus(status, E_FAIL), S_OK);
        host_.RunPosted();
    }
    MediaInfo Peek()
    {
        MediaInfo info;
        static_cast<void>(GetMediaLibManager()->PeekMediaInfo(kUrl, info));
        return info;
    }

    test::FakeHost host_;
    test::ScriptedAttributes attributes_;
    test::TempFolder folder_;
    std::vector<String> updates_;
    Released<RemoteProvider> provider_{new RemoteProvider};
};

TEST_F(RemoteProviderTest, ARequestOnlyStartsTheWorkAndOnceForAStream)
{
    EXPECT_EQ(Ask(), 0);
    Ask();
    EXPECT_TRUE(attributes_.log.empty());
    host_.RunPosted();
    Ask();
    host_.RunPosted();
    EXPECT_EQ(attributes_.log, std::vector<String>{u"open " + kUrl});
    EXPECT_EQ(attributes_.readers, 1);
}

TEST_F(RemoteProviderTest, AStreamIsHarvestedAndClosedByTheFirstReportWithData)
{
    for (const WMT_STATUS report :
         {WMT_STATUS::Opened, WMT_STATUS::Started, WMT_STATUS::NewMetadata}) {
        attributes_.headers.clear();
        attributes_.log.clear();
        updates_.clear();
        Ask();
        host_.RunPosted();
        Report(WMT_STATUS::Opened); // Without a header yet.
        Report(static_cast<WMT_STATUS>(2));
        EXPECT_EQ(attributes_.readers, 1);
        EXPECT_TRUE(updates_.empty());
        attributes_.headers[kUrl].SetText(u"Title", u"Station");
        Report(report);
        EXPECT_EQ(GetInfoText(Peek(), kInfoTitle), u"Station");
        EXPECT_EQ(updates_, std::vector<String>{kUrl});
        EXPECT_EQ(attributes_.log, (std::vector<String>{u"open " + kUrl, u"close " + kUrl}));
        EXPECT_EQ(attributes_.readers, 0);
    }
}

TEST_F(RemoteProviderTest, AFailedStreamIsDroppedAndMayBeAskedForAgain)
{
    for (const WMT_STATUS end : {WMT_STATUS::Error, WMT_STATUS::EndOfFile}) {
        attributes_.log.clear();
        Ask();
        host_.RunPosted();
        Report(end);
        EXPECT_EQ(attributes_.log, (std::vector<String>{u"open " + kUrl, u"close " + kUrl}));
        EXPECT_EQ(attributes_.readers, 0);
    }
    EXPECT_TRUE(updates_.empty());
    EXPECT_TRUE(Peek().empty());
}

TEST_F(RemoteProviderTest, AnOpenThatFailsAtOnceLeavesItsReader)
{
    attributes_.opensStreams = false;
    Ask();
    host_.RunPosted();
    Ask();
    host_.RunPosted();
    EXPECT_EQ(attributes_.log, std::vector<String>{u"open " + kUrl});
}

TEST_F(RemoteProviderTest, StepsWithoutAStreamAreNothing)
{
    const auto step = [this](const String& url, int operation) {
        RemoteProviderProcessParam param(url, operation);
        provider_->Process(&param);
    };
    step(u"", 0);
    for (const int operation : {1, 2, 3})
        step(kUrl, operation);
    EXPECT_TRUE(attributes_.log.empty());
    attributes_.hasReader = false; // Nor are those of a reader that the platform didn't give.
    for (const int operation : {0, 2, 1})
        step(kUrl, operation);
    EXPECT_TRUE(updates_.empty());
}

TEST_F(RemoteProviderTest, ItsEndClosesItsReadersAndSilencesWhatIsUnderWay)
{
    Ask();
    Ask(u"http://host/another");
    host_.RunPosted();
    attributes_.headers[kUrl].SetText(u"Title", u"Station");
    IWMReaderCallback* const callback = attributes_.GetCallback(kUrl);
    callback->AddRef();
    callback->OnStatus(WMT_STATUS::Opened, S_OK);
    Ask(u"http://host/third");
    provider_.reset();
    EXPECT_EQ(attributes_.readers, 0);
    EXPECT_EQ(attributes_.log.size(), 4U);
    callback->OnStatus(WMT_STATUS::Opened, S_OK); // The platform is late.
    callback->Release();
    host_.RunPosted();
    EXPECT_EQ(attributes_.log.size(), 4U);
    EXPECT_TRUE(updates_.empty());
}

} // namespace
} // namespace kivo::tunehive
