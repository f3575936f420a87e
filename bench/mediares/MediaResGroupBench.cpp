#include "bench/support/Figures.h"
#include "medialib/MediaInfo.h"
#include "mediares/ItemFile.h"
#include "mediares/MediaResGroup.h"
#include "mediares/SIDGenerator.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/common/Text.h"

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <tinyxml.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace kivo::tunehive {
namespace {

// 75 units of path and 28 of name, as a tidy collection has them.
MediaInfo MakeItem(std::int64_t number)
{
    String digits = common::ToText(static_cast<int>(number));
    digits.insert(0, 6 - digits.size(), u'0');
    return {
        {kItemPath,
         u"/home/listener/Music/An Artist of " + digits + u"/An Album/07 The Title " + digits +
             u".mp3"                               },
        {kItemName, u"The Title of Track " + digits}
    };
}

double BytesInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

// The file of a group of that many tracks, made once.
class GroupFile {
public:
    explicit GroupFile(std::int64_t count)
        : path_(std::filesystem::temp_directory_path() /
                ("kivo-bench-" + std::to_string(getpid()) + ".kvm"))
    {
        WriteItemFile(GetPath(), [count](const WriteItem& write) {
            for (std::int64_t i = 0; i < count; ++i) {
                const MediaInfo item = MakeItem(i);
                write(common::CString_to_utf8(item.at(kItemPath)),
                      common::CString_to_utf8(item.at(kItemName)));
            }
        });
    }
    GroupFile(const GroupFile&) = delete;
    GroupFile& operator=(const GroupFile&) = delete;
    ~GroupFile() { std::filesystem::remove(path_); }

    [[nodiscard]] String GetPath() const { return path_.u16string(); }
    [[nodiscard]] const std::filesystem::path& GetNative() const { return path_; }

private:
    std::filesystem::path path_;
};

// What a group would be with plain records and a tree of the whole file: the measure for the rest.
struct PlainGroup {
    void Add(const MediaInfo& item)
    {
        const String sid = ids.Next();
        items[sid] = item;
        paths[sid] = item.at(kItemPath);
        sids.emplace(item.at(kItemPath), sid);
    }
    void Load(const std::filesystem::path& path)
    {
        TiXmlDocument document;
        document.LoadFile(path.string());
        const TiXmlElement* root = document.FirstChildElement();
        for (const auto* element = root->FirstChildElement(); element != nullptr;
             element = element->NextSiblingElement())
            Add({
                {kItemPath, common::utf8_to_CString(element->Attribute("path"))},
                {kItemName, common::utf8_to_CString(element->Attribute("name"))}
            });
    }

    SIDGenerator ids;
    std::map<String, MediaInfo> items;
    std::map<String, String> paths;
    std::multimap<String, String> sids;
};

void BM_LoadPlainGroup(benchmark::State& state)
{
    const GroupFile file(state.range(0));
    for ([[maybe_unused]] const auto _ : state) {
        const double before = BytesInUse();
        PlainGroup group;
        group.Load(file.GetNative());
        state.counters["megabytes"] = (BytesInUse() - before) / 1e6;
    }
}

void BM_LoadGroup(benchmark::State& state)
{
    const GroupFile file(state.range(0));
    for ([[maybe_unused]] const auto _ : state) {
        std::vector<String> sids;
        const double before = BytesInUse();
        const Released<IMediaResGroup> group(new MediaResGroup(u"mine", file.GetPath(), nullptr));
        group->Load(sids);
        state.counters["megabytes"] =
            (BytesInUse() - before - static_cast<double>(sids.capacity() * sizeof(String))) / 1e6;
    }
}

// Of a load, what the XML layer takes.
void BM_ReadRecordsAlone(benchmark::State& state)
{
    const GroupFile file(state.range(0));
    for ([[maybe_unused]] const auto _ : state) {
        XmlProlog prolog;
        std::size_t bytes = 0;
        static_cast<void>(
            ReadXmlRecords(file.GetPath(), "Items", prolog, [&bytes](const XmlRecord& record) {
                bytes += GetAttribute(record, "path").size();
            }));
        benchmark::DoNotOptimize(bytes);
    }
}

void BM_SaveGroup(benchmark::State& state)
{
    const GroupFile file(state.range(0));
    std::vector<String> sids;
    const Released<IMediaResGroup> group(new MediaResGroup(u"mine", file.GetPath(), nullptr));
    group->Load(sids);
    bool isReversed = false;
    for ([[maybe_unused]] const auto _ : state) {
        isReversed = !isReversed;
        group->Save(isReversed ? std::vector<String>(sids.rbegin(), sids.rend()) : sids);
    }
}

void BM_FindAndGet(benchmark::State& state)
{
    const GroupFile file(state.range(0));
    std::vector<String> sids;
    const Released<IMediaResGroup> group(new MediaResGroup(u"mine", file.GetPath(), nullptr));
    group->Load(sids);
    std::size_t next = 0;
    for ([[maybe_unused]] const auto _ : state) {
        MediaInfo item;
        group->GetItem(sids[next++ % sids.size()], item);
        std::set<String> found;
        group->FindItems(item[kItemPath], found);
        benchmark::DoNotOptimize(found);
    }
}

BENCHMARK(BM_LoadPlainGroup)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadGroup)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadRecordsAlone)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SaveGroup)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_FindAndGet)->Arg(100000)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace kivo::tunehive

int main(int argc, char** argv)
{
    return kivo::bench::RunWithFigures(argc, argv);
}
