#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/base/Released.h"
#include "tests/platform/attributes/MediaFiles.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <random>

namespace kivo::attributes {
namespace {

// No file may take longer or hold more; libavformat is allowed the larger number.
constexpr double kMaxSeconds = 2.0;
constexpr long kMaxTagLibKilobytes = 100 * 1024;
constexpr long kMaxAvformatKilobytes = 160 * 1024;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

struct HostileFile {
    const char* name;
    const char* file;
    long maxKilobytes = kMaxTagLibKilobytes;
};

void PrintTo(const HostileFile& hostile, std::ostream* out)
{
    *out << hostile.file;
}

class HostileFilesTest : public testing::TestWithParam<HostileFile> {
public:
    static void SetUpTestSuite() { PrepareMediaFiles(); }
};

// Of the processor: a machine that does other work too makes no file slow.
double SecondsUsed()
{
    struct rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

long PeakKilobytes()
{
    struct rusage usage {};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// Reads in a child, so that a crash is that file's and the peak of memory is its own.
int ReadInChild(const std::string& file, long maxKilobytes)
{
    const pid_t child = ::fork();
    if (child == 0) {
        SetBeyond(true);
        const Released<IWMMetadataEditor> editor(WMCreateEditor());
        const long before = PeakKilobytes();
        const double start = SecondsUsed();
        editor->Open(FilePath(file));
        const double took = SecondsUsed() - start;
        const bool isSlow = took > kMaxSeconds && !kIsSanitized;
        const bool isLarge = PeakKilobytes() - before > maxKilobytes && !kIsSanitized;
        if (isSlow || isLarge)
            fprintf(stderr, "%s: %.2f s, %ld KB\n", file.c_str(), took, PeakKilobytes() - before);
        ::_exit(isSlow ? 1 : isLarge ? 2 : 0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return status;
}

TEST_P(HostileFilesTest, EndsInTimeAndWithinMemory)
{
    const auto& [name, file, maxKilobytes] = GetParam();
    const int status = ReadInChild(file, maxKilobytes);
    ASSERT_TRUE(WIFEXITED(status)) << "killed by signal " << WTERMSIG(status);
    EXPECT_EQ(WEXITSTATUS(status), 0) << "1: too slow, 2: too much memory";
}

INSTANTIATE_TEST_SUITE_P(
    Files,
    HostileFilesTest,
    testing::Values(HostileFile{"NestedAtoms", "nested.mp4", kMaxAvformatKilobytes},
                    HostileFile{"Zeros", "zeros.mp3"},
                    HostileFile{"TinyFrames", "frames.mp3"},
                    HostileFile{"AFrameThatInflates", "inflates.mp3"},
                    HostileFile{"AFlacTagThatInflates", "inflates.flac"},
                    HostileFile{"EmptyChunks", "chunks.wav", kMaxAvformatKilobytes},
                    HostileFile{"ManyId3Frames", "tiny_frames.mp3"},
                    HostileFile{"ManyApeItems", "items.ape"},
                    HostileFile{"ManyAsfAttributes", "attributes.wma", kMaxAvformatKilobytes},
                    HostileFile{"AsfAttributesThatAreNotThere", "counted.wma", 48 * 1024},
                    HostileFile{"ManyVorbisComments", "comments.flac"},
                    HostileFile{"ManySmallApeItems", "crowded_ape.mp3"},
                    HostileFile{"ManyInfoFields", "crowded_info.wav", kMaxAvformatKilobytes},
                    HostileFile{"CommentsInTheFirstPage", "crowded.ogg"},
                    HostileFile{"CommentsInALaterBlock", "crowded_flac.ogg"},
                    HostileFile{"ALongComment", "long_text.ogg"},
                    HostileFile{"ALongCommentInFlac", "long_text.flac"},
                    HostileFile{"APacketOfNothing", "padded.ogg"},
                    HostileFile{"LargePictures", "pictures.flac"},
                    HostileFile{"ALongId3Frame", "long_text.mp3"},
                    HostileFile{"ALongLatinFrame", "long_latin.mp3"},
                    HostileFile{"LongAtoms", "long_texts.m4a", kMaxAvformatKilobytes},
                    HostileFile{"ManyTextsInAnAtom", "crowded.m4a", kMaxAvformatKilobytes},
                    HostileFile{"LongAsfTexts", "long_texts.wma", kMaxAvformatKilobytes}),
    [](const auto& row) { return row.param.name; });

// A list under a film's name may not open what it names: its length would come back.
TEST(ReferencesToOtherFiles, AreNotFollowed)
{
    PrepareMediaFiles();
    for (const char* file : {"concat.avi", "list.avi"}) {
        SCOPED_TRACE(file);
        const Released<IWMMetadataEditor> editor(WMCreateEditor());
        editor->Open(FilePath(file));
        EXPECT_EQ(editor->QueryHeaderInfo(), nullptr);
    }
}

TEST(DamagedFiles, EndInADefinedWay)
{
    PrepareMediaFiles();
    SetBeyond(true);
    std::mt19937 random(20); // A fixed seed: the same damage in each run.
    const String target = FilePath("damaged.bin");
    for (const char* file : {"plain.mp3",
                             "plain.wma",
                             "plain.wav",
                             "plain.flac",
                             "plain.ogg",
                             "plain.opus",
                             "plain.m4a",
                             "plain.wv",
                             "plain.aiff",
                             "video.mp4",
                             "video.avi",
                             "video.mkv",
                             "video.mpg",
                             "fragmented.mp4"}) {
        SCOPED_TRACE(file);
        std::FILE* in = std::fopen((std::string(KIVO_TEST_FILES) + file).c_str(), "rb");
        ASSERT_NE(in, nullptr);
        std::string bytes(1 << 20, '\0');
        bytes.resize(std::fread(bytes.data(), 1, bytes.size(), in));
        std::fclose(in);
        for (int variant = 0; variant < 30; ++variant) {
            std::string damaged = bytes;
            for (int flip = 0; flip < 20; ++flip)
                damaged[random() % std::min<std::size_t>(damaged.size(), 4000)] =
                    static_cast<char>(random());
            if (variant % 3 == 0)
                damaged.resize(random() % damaged.size());
            std::FILE* out =
                std::fopen((std::string(KIVO_TEST_FILES) + "damaged.bin").c_str(), "wb");
            ASSERT_NE(out, nullptr);
            std::fwrite(damaged.data(), 1, damaged.size(), out);
            std::fclose(out);
            const Released<IWMMetadataEditor> editor(WMCreateEditor());
            const HRESULT opened = editor->Open(target);
            EXPECT_EQ(Failed(opened), editor->QueryHeaderInfo() == nullptr);
        }
    }
    SetBeyond(false);
}

} // namespace
} // namespace kivo::attributes
