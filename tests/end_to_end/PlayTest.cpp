#include "tests/end_to_end/KivoRun.h"
#include "tests/support/HttpServer.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <memory>
#include <string>

namespace kivo::test {
namespace {

class KindTest : public testing::TestWithParam<const char*> {};

TEST_P(KindTest, PlaysToItsEndIntoAFileThatHoldsIt)
{
    const MediaFolder media;
    const std::string kind = GetParam();
    const bool isVideo = kind == "mp4" || kind == "avi" || kind == "mpg" || kind == "mkv";
    const std::string path = isVideo ? media.MakeVideo("a." + kind, 2) : media.Make("a." + kind, 2);
    const std::string target = media.GetPath("out.wav");
    KivoRun run({"--profile", media.GetPath("p"), "--quit-at-end", "--audio-file", target, path});
    ASSERT_EQ(run.WaitForEnd(), 0) << run.GetErrors();

    const Sound written = ReadWaveFile(target);
    const Sound expected = Decode(path);
    EXPECT_NEAR(written.seconds, expected.seconds, 0.05);
    EXPECT_NEAR(written.level, expected.level, 1.0);
}

INSTANTIATE_TEST_SUITE_P(
    EndToEnd,
    KindTest,
    testing::Values("mp3", "ogg", "opus", "flac", "wav", "wma", "m4a", "mp4", "avi", "mpg", "mkv"),
    [](const auto& row) { return std::string(row.param); });

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

TEST_F(UnplayableTest, FilesThatHoldNoMediaAndAFolderOfNothing)
{
    media_.Get().Write("text.mp3", "This is a letter and no music at all.\n");
    media_.Get().Write("empty.mp3", "");
    ASSERT_EQ(mkfifo(media_.GetPath("fifo.mp3").c_str(), 0600), 0);
    for (const char* const name : {"text.mp3", "empty.mp3", "fifo.mp3"})
        Expect(media_.GetPath(name), media_.GetPath(name) + " can't be played");
    std::filesystem::create_directory(media_.GetPath("nothing"));
    Expect(media_.GetPath("nothing"), "nothing could be played");
}

TEST_F(UnplayableTest, AddressesWhereNobodyAnswersOrNobodySpeaks)
{
    auto server = std::make_unique<HttpServer>();
    server->Serve("/a.mp3", [](const HttpRequest&, const HttpAnswer& answer) { answer.Hang(); });
    const std::string url = server->GetUrl("/a.mp3");
    Expect(url, url + " can't be played", 50);
    server.reset();
    Expect(url, url + " can't be played");
}

} // namespace
} // namespace kivo::test
