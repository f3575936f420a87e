#include "bench/support/Measure.h"
#include "medialib/LibCache.h"
#include "medialib/MediaInfoNames.h"
#include "shell/contracts/common/Text.h"
#include "tests/support/TempFolder.h"

#include <tinyxml.h>

#include <cstdio>
#include <map>
#include <string>

// The library of a large collection: what it takes in memory, and its load beside the whole way
// through a document (read, parse, fill maps, free). Both are busy all the time, so that their CPU
// seconds are what they take on an idle machine.
namespace kivo {
namespace {

using bench::Numbers;

constexpr int kTracks = 100'000;
constexpr int kRounds = 5;
const std::string kFileName = "{9B912E53-6318-4ac6-8C10-01D0357FFA48}.mlib";

// Tags of ordinary size: about 250 bytes an entry, as the writer lays them out.
void FillCache(const String& directory)
{
    tunehive::CLibCache cache;
    cache.Initialize(directory);
    for (int i = 0; i < kTracks; ++i) {
        const String number = common::ToText(100'000 + i);
        const String album = common::ToText(i / 12);
        const String path = common::FormatText(
            u"/home/somebody/Music/Artist of the Year %s/Album %s/%s - A Track.mp3",
            {album, album, number});
        cache.SetMediaInfo(path,
                           {
                               {tunehive::kInfoTitle,   u"A Track of some Length " + number},
                               {tunehive::kInfoArtist,  u"Artist of the Year " + album     },
                               {tunehive::kInfoAlbum,   u"Album " + album                  },
                               {tunehive::kInfoGenre,   u"Rock"                            },
                               {tunehive::kInfoLength,  u"216"                             },
                               {tunehive::kInfoBitrate, u"192000"                          },
                               {tunehive::kInfoComment, u"Bj\u00F6rn's rip"                },
        });
    }
    cache.Uninitialize();
}

Numbers LoadCache(const String& directory)
{
    const double memory = bench::GetMemoryMb();
    const double start = bench::GetCpuSeconds();
    tunehive::CLibCache cache;
    cache.Initialize(directory);
    cache.WaitUntilLoaded();
    const double seconds = bench::GetCpuSeconds() - start;
    tunehive::MediaInfo info;
    if (!cache.GetMediaInfo(u"/home/somebody/Music/Artist of the Year 0/Album 0/100000 - A "
                            u"Track.mp3",
                            info))
        std::abort();
    return {seconds, bench::GetMemoryMb() - memory};
}

Numbers LoadDocument(const std::string& path)
{
    const double memory = bench::GetMemoryMb();
    const double start = bench::GetCpuSeconds();
    std::map<String, tunehive::MediaInfo> entries;
    {
        TiXmlDocument document;
        document.SetTabSize(0);
        if (!document.LoadFile(path))
            std::abort();
        const TiXmlElement* root = document.FirstChildElement("Caches");
        for (const auto* element = root->FirstChildElement("Cache"); element != nullptr;
             element = element->NextSiblingElement("Cache")) {
            tunehive::MediaInfo info;
            for (const auto* attribute = element->FirstAttribute(); attribute != nullptr;
                 attribute = attribute->Next())
                if (const auto key = tunehive::FindInfoKey(attribute->NameTStr()))
                    info[*key] = common::utf8_to_CString(attribute->ValueStr());
            entries.emplace_hint(
                entries.end(), common::utf8_to_CString(element->Attribute("id")), std::move(info));
        }
    }
    const double seconds = bench::GetCpuSeconds() - start;
    return {seconds, bench::GetMemoryMb() - memory};
}

// With one new value, so that there is something to save.
Numbers SaveCache(const String& directory, int value)
{
    tunehive::CLibCache cache;
    cache.Initialize(directory);
    cache.SetMediaInfo(u"/new.mp3",
                       {
                           {tunehive::kInfoLength, common::ToText(value)}
    });
    const double cpu = bench::GetCpuSeconds();
    const double start = bench::GetSeconds();
    cache.Uninitialize();
    return {bench::GetSeconds() - start, bench::GetCpuSeconds() - cpu};
}

int Run()
{
    const test::TempFolder folder;
    const String directory = folder.GetPath();
    const std::string file = (folder.GetNative() / kFileName).string();
    bench::RunAlone([&] {
        FillCache(directory);
        return Numbers();
    });
    Numbers seconds;
    Numbers memory;
    Numbers documentSeconds;
    Numbers documentMemory;
    for (int round = 0; round < kRounds; ++round) {
        const Numbers cache = bench::RunAlone([&] { return LoadCache(directory); });
        seconds.push_back(cache.at(0));
        memory.push_back(cache.at(1));
        const Numbers document = bench::RunAlone([&] { return LoadDocument(file); });
        documentSeconds.push_back(document.at(0));
        documentMemory.push_back(document.at(1));
    }
    Numbers saveSeconds;
    Numbers saveCpuSeconds;
    for (int round = 0; round < kRounds; ++round) {
        const Numbers save = bench::RunAlone([&] { return SaveCache(directory, round); });
        saveSeconds.push_back(save.at(0));
        saveCpuSeconds.push_back(save.at(1));
    }

    std::printf("%d tracks, file of %.1f MB, medians of %d\n",
                kTracks,
                static_cast<double>(std::filesystem::file_size(file)) / 1e6,
                kRounds);
    std::printf("  load element by element %6.3f s %6.1f MB\n",
                bench::GetMedian(seconds),
                bench::GetMedian(memory));
    std::printf("  load as a document      %6.3f s %6.1f MB\n",
                bench::GetMedian(documentSeconds),
                bench::GetMedian(documentMemory));
    std::printf("  save and free           %6.3f s, of the processor %6.3f s\n",
                bench::GetMedian(saveSeconds),
                bench::GetMedian(saveCpuSeconds));
    bench::PrintFigure("cache_100k_memory_mb", bench::GetMedian(memory), "MB");
    bench::PrintFigure("cache_100k_load_ratio",
                       bench::GetMedian(seconds) / bench::GetMedian(documentSeconds),
                       "ratio");
    bench::PrintFigure("cache_100k_save_seconds", bench::GetMedian(saveSeconds), "s");
    bench::PrintFigure("cache_100k_save_cpu_seconds", bench::GetMedian(saveCpuSeconds), "s");
    return 0;
}

} // namespace
} // namespace kivo

int main()
{
    return kivo::Run();
}
