#include "medialib/LibCache.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Files.h"
#include "tests/medialib/Record.h"
#include "tests/support/Child.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <string>

namespace kivo::tunehive {
namespace {

constexpr int kTracks = 400;
const std::string kLocal = "{9B912E53-6318-4ac6-8C10-01D0357FFA48}.mlib";
const std::string kUrls = "{20AC30B6-3643-4adf-A87A-D67E1A12B000}.mlib";
const std::string kDamaged = "<Caches><Cache id='http://a' title='A'";

String PathOf(int track)
{
    return common::FormatText(u"/music/%s.mp3", {common::ToText(track)});
}

// A run in which every track gets the number for its title.
void RunLibrary(const String& folder, int number)
{
    CLibCache cache;
    cache.Initialize(folder);
    for (int track = 0; track < kTracks; ++track)
        cache.SetMediaInfo(PathOf(track), Record(kInfoTitle, common::ToText(number)));
    cache.Uninitialize();
}

class LibrarySafety : public testing::Test {
protected:
    LibrarySafety()
    {
        namespace fs = std::filesystem;
        fs::permissions(folder_.GetNative(), fs::perms(0777)); // For the ordinary user.
        RunLibrary(folder_.GetPath(), 0);
        folder_.Write(kUrls, kDamaged);
        library_ = folder_.Read(kLocal);
    }

    // Of a run that can't save: both files are named, and their bytes are there.
    void ExpectNothingLost(const std::function<int()>& run)
    {
        EXPECT_EQ(test::RunAsOrdinaryUser(run), 2) << "the number of files that weren't written";
        EXPECT_EQ(folder_.List().size(), 2U);
        EXPECT_EQ(folder_.Read(kLocal), library_);
        EXPECT_EQ(folder_.Read(kUrls) + folder_.Read(kUrls + ".broken-1"), kDamaged);
    }
    int RunBoth() const
    {
        static_cast<void>(TakeFailedWrites()); // What other tests left.
        CLibCache cache;
        cache.Initialize(folder_.GetPath());
        for (const char16_t* key : {u"/new.mp3", u"http://new"})
            cache.SetMediaInfo(key, {});
        cache.Uninitialize();
        return static_cast<int>(TakeFailedWrites().size());
    }

    test::TempFolder folder_;
    std::string library_;
};

TEST_F(LibrarySafety, IsOldOrNewAndWholeAtEachKill)
{
    constexpr int kKills = 20;
    for (int kill = 0; kill < kKills; ++kill) {
        SCOPED_TRACE(kill);
        test::KillDuring((kill + 0.5) / kKills,
                         [this](int number) { RunLibrary(folder_.GetPath(), number); });
        CLibCache cache;
        cache.Initialize(folder_.GetPath());
        MediaInfo first;
        MediaInfo last;
        ASSERT_TRUE(cache.GetMediaInfo(PathOf(0), first));
        ASSERT_TRUE(cache.GetMediaInfo(PathOf(kTracks - 1), last));
        ASSERT_EQ(first, last);
    }
}

TEST_F(LibrarySafety, AFolderThatCantBeWrittenLosesNothingAndIsTold)
{
    namespace fs = std::filesystem;
    fs::permissions(folder_.GetNative(), fs::perms(0555));
    ExpectNothingLost([this] { return RunBoth(); });
    fs::permissions(folder_.GetNative(), fs::perms(0777));
}

// A bound on the size of files takes the place of the disk's end.
TEST_F(LibrarySafety, AFullDiskLosesNothingAndIsTold)
{
    ExpectNothingLost([this] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit bound = {100, 100};
        return setrlimit(RLIMIT_FSIZE, &bound) == 0 ? RunBoth() : -1;
    });
}

// Whoever asked would wait for ever.
TEST_F(LibrarySafety, WithoutAThreadTheLoadIsDoneAtOnce)
{
    const int result = test::RunAsOrdinaryUser([this] {
        const rlimit none = {0, 0};
        bool isTold = false;
        MediaInfo info;
        CLibCache cache;
        if (setrlimit(RLIMIT_NPROC, &none) != 0)
            return 1;
        cache.Initialize(folder_.GetPath(), [&isTold] { isTold = true; });
        return cache.IsLoaded() && isTold && cache.GetMediaInfo(PathOf(0), info) ? 0 : 2;
    });
    EXPECT_EQ(result, 0) << "1: the test has no limit to set, 2: not loaded";
}

} // namespace
} // namespace kivo::tunehive
