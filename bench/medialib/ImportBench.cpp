#include "bench/support/Measure.h"
#include "medialib/AddFolderThread.h"
#include "medialib/IMediaLibManager.h"
#include "platform/base/PostQueue.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Text.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TempFolder.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <taglib/fileref.h>
#include <taglib/tag.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

// What a new user does first: the import of a collection, beside a bare loop over TagLib.
namespace kivo {
namespace {

using bench::Numbers;

constexpr int kRounds = 3;
const std::string kTree = KIVO_BENCH_TREE;
const std::set<std::string> kMedia = {".mp3", ".flac", ".ogg", ".m4a", ".wma"};

std::vector<std::string> ListTree()
{
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(kTree))
        if (kMedia.contains(entry.path().extension().string()))
            files.push_back(entry.path().string());
    std::sort(files.begin(), files.end());
    return files;
}

// The data of the files leaves memory; names and sizes stay.
void MakeCold(const std::vector<std::string>& files)
{
    for (const std::string& file : files) {
        const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
        posix_fadvise(descriptor, 0, 0, POSIX_FADV_DONTNEED);
        close(descriptor);
    }
}

// Kilobytes of a file that are in memory: of a file that was cold, what was asked of the disk.
double GetResidentKb(const std::string& file)
{
    struct stat status = {};
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (fstat(descriptor, &status) != 0 || status.st_size == 0)
        std::abort();
    const auto size = static_cast<std::size_t>(status.st_size);
    void* const view = mmap(nullptr, size, PROT_READ, MAP_SHARED, descriptor, 0);
    std::vector<unsigned char> pages((size + 4095) / 4096);
    mincore(view, size, pages.data());
    munmap(view, size);
    close(descriptor);
    const auto resident = std::count_if(
        pages.begin(), pages.end(), [](unsigned char page) { return (page & 1U) != 0; });
    return static_cast<double>(resident) * 4.0;
}

double GetMedianResidentKb(const std::vector<std::string>& files)
{
    Numbers sizes;
    for (const std::string& file : files)
        sizes.push_back(GetResidentKb(file));
    return bench::GetMedian(sizes);
}

// What the bare loop keeps of a file, so that it reads no less.
Numbers ReadBare(const std::vector<std::string>& files)
{
    const double memory = bench::GetMemoryMb();
    const double cpu = bench::GetCpuSeconds();
    const double start = bench::GetSeconds();
    std::size_t texts = 0;
    for (const std::string& file : files) {
        const TagLib::FileRef reference(file.c_str());
        if (reference.isNull() || reference.tag() == nullptr)
            continue;
        const TagLib::Tag& tag = *reference.tag();
        texts += tag.title().size() + tag.artist().size() + tag.album().size() +
                 tag.comment().size() + tag.genre().size();
        texts += static_cast<std::size_t>(reference.audioProperties()->lengthInSeconds());
    }
    if (texts == 0)
        std::abort();
    return {bench::GetSeconds() - start,
            bench::GetCpuSeconds() - cpu,
            bench::GetPeakMemoryMb() - memory,
            GetMedianResidentKb(files)};
}

class ImportWindow : public CWnd {
public:
    ImportWindow() { CreateHandle(); }
    LPARAM WindowProc(unsigned /*message*/, WPARAM wParam, LPARAM lParam) override
    {
        count = TakeImport(wParam, lParam);
        return 0;
    }
    static std::size_t TakeImport(WPARAM wParam, LPARAM lParam)
    {
        return tunehive::TakeFolderImport(wParam, lParam).paths->size();
    }
    std::size_t count = 0;
};

// Imports and lives meanwhile, as the user interface does: a look into the cache, posts, a wait.
// Gives the longest turn in milliseconds.
double Import(ImportWindow& window)
{
    PostQueue& queue = PostQueue::Get();
    double longest = 0;
    window.count = 0;
    tunehive::CAddFolderThread::Start(window.GetHandle(), u"mine", common::PathToText(kTree));
    while (window.count == 0) {
        pollfd wake = {queue.GetWakeDescriptor(), POLLIN, 0};
        poll(&wake, 1, 5);
        const double start = bench::GetSeconds();
        tunehive::MediaInfo info;
        static_cast<void>(tunehive::GetMediaLibManager()->PeekMediaInfo(u"/none.mp3", info));
        queue.RunWake();
        longest = std::max(longest, (bench::GetSeconds() - start) * 1000.0);
    }
    return longest;
}

// Counts the media files that anybody opens.
class OpenCounter {
public:
    OpenCounter()
        : descriptor_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(kTree))
            if (entry.is_directory())
                inotify_add_watch(descriptor_, entry.path().c_str(), IN_OPEN);
    }
    OpenCounter(const OpenCounter&) = delete;
    OpenCounter& operator=(const OpenCounter&) = delete;
    ~OpenCounter() { close(descriptor_); }

    [[nodiscard]] int Count() const
    {
        int opens = 0;
        alignas(inotify_event) char buffer[1 << 16];
        for (ssize_t got = 0; (got = read(descriptor_, buffer, sizeof buffer)) > 0;)
            for (ssize_t at = 0; at < got;) {
                const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
                opens += (event->mask & IN_ISDIR) == 0 ? 1 : 0;
                at += static_cast<ssize_t>(sizeof *event + event->len);
            }
        return opens;
    }

private:
    int descriptor_;
};

Numbers ImportTwice(const std::vector<std::string>& files)
{
    const test::FakeHost host;
    const test::TempFolder library;
    common::SetAppPath(common::PathToText(KIVO_BENCH_APP_DIR));
    SetBeyond(/*on=*/true);
    tunehive::GetMediaLibManager()->Initialize(library.GetPath());
    ImportWindow window;
    const double memory = bench::GetMemoryMb();
    const double cpu = bench::GetCpuSeconds();
    const double start = bench::GetSeconds();
    const double longest = Import(window);
    Numbers numbers = {bench::GetSeconds() - start,
                       bench::GetCpuSeconds() - cpu,
                       bench::GetPeakMemoryMb() - memory,
                       GetMedianResidentKb(files),
                       longest};
    if (window.count != files.size())
        std::abort();
    OpenCounter opens;
    const double again = bench::GetSeconds();
    Import(window);
    numbers.push_back(bench::GetSeconds() - again);
    numbers.push_back(opens.Count());
    tunehive::MediaInfo info;
    if (tunehive::GetMediaLibManager()->GetMediaInfo(common::PathToText(files.back()), info) == 0 ||
        !info[tunehive::kInfoTitle].starts_with(u"Title 0"))
        std::abort();
    tunehive::DestroyMediaLibManager();
    return numbers;
}

enum Column : std::size_t { kWall, kCpu, kMemory, kKilobytes, kLongestTurn, kSecondWall, kOpens };

struct Rounds {
    std::vector<Numbers> rows;

    double Median(Column column) const
    {
        Numbers numbers;
        for (const Numbers& row : rows)
            numbers.push_back(row.at(column));
        return bench::GetMedian(numbers);
    }
    void Print(const char* name, std::size_t files) const
    {
        std::printf("  %-12s %8.0f files/s %7.3f s wall %7.3f s CPU %6.1f MB %6.0f KB a file\n",
                    name,
                    static_cast<double>(files) / Median(kWall),
                    Median(kWall),
                    Median(kCpu),
                    Median(kMemory),
                    Median(kKilobytes));
    }
};

int Run()
{
    const std::string make = std::string(KIVO_BENCH_SCRIPT) + " '" + kTree + "'";
    if (std::system(make.c_str()) != 0) // NOLINT(concurrency-mt-unsafe): no thread yet
        return 1;
    const std::vector<std::string> files = ListTree();
    Rounds bareCold;
    Rounds bareWarm;
    Rounds importCold;
    Rounds importWarm;
    for (int round = 0; round < kRounds; ++round) {
        MakeCold(files);
        bareCold.rows.push_back(bench::RunAlone([&] { return ReadBare(files); }));
        bareWarm.rows.push_back(bench::RunAlone([&] { return ReadBare(files); }));
        MakeCold(files);
        importCold.rows.push_back(bench::RunAlone([&] { return ImportTwice(files); }));
        importWarm.rows.push_back(bench::RunAlone([&] { return ImportTwice(files); }));
    }
    std::printf("%zu files, medians of %d rounds\n", files.size(), kRounds);
    bareCold.Print("bare, cold", files.size());
    importCold.Print("import, cold", files.size());
    bareWarm.Print("bare, warm", files.size());
    importWarm.Print("import, warm", files.size());
    using bench::PrintFigure;
    PrintFigure("import_cpu_ratio", importWarm.Median(kCpu) / bareWarm.Median(kCpu), "ratio");
    PrintFigure(
        "import_cold_wall_ratio", importCold.Median(kWall) / bareCold.Median(kWall), "ratio");
    PrintFigure("import_bytes_per_file_median", importCold.Median(kKilobytes) * 1024.0, "bytes");
    PrintFigure("import_memory_mb", importCold.Median(kMemory), "MB");
    PrintFigure("import_longest_turn_ms", importCold.Median(kLongestTurn), "ms");
    PrintFigure("second_import_files_opened", importCold.Median(kOpens), "files");
    PrintFigure("second_import_seconds", importCold.Median(kSecondWall), "s");
    return 0;
}

} // namespace
} // namespace kivo

int main()
{
    return kivo::Run();
}
