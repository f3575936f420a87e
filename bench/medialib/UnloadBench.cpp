#include "bench/support/Measure.h"
#include "medialib/AddFolderThread.h"
#include "medialib/IMediaLibManager.h"
#include "platform/base/PostQueue.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Text.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TempFolder.h"

#include <poll.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

// The end of the library in the middle of the import of 100,000 files: in the walk, soon after it,
// and just before its own end. The whole end also saves what was read so far.
namespace kivo {
namespace {

using bench::Numbers;

constexpr int kFiles = 100'000;
constexpr int kFilesAFolder = 100;
constexpr int kRounds = 3;
constexpr int kReadBefore[] = {0, 1'000, 99'000};

class ImportWindow : public CWnd {
public:
    ImportWindow() { CreateHandle(); }
    LPARAM WindowProc(unsigned /*message*/, WPARAM wParam, LPARAM lParam) override
    {
        static_cast<void>(tunehive::TakeFolderImport(wParam, lParam));
        return 0;
    }
};

// Each folder holds one file under many names.
void MakeTree(const std::filesystem::path& tree)
{
    namespace fs = std::filesystem;
    for (int first = 0; first < kFiles; first += kFilesAFolder) {
        const fs::path folder = tree / std::to_string(first / kFilesAFolder);
        const fs::path file = folder / (std::to_string(first) + ".mp3");
        fs::create_directories(folder);
        fs::copy(KIVO_BENCH_MEDIA "tone.mp3", file);
        for (int i = 1; i < kFilesAFolder; ++i)
            fs::create_hard_link(file, folder / (std::to_string(first + i) + ".mp3"));
    }
}

// A file that is read when about so many have been: the walk takes folders by name.
String GetFile(const String& tree, int read)
{
    std::vector<std::string> folders(kFiles / kFilesAFolder);
    for (std::size_t folder = 0; folder < folders.size(); ++folder)
        folders[folder] = std::to_string(folder);
    std::sort(folders.begin(), folders.end());
    const int folder = std::stoi(folders.at(static_cast<std::size_t>(read / kFilesAFolder)));
    return common::FormatText(
        u"%s%s/%s.mp3", {tree, common::ToText(folder), common::ToText(folder * kFilesAFolder)});
}

// Milliseconds of the stop and of the whole end, when about so many files have been read.
Numbers EndDuringImport(const String& tree, int readBefore)
{
    const test::FakeHost host;
    const test::TempFolder library;
    common::SetAppPath(common::PathToText(KIVO_BENCH_APP_DIR));
    tunehive::IMediaLibManager* const manager = tunehive::GetMediaLibManager();
    manager->Initialize(library.GetPath());
    const ImportWindow window;
    tunehive::CAddFolderThread::Start(window.GetHandle(), u"mine", tree);
    pollfd wake = {PostQueue::Get().GetWakeDescriptor(), POLLIN, 0};
    tunehive::MediaInfo info;
    const String last = GetFile(tree, readBefore);
    if (readBefore == 0)
        poll(&wake, 1, 20); // In the walk.
    else
        while (manager->PeekMediaInfo(last, info) != tunehive::CacheLook::Hit)
            poll(&wake, 1, 1);
    const double start = bench::GetSeconds();
    if (!manager->StopWork(5000))
        std::abort();
    const double stopped = bench::GetSeconds();
    tunehive::DestroyMediaLibManager();
    return {(stopped - start) * 1000.0, (bench::GetSeconds() - start) * 1000.0};
}

int Run()
{
    const test::TempFolder folder;
    MakeTree(folder.GetNative() / "tree");
    const String tree = folder.GetPath("tree/");
    double stop = 0;
    double end = 0;
    for (const int readBefore : kReadBefore) {
        for (int round = 0; round < kRounds; ++round) {
            const Numbers numbers =
                bench::RunAlone([&] { return EndDuringImport(tree, readBefore); });
            std::printf("  after %6d files: stopped in %6.1f ms, ended in %6.1f ms\n",
                        readBefore,
                        numbers.at(0),
                        numbers.at(1));
            stop = std::max(stop, numbers.at(0));
            end = std::max(end, numbers.at(1));
        }
    }
    bench::PrintFigure("import_stop_ms", stop, "ms");
    bench::PrintFigure("import_unload_ms", end, "ms");
    return 0;
}

} // namespace
} // namespace kivo

int main()
{
    return kivo::Run();
}
