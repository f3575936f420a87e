#include "tests/end_to_end/KivoRun.h"
#include "tests/support/CaseName.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cmath>
#include <ostream>

namespace kivo::test {
namespace {

struct Kind {
    const char* name;
    const char* file;
    bool isVideo;
};

const Kind kKinds[] = {
    {"mp3",  "a.mp3",  false},
    {"ogg",  "a.ogg",  false},
    {"opus", "a.opus", false},
    {"flac", "a.flac", false},
    {"wav",  "a.wav",  false},
    {"wma",  "a.wma",  false},
    {"m4a",  "a.m4a",  false},
    {"mp4",  "a.mp4",  true },
    {"avi",  "a.avi",  true },
    {"mpg",  "a.mpg",  true },
    {"mkv",  "a.mkv",  true },
};

void PrintTo(const Kind& row, std::ostream* out)
{
    *out << row.name;
}

class KindTest : public testing::TestWithParam<Kind> {};

TEST_P(KindTest, PlaysToItsEndIntoAFileThatHoldsIt)
{
    const Kind& kind = GetParam();
    const MediaFolder media;
    const std::string path =
        kind.isVideo ? media.MakeVideo(kind.file, 2) : media.Make(kind.file, 2);
    const std::string target = media.GetPath("out.wav");
    KivoRun run({"--profile", media.GetPath("p"), "--quit-at-end", "--audio-file", target, path});
    ASSERT_EQ(run.WaitForEnd(), 0) << run.GetErrors();

    const Sound written = ReadWaveFile(target);
    const Sound expected = Decode(path);
    EXPECT_NEAR(written.seconds, expected.seconds, 0.05);
    EXPECT_NEAR(written.level, expected.level, 1.0);
}

INSTANTIATE_TEST_SUITE_P(EndToEnd, KindTest, testing::ValuesIn(kKinds), CaseName<Kind>);

TEST(Play, ATuneSoundsInRealTimeWithoutADevice)
{
    const MediaFolder media;
    KivoRun run({"--profile", media.GetPath("p"), "--quit-at-end", media.Make("a.mp3", 0.3)});
    EXPECT_EQ(run.WaitForEnd(), 0);
    EXPECT_NE(run.GetErrors().find("Playing: a.mp3\n"), std::string::npos) << run.GetErrors();
}

TEST(Play, OneFileHoldsTheWholeRun)
{
    const MediaFolder media;
    const std::string target = media.GetPath("out.wav");
    KivoRun run({"--quit-at-end",
                 "--profile",
                 media.GetPath("p"),
                 "--audio-file",
                 target,
                 media.Make("a.flac", 1),
                 media.Make("b.wav", 0.5, "-ar 22050"),
                 media.Make("c.flac", 1)});
    ASSERT_EQ(run.WaitForEnd(), 0) << run.GetErrors();
    EXPECT_NEAR(ReadWaveFile(target).seconds, 2.5, 0.05);
}

TEST(Play, NamesThatAreNoTextAndNamesLikeOptionsAreFiles)
{
    const MediaFolder media;
    media.Make("plain.wav", 0.2);
    for (const char* const name : {"caf\xE9.wav", "-x.wav", "a b%20#?.wav", "c:\\d.wav"}) {
        SCOPED_TRACE(name);
        const std::string path = media.GetPath(name);
        ASSERT_EQ(rename(media.GetPath("plain.wav").c_str(), path.c_str()), 0);
        KivoRun run({"--profile", media.GetPath("p"), "--quit-at-end", "--", path});
        EXPECT_EQ(run.WaitForEnd(), 0) << run.GetErrors();
        ASSERT_EQ(rename(path.c_str(), media.GetPath("plain.wav").c_str()), 0);
    }
}

TEST(Play, AFolderIsLookedThroughAndItsFirstTrackPlays)
{
    const MediaFolder media;
    media.Get().Write("music/notes.txt", "no music");
    media.Make("music/b.mp3", 0.2);
    media.Make("music/a.mp3", 0.2);
    KivoRun run({"--profile", media.GetPath("p"), "--quit-at-end", media.GetPath("music")});
    EXPECT_EQ(run.WaitForEnd(), 0);
    const std::size_t first = run.GetErrors().find("Playing: a.mp3");
    EXPECT_NE(first, std::string::npos) << run.GetErrors();
    EXPECT_GT(run.GetErrors().find("Playing: b.mp3"), first);
}

// What can't be played ends with a line that names it, and with status 1.
class UnplayableTest : public testing::Test {
protected:
    void Expect(const std::string& item, const std::string& line, int seconds = 30)
    {
        SCOPED_TRACE(item);
        KivoRun run({"--profile", media_.GetPath("p"), "--quit-at-end", item});
        EXPECT_EQ(run.WaitForEnd(seconds), 1) << run.GetErrors();
        EXPECT_NE(run.GetErrors().find(line), std::string::npos) << run.GetErrors();
        EXPECT_NE(run.GetErrors().find("nothing could be played"), std::string::npos);
    }

    MediaFolder media_;
};

TEST_F(UnplayableTest, FilesThatHoldNoMedia)
{
    media_.Get().Write("text.mp3", "This is a letter and no music at all.\n");
    media_.Get().Write("empty.mp3", "");
    ASSERT_EQ(mkfifo(media_.GetPath("fifo.mp3").c_str(), 0600), 0);
    for (const char* const name : {"text.mp3", "empty.mp3", "fifo.mp3"})
        Expect(media_.GetPath(name), media_.GetPath(name) + " can't be played");
}

TEST_F(UnplayableTest, AFolderOfNothing)
{
    ASSERT_EQ(mkdir(media_.GetPath("nothing").c_str(), 0700), 0);
    Expect(media_.GetPath("nothing"), "nothing could be played");
}

// A port of this machine. While it listens it accepts and says nothing.
class Port {
public:
    Port()
        : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        auto* const any = reinterpret_cast<sockaddr*>(&address);
        EXPECT_EQ(bind(socket_, any, size), 0);
        EXPECT_EQ(getsockname(socket_, any, &size), 0);
        number_ = ntohs(address.sin_port);
    }
    Port(const Port&) = delete;
    Port& operator=(const Port&) = delete;
    ~Port() { close(socket_); }

    void Listen() const { EXPECT_EQ(listen(socket_, 8), 0); }
    [[nodiscard]] std::string GetUrl() const
    {
        return "http://127.0.0.1:" + std::to_string(number_) + "/a.mp3";
    }

private:
    int socket_;
    int number_ = 0;
};

TEST_F(UnplayableTest, AnAddressWhereNobodyAnswers)
{
    const Port port; // Nobody listens.
    Expect(port.GetUrl(), port.GetUrl() + " can't be played");
}

TEST_F(UnplayableTest, AServerThatSaysNothing)
{
    const Port port;
    port.Listen();
    Expect(port.GetUrl(), port.GetUrl() + " can't be played", 50);
}

} // namespace
} // namespace kivo::test
