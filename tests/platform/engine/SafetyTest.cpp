#include "tests/platform/engine/EngineRun.h"
#include "tests/support/CaseName.h"
#include "tests/support/HttpServer.h"
#include "tests/support/TempFolder.h"
#include "tests/support/TestLoop.h"

#include <gtest/gtest.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace kivo::test {

namespace {

// Notices each opening of the files below it that are named.
class OpenWatch {
public:
    OpenWatch()
        : descriptor_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
    }
    OpenWatch(const OpenWatch&) = delete;
    OpenWatch& operator=(const OpenWatch&) = delete;
    ~OpenWatch() { close(descriptor_); }

    void Add(const std::string& path) const
    {
        ASSERT_GE(inotify_add_watch(descriptor_, path.c_str(), IN_OPEN), 0) << path;
    }
    [[nodiscard]] bool HasSeen() const
    {
        std::array<char, 4096> events{};
        return read(descriptor_, events.data(), events.size()) > 0;
    }

private:
    int descriptor_;
};

struct ListCase {
    const char* name;
    const char* file;
    const char* text; // "@" stands for the canary's path, "%" for its address.
};

const ListCase kLists[] = {
    {"M3uOfFiles",     "list.m3u",      "#EXTM3U\n#EXTINF:1,x\n@\n"                                                                 },
    {"M3uOfAddresses", "list.m3u",      "#EXTM3U\n%\n"                                                                              },
    {"M3uNamedMp3",    "list.mp3",      "#EXTM3U\n#EXTINF:1,x\n@\n"                                                                 },
    {"Pls",            "list.pls",      "[playlist]\nFile1=@\nLength1=-1\nNumberOfEntries=1\nVersion=2\n"                           },
    {"PlsOfAddresses",
     "list.pls",                        "[playlist]\nFile1=%\nLength1=-1\nNumberOfEntries=1\nVersion=2\n"                           },
    {"Asx",            "list.asx",      "<asx version=\"3.0\"><entry><ref href=\"%\"/></entry></asx>"                               },
    {"AsfReference",   "list.asf",      "[Reference]\r\nRef1=%?MSWMExt=.asf\r\n"                                                    },
    {"Edl",            "list.edl",      "# mpv EDL v0\n@,0,1\n"                                                                     },
    {"Cue",            "list.cue",      "FILE \"@\" WAVE\n  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n"                                },
    {"Concat",         "list.ffconcat", "ffconcat version 1.0\nfile '@'\n"                                                          },
    {"ConcatAddress",  "list.ffconcat", "ffconcat version 1.0\nfile '%'\n"                                                          },
    {"Segments",       "list.m3u8",     "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\n@\n#EXT-X-ENDLIST\n"                         },
    {"SegmentsAsUrl",
     "list.m3u8",                       "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\nfile://@\n#EXT-X-ENDLIST\n"                  },
    {"Subfile",
     "list.m3u8",                       "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\nsubfile,,start,0,end,0,,:@\n#EXT-X-ENDLIST\n"},
    {"ConcatProtocol",
     "list.m3u8",                       "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\nconcat:@\n#EXT-X-ENDLIST\n"                  },
    {"Manifest",
     "list.mpd",                        "<?xml version=\"1.0\"?><MPD xmlns=\"urn:mpeg:dash:schema:mpd:2011\" type=\"static\" "
     "mediaPresentationDuration=\"PT1S\" profiles=\"urn:mpeg:dash:profile:isoff-on-demand:2011\">"
     "<Period><AdaptationSet mimeType=\"audio/mp4\"><Representation id=\"1\" bandwidth=\"1\">"
     "<BaseURL>file://@</BaseURL><SegmentBase/></Representation></AdaptationSet></Period></MPD>"                    },
    {"Session",
     "list.sdp",                        "v=0\no=- 0 0 IN IP4 127.0.0.1\ns=x\nc=IN IP4 127.0.0.1\nt=0 0\nm=audio 5004 RTP/AVP 0\n"   },
    {"Mf",             "list.mf",       "mf://@@\n"                                                                                 },
};

std::string Fill(std::string text, const std::string& path, const std::string& url)
{
    for (const auto& [mark, value] : {
             std::pair{'@', path},
             std::pair{'%', url }
    }) {
        for (std::size_t at = text.find(mark); at != std::string::npos;
             at = text.find(mark, at + value.size()))
            text.replace(at, 1, value);
    }
    return text;
}

class ListTest : public testing::TestWithParam<ListCase> {
public:
    ListTest()
    {
        folder.Write("canary.wav", ReadMedia("tone.wav"));
        watch.Add(canary);
        server.ServeBytes("/canary.wav", ReadMedia("tone.wav"), "audio/wav");
        text = Fill(GetParam().text, canary, server.GetUrl("/canary.wav"));
    }

    const TempFolder folder;
    const std::string canary = folder.GetNative() / "canary.wav";
    OpenWatch watch;
    HttpServer server;
    std::string text;
    EngineRun run;
};

TEST_P(ListTest, FromTheDiskOpensNothingElse)
{
    folder.Write(GetParam().file, text);
    run.SetBytes((folder.GetNative() / GetParam().file).string());
    run.RunToState(8, 5'000);
    EXPECT_EQ(run.GetTrace(), "9 8");
    EXPECT_FALSE(watch.HasSeen());
    EXPECT_EQ(server.CountConnections(), 0U);
}

TEST_P(ListTest, FromTheNetworkOpensNoFile)
{
    server.ServeBytes(std::string("/") + GetParam().file, text, "application/octet-stream");
    run.SetBytes(server.GetUrl(std::string("/") + GetParam().file));
    run.RunToState(8, 5'000);
    EXPECT_EQ(run.GetTrace(), "9 8");
    EXPECT_FALSE(watch.HasSeen());
}

INSTANTIATE_TEST_SUITE_P(Safety, ListTest, testing::ValuesIn(kLists), CaseName<ListCase>);

TEST(Safety, NothingBesideTheFileIsOpened)
{
    const TempFolder folder;
    OpenWatch watch;
    folder.Write("song.mp4", ReadMedia("tone.mp4"));
    for (const char* name : {"song.srt",
                             "song.ass",
                             "song.en.srt",
                             "song.mka",
                             "song.cue",
                             "cover.jpg",
                             "folder.png",
                             "song.png",
                             "song.mp4.conf"}) {
        folder.Write(name, ReadMedia("tone.mp3"));
        watch.Add(folder.GetNative() / name);
    }
    EngineRun run;
    run.SetBytes((folder.GetNative() / "song.mp4").string());
    run.RunToState(8);
    EXPECT_EQ(run.GetTrace(), "9 3 8");
    EXPECT_FALSE(watch.HasSeen());
}

// NOLINTBEGIN(concurrency-mt-unsafe): no other thread is there yet

// A home whose owner has set the core up for another program.
class HomeTest : public testing::Test {
public:
    HomeTest()
    {
        const std::string marks = "touch " + GetMark();
        folder.Write("config/mpv/mpv.conf",
                     "pause=yes\nvolume=1\ninput-ipc-server=" + GetMark() +
                         "\nlog-file=" + GetMark());
        folder.Write("config/mpv/scripts/mark.lua", "os.execute('" + marks + "')");
        folder.Write("config/mpv/input.conf", "q run touch " + GetMark());
        for (const char* name : {"youtube-dl", "yt-dlp"}) {
            folder.Write(std::string("bin/") + name, "#!/bin/sh\n" + marks + "\n");
            chmod((folder.GetNative() / "bin" / name).c_str(), 0755);
        }
        Set("HOME", folder.GetNative() / "home");
        Set("MPV_HOME", folder.GetNative() / "config/mpv");
        Set("XDG_CONFIG_HOME", folder.GetNative() / "config");
        Set("XDG_STATE_HOME", folder.GetNative() / "state");
        Set("XDG_CACHE_HOME", folder.GetNative() / "cache");
        Set("PATH", (folder.GetNative() / "bin").string() + ":" + std::getenv("PATH"));
    }
    ~HomeTest() override
    {
        for (const auto& [name, value] : before)
            setenv(name.c_str(), value.c_str(), 1);
    }

    void Set(const std::string& name, const std::string& value)
    {
        const char* old = std::getenv(name.c_str());
        before.emplace_back(name, old != nullptr ? old : "");
        setenv(name.c_str(), value.c_str(), 1);
    }
    [[nodiscard]] std::string GetMark() const { return folder.GetNative() / "mark"; }

    const TempFolder folder;
    std::vector<std::pair<std::string, std::string>> before;
};

// NOLINTEND(concurrency-mt-unsafe)

TEST_F(HomeTest, TheUsersOwnSettingsAndScriptsAreLeftAlone)
{
    HttpServer server;
    server.ServeBytes("/watch", "<html>not a song</html>", "text/html");
    const std::vector<std::string> filesBefore = folder.List();
    {
        EngineRun run;
        run.base = server.GetUrl("");
        run.Do("tone.mp4 @8 /watch #5 long.mp3 @3 seek=10 stop quiet");
        EXPECT_EQ(run.GetTrace(), "9 3 8 9 8 9 3 1");
    }
    EXPECT_EQ(folder.List(), filesBefore) << "Something was started, or left a trace.";
}

TEST(Safety, OddNamesAreFilesAndNothingElse)
{
    const std::string bytes = ReadMedia("tiny.wav");
    const TempFolder folder;
    EngineRun run;
    for (const std::string& name : {std::string("a%20b.wav"),
                                    std::string("#1.wav"),
                                    std::string("http:/x.wav"),
                                    std::string("edl:/y.wav"),
                                    std::string("-option.wav"),
                                    std::string("--vo=null"),
                                    std::string("two\nlines.wav"),
                                    std::string("tab\t.wav"),
                                    std::string("quote\"'`.wav"),
                                    std::string("~.wav"),
                                    std::string("*?[a].wav"),
                                    std::string("%d%s%n.wav"),
                                    std::string("back\\slash.wav"),
                                    std::string("\xFF\xFE.wav"),
                                    std::string("\xE9t\xE9.wav"),
                                    std::string("a:b,c=d;e.wav"),
                                    std::string("%filename%.wav"),
                                    std::string("${path}.wav"),
                                    std::string(244, 'n')}) {
        SCOPED_TRACE(name);
        folder.Write(name, bytes);
        run.Clear();
        run.SetBytes((folder.GetNative() / name).string());
        run.RunToState(8, 5'000);
        EXPECT_EQ(run.GetTrace(), "9 3 8");
    }
}

TEST(Safety, ANameThatHoldsAZeroIsRefused)
{
    EngineRun run;
    std::string path = GetMediaPath("tiny.wav");
    path += std::string("\0.mp3", 5);
    run.SetBytes(path);
    run.RunToState(8, 2'000);
    EXPECT_EQ(run.GetTrace(), "9 8");
}

} // namespace

} // namespace kivo::test
