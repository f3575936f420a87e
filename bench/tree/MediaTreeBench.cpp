// A tree of one large group with cached metadata, without a window: what the rows and groups cost.

#include "bench/support/Figures.h"
#include "medialib/IMediaLibManager.h"
#include "mediares/IMediaResManager.h"
#include "player/MediaPlayerManager.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Files.h"
#include "shell/contracts/framework/Paths.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TempFolder.h"
#include "tree/MediaTree.h"
#include "tree/MediaTreeCategory.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

#include <string>
#include <vector>

namespace kivo::tunehive {
namespace {

double MegabytesInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd) / 1e6;
}

String PathOf(int number)
{
    return u"/nowhere/music/artist/album/a track of the album, number " + common::ToText(number) +
           u".mp3";
}

// A profile on disk with `count` tracks in "playing", each with a record in the library.
class Profile {
public:
    explicit Profile(int count)
    {
        std::string items = R"(<?xml version="1.0" encoding="utf-8" standalone="no" ?><Items>)";
        std::string cache = R"(<?xml version="1.0" encoding="utf-8" standalone="no" ?><Caches>)";
        for (int i = 0; i < count; ++i) {
            const std::string path = common::CString_to_utf8(PathOf(i));
            items += "<Item path=\"" + path + "\" name=\"\" />\n";
            cache += "<Cache id=\"" + path +
                     "\" title=\"A title of ordinary length\" art=\"An artist\" album=\"The album\""
                     " genre=\"Rock\" length=\"245\" bitrate=\"192000\" comm=\"\" />\n";
        }
        folder_.Write("playing.kvm", items + "</Items>\n");
        folder_.Write("lib/{9B912E53-6318-4ac6-8C10-01D0357FFA48}.mlib", cache + "</Caches>\n");
    }

    [[nodiscard]] String GetPath() const { return folder_.GetPath(); }

private:
    test::TempFolder folder_;
};

// The managers and the tree, as they stand after a start.
class Session {
public:
    explicit Session(const Profile& profile)
    {
        SetBeyond(true);
        GetMediaResManager()->Init(profile.GetPath());
        GetMediaLibManager()->Initialize(profile.GetPath() + u"lib/");
        tree_.reset(new CMediaTree(nullptr));
        tree_->Create(nullptr);
        tree_->LoadTree();
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session()
    {
        GetMediaLibManager()->StopWork(5000);
        tree_.reset();
        host_.ReleasePosted();
        DestroyMediaResManager();
        DestroyMediaLibManager();
        SetBeyond(false);
    }

    [[nodiscard]] CMediaTree& Tree() const { return *tree_; }
    [[nodiscard]] CMediaTreeCategory& Playing() const { return *tree_->FindCategory(u"playing"); }

private:
    test::FakeHost host_;
    Released<CMediaTree> tree_;
};

void BM_LoadTree(benchmark::State& state)
{
    const auto count = static_cast<int>(state.range(0));
    const Profile profile(count);
    double megabytes = 0.0;
    for (auto _ : state) {
        const double before = MegabytesInUse();
        const Session session(profile);
        state.PauseTiming();
        MediaInfo info;
        GetMediaLibManager()->GetMediaInfo(PathOf(0), info); // Waits for the library.
        megabytes = MegabytesInUse() - before;
        state.ResumeTiming();
    }
    state.counters["megabytes"] = megabytes;
}
BENCHMARK(BM_LoadTree)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

// One step on a tree of 100,000 tracks, which is made anew for each turn.
template <class Step>
void RunStep(benchmark::State& state, Step step)
{
    const Profile profile(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        state.PauseTiming();
        {
            const Session session(profile);
            state.ResumeTiming();
            step(session);
            state.PauseTiming();
        }
        state.ResumeTiming();
    }
}

void BM_Add10000(benchmark::State& state)
{
    CStringArray paths;
    for (int i = 0; i < 10'000; ++i)
        paths.push_back(u"/nowhere/new/" + common::ToText(i));
    RunStep(state, [&](const Session& session) { session.Tree().AddPaths(u"playing", paths); });
}
BENCHMARK(BM_Add10000)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_Delete20000Scattered(benchmark::State& state)
{
    RunStep(state, [&](const Session& session) {
        for (int i = 0; i < session.Playing().GetChildCount(); i += 5)
            session.Playing().GetChild(i)->SetSelected(1);
        session.Tree().DeleteSelectedTracks();
    });
}
BENCHMARK(BM_Delete20000Scattered)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_Move1000ToTheTop(benchmark::State& state)
{
    RunStep(state, [&](const Session& session) {
        std::vector<String> sids;
        for (int i = 50'000; i < 51'000; ++i)
            sids.push_back(session.Playing().GetChild(i)->GetID());
        session.Playing().ReorderRows(sids, session.Playing().GetChild(0)->GetID());
    });
}
BENCHMARK(BM_Move1000ToTheTop)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(5);

// As when a track ends before files that have all gone: each is looked for once.
void BM_EndBeforeGoneFiles(benchmark::State& state)
{
    RunStep(state, [&](const Session& session) {
        CMediaTree& tree = session.Tree();
        String url;
        tree.BeginMoves();
        for (int i = 0; i < tree.GetPlayingCount(); ++i) {
            tree.GetNextURL(url, /*wrap=*/1);
            benchmark::DoNotOptimize(PathFileExistsW(url));
        }
        tree.EndMoves();
    });
}
BENCHMARK(BM_EndBeforeGoneFiles)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(5);

// The whole leave against writing the group's bytes alone.
void BM_SaveAll(benchmark::State& state)
{
    RunStep(state, [&](const Session& session) {
        session.Tree().RenameTrack(u"playing", session.Playing().GetChild(0)->GetID(), u"renamed");
        session.Tree().SaveAllGroups();
    });
}
BENCHMARK(BM_SaveAll)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_WriteBytesAlone(benchmark::State& state)
{
    const Profile profile(static_cast<int>(state.range(0)));
    const String file = profile.GetPath() + u"playing.kvm";
    std::string bytes;
    static_cast<void>(ReadFileBytes(file, bytes, std::size_t{1} << 30U));
    for (auto _ : state) {
        bytes.back() = bytes.back() == '\n' ? ' ' : '\n'; // Other bytes each time.
        WriteFileDurably(file, bytes);
    }
}
BENCHMARK(BM_WriteBytesAlone)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(5);

} // namespace
} // namespace kivo::tunehive

int main(int argc, char** argv)
{
    return kivo::bench::RunWithFigures(argc, argv);
}
