#include "shell/contracts/base/Released.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Files.h"
#include "tests/platform/attributes/MediaFiles.h"
#include "tests/support/HttpServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

namespace kivo::attributes {
namespace {

class Recorder final : public IWMReaderCallback {
public:
    void AddRef() override { ++references_; }
    void Release() override { --references_; }
    HRESULT OnStatus(WMT_STATUS status, HRESULT /*result*/) override
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        statuses_.push_back(status);
        changed_.notify_all();
        return S_OK;
    }

    // True when the status comes within ten seconds.
    bool WaitFor(WMT_STATUS status, std::size_t times = 1)
    {
        std::unique_lock<std::mutex> lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(10), [&] {
            return static_cast<std::size_t>(
                       std::count(statuses_.begin(), statuses_.end(), status)) >= times;
        });
    }
    [[nodiscard]] int GetReferences() const { return references_; }

private:
    std::atomic<int> references_{0};
    std::mutex mutex_; // Guards the statuses.
    std::condition_variable changed_;
    std::vector<WMT_STATUS> statuses_;
};

class StreamReaderTest : public testing::Test {
public:
    static void SetUpTestSuite() { PrepareMediaFiles(); }

protected:
    StreamReaderTest()
    {
        server_.ServeBytes("/plain.mp3", ReadFile("plain.mp3"), "audio/mpeg");
        server_.Serve("/silent", [](const auto&, test::HttpAnswer& answer) { answer.Hang(); });
        server_.Serve("/radio", [](const auto&, test::HttpAnswer& answer) { Broadcast(answer); });
    }

    static std::string ReadFile(const std::string& name)
    {
        std::string bytes;
        static_cast<void>(ReadFileBytes(FilePath(name), bytes, std::size_t{1} << 20U));
        return bytes;
    }

    // A radio whose title changes with every fifth block, for some seconds.
    static void Broadcast(test::HttpAnswer& answer)
    {
        constexpr std::size_t kBlock = 8000;
        const std::string sound = ReadFile("bare.mp3") + ReadFile("bare.mp3");
        answer.Send("HTTP/1.0 200 OK\r\nContent-Type: audio/mpeg\r\nicy-name: Loopback FM\r\n"
                    "icy-metaint: 8000\r\n\r\n");
        for (int block = 0; block < 600; ++block) {
            std::string title = "StreamTitle='Song " + std::to_string(block / 5) + "';";
            title.resize((title.size() + 15) / 16 * 16, '\0');
            const std::string part =
                sound.substr(static_cast<std::size_t>(block) % 8 * kBlock, kBlock) +
                static_cast<char>(title.size() / 16) + title;
            if (!answer.Send(part) || !answer.Pause(10))
                return;
        }
    }

    [[nodiscard]] String Address(const std::string& path) const
    {
        return common::utf8_to_CString(server_.GetUrl("/" + path));
    }

    test::HttpServer server_;
    Recorder recorder_;
    Released<IWMReader> reader_{WMCreateReader()};
};

TEST_F(StreamReaderTest, AFileOnAServerIsOpenedReadAndEnds)
{
    ASSERT_FALSE(Failed(reader_->Open(Address("plain.mp3"), &recorder_)));
    EXPECT_TRUE(recorder_.WaitFor(WMT_STATUS::Opened));
    EXPECT_TRUE(recorder_.WaitFor(WMT_STATUS::Started));
    EXPECT_TRUE(recorder_.WaitFor(WMT_STATUS::EndOfFile));
    EXPECT_EQ(TextOf(reader_->QueryHeaderInfo(), u"Title"), u"Tïtle 春");
    EXPECT_FALSE(Failed(reader_->Close()));
    EXPECT_EQ(recorder_.GetReferences(), 0);
}

TEST_F(StreamReaderTest, ARadioReportsEachSong)
{
    ASSERT_FALSE(Failed(reader_->Open(Address("radio"), &recorder_)));
    EXPECT_TRUE(recorder_.WaitFor(WMT_STATUS::NewMetadata, 2));
    const auto title = TextOf(reader_->QueryHeaderInfo(), u"Title");
    ASSERT_TRUE(title.has_value());
    EXPECT_EQ(title->substr(0, 5), u"Song ");
    reader_->Close();
}

TEST_F(StreamReaderTest, AMissingFileIsAnError)
{
    ASSERT_FALSE(Failed(reader_->Open(Address("nothing"), &recorder_)));
    EXPECT_TRUE(recorder_.WaitFor(WMT_STATUS::Error));
}

TEST_F(StreamReaderTest, ASilentServerDoesNotHoldTheClose)
{
    ASSERT_FALSE(Failed(reader_->Open(Address("silent"), &recorder_)));
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(Failed(reader_->Close()));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
    EXPECT_EQ(recorder_.GetReferences(), 0);
}

TEST_F(StreamReaderTest, OtherSchemesAreRefused)
{
    for (const char16_t* url : {u"file:///etc/passwd",
                                u"concat:a|b",
                                u"lavfi://x",
                                u"ftp://127.0.0.1/x",
                                u"plain.mp3",
                                u"http://127.0.0.1/a\r\nb"}) {
        EXPECT_TRUE(Failed(reader_->Open(url, &recorder_)));
    }
    EXPECT_EQ(recorder_.GetReferences(), 0);
}

} // namespace
} // namespace kivo::attributes
