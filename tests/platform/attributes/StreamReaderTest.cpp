#include "shell/contracts/base/Released.h"
#include "shell/contracts/common/Text.h"
#include "tests/platform/attributes/MediaFiles.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string>
#include <vector>

namespace kivo::attributes {
namespace {

// The server of serve_files.py for as long as the object lives.
class Server {
public:
    Server()
    {
        std::array<int, 2> in{};
        std::array<int, 2> out{};
        if (::pipe(in.data()) != 0 || ::pipe(out.data()) != 0)
            return;
        child_ = ::fork();
        if (child_ == 0) {
            ::dup2(in[0], 0);
            ::dup2(out[1], 1);
            for (const int descriptor : {in[0], in[1], out[0], out[1]})
                ::close(descriptor);
            ::execlp("python3", "python3", KIVO_TEST_SERVER, KIVO_TEST_FILES, nullptr);
            ::_exit(127);
        }
        ::close(in[0]);
        ::close(out[1]);
        stop_ = in[1];
        std::array<char, 16> line{};
        const ssize_t got = ::read(out[0], line.data(), line.size() - 1);
        port_ = got > 0 ? std::atoi(line.data()) : 0;
        ::close(out[0]);
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    ~Server()
    {
        ::close(stop_);
        ::waitpid(child_, nullptr, 0);
    }

    [[nodiscard]] String Address(const std::string& path) const
    {
        return common::utf8_to_CString("http://127.0.0.1:" + std::to_string(port_) + "/" + path);
    }

private:
    pid_t child_ = -1;
    int stop_ = -1;
    int port_ = 0;
};

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
    Server server_;
    Recorder recorder_;
    Released<IWMReader> reader_{WMCreateReader()};
};

TEST_F(StreamReaderTest, AFileOnAServerIsOpenedReadAndEnds)
{
    ASSERT_FALSE(Failed(reader_->Open(server_.Address("plain.mp3"), &recorder_)));
    EXPECT_TRUE(recorder_.WaitFor(WMT_STATUS::Opened));
    EXPECT_TRUE(recorder_.WaitFor(WMT_STATUS::Started));
    EXPECT_TRUE(recorder_.WaitFor(WMT_STATUS::EndOfFile));
    EXPECT_EQ(TextOf(reader_->QueryHeaderInfo(), u"Title"), u"Tïtle 春");
    EXPECT_FALSE(Failed(reader_->Close()));
    EXPECT_EQ(recorder_.GetReferences(), 0);
}

TEST_F(StreamReaderTest, ARadioReportsEachSong)
{
    ASSERT_FALSE(Failed(reader_->Open(server_.Address("radio"), &recorder_)));
    EXPECT_TRUE(recorder_.WaitFor(WMT_STATUS::NewMetadata, 2));
    const auto title = TextOf(reader_->QueryHeaderInfo(), u"Title");
    ASSERT_TRUE(title.has_value());
    EXPECT_EQ(title->substr(0, 5), u"Song ");
    reader_->Close();
}

TEST_F(StreamReaderTest, AMissingFileIsAnError)
{
    ASSERT_FALSE(Failed(reader_->Open(server_.Address("nothing"), &recorder_)));
    EXPECT_TRUE(recorder_.WaitFor(WMT_STATUS::Error));
}

TEST_F(StreamReaderTest, ASilentServerDoesNotHoldTheClose)
{
    ASSERT_FALSE(Failed(reader_->Open(server_.Address("silent"), &recorder_)));
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
