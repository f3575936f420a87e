// The real program with one large group: from the start of the process to the frames that count,
// what a hand does in the tree, and the way out.

#include "bench/support/Measure.h"
#include "bench/tree/PageProbe.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Files.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace kivo::bench {

namespace {

namespace fs = std::filesystem;
using Figures = std::map<std::string, double>;

constexpr int kStarts = 5;
constexpr int kRealFiles = 200; // At the head of the group, where rows are looked at.
constexpr const char* kLibraryFile = "tunehive/lib/{9B912E53-6318-4ac6-8C10-01D0357FFA48}.mlib";

fs::path GetProgram()
{
    return fs::read_symlink("/proc/self/exe");
}

// A folder with the program tree, in which this program stands in kivo's place.
void MakeAppFolder(const fs::path& folder)
{
    fs::create_directories(folder);
    for (const auto& entry :
         fs::directory_iterator(GetProgram().parent_path().parent_path() / "app"))
        if (entry.path().filename() != "kivo")
            fs::create_symlink(entry.path(), folder / entry.path().filename());
    fs::copy_file(GetProgram(), folder / "kivo");
}

// `count` tracks in "playing", each with its record in the library, as the program saves them.
void MakeProfile(const fs::path& profile, const fs::path& music, int count)
{
    fs::create_directories((profile / kLibraryFile).parent_path());
    fs::create_directories(music);
    std::ofstream items(profile / "tunehive/playing.kvm", std::ios::binary);
    std::ofstream cache(profile / kLibraryFile, std::ios::binary);
    constexpr std::string_view kHead =
        "<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"no\" ?>\n";
    items << kHead << "<Items>\n";
    cache << kHead << "<Caches>\n";
    std::vector<std::string> paths;
    for (int i = 0; i < count; ++i) {
        std::string digits = std::to_string(i);
        digits.insert(0, 6 - std::min<std::size_t>(digits.size(), 6), '0');
        std::string file = "An Artist of the ";
        file.append(digits).append(" - The Title ").append(digits).append(".mp3");
        paths.push_back((music / file).string());
        items << "    <Item path=\"" << paths.back() << "\" name=\"\" />\n";
        if (i < kRealFiles)
            std::ofstream(paths.back()) << "no music";
    }
    std::sort(paths.begin(), paths.end());
    for (const std::string& path : paths)
        cache << "    <Cache id=\"" << path
              << "\" title=\"A title of ordinary length\" art=\"An artist\" album=\"The album\""
                 " genre=\"Rock\" length=\"245\" bitrate=\"192000\" comm=\"\" />\n";
    items << "</Items>\n";
    cache << "</Caches>\n";
}

// One run of the program in a process of its own.
Figures Run(const fs::path& program, const fs::path& profile, const char* task)
{
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0)
        std::exit(1); // NOLINT(concurrency-mt-unsafe)
    const std::string start = std::to_string(GetSeconds());
    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDOUT_FILENO);
        close(ends[0]);
        close(ends[1]);
        execl(program.c_str(), "kivo", "--probe", profile.c_str(), task, start.c_str(), nullptr);
        _exit(127);
    }
    close(ends[1]);
    std::string text;
    std::array<char, 4096> block{};
    for (ssize_t got = 0; (got = read(ends[0], block.data(), block.size())) > 0;)
        text.append(block.data(), static_cast<std::size_t>(got));
    close(ends[0]);
    int status = 0;
    rusage usage{};
    wait4(child, &status, 0, &usage);
    const double ended = 1000 * (GetSeconds() - std::stod(start));
    Figures figures;
    std::istringstream lines(text);
    std::string name;
    for (double value = 0; lines >> name >> value;)
        figures[name] = value;
    if (figures.contains("leaving")) {
        figures["leave"] = ended - figures["leaving"];
        figures["leave-cpu"] = 1000 * ToSeconds(usage) - figures["leaving-cpu"];
    }
    if (status != 0)
        std::fprintf(stderr, "the program ended with status %d\n", status);
    return figures;
}

void Print(int count, const std::string& name, double value)
{
    const bool isMemory = name == "resident" || name == "proportional";
    PrintFigure("page/" + std::to_string(count) + "/" + name, value, isMemory ? "MB" : "ms");
    std::fflush(stdout);
}

// The files that differ from those of the older profile, written over these by the same writer.
void WriteAlone(const fs::path& now, const fs::path& before, Figures& figures)
{
    figures["write-alone"] = 0;
    figures["write-alone-cpu"] = 0;
    for (const auto& entry : fs::recursive_directory_iterator(now)) {
        if (!entry.is_regular_file())
            continue;
        const fs::path old = before / fs::relative(entry.path(), now);
        const auto load = [](const fs::path& path) {
            std::ifstream file(path, std::ios::binary);
            return std::string(std::istreambuf_iterator<char>(file), {});
        };
        const std::string bytes = load(entry.path());
        if (fs::exists(old) && load(old) == bytes)
            continue;
        const String path = common::PathToText(old.native());
        const double start = GetSeconds();
        const double cpu = GetCpuSeconds();
        WriteFileDurably(path, bytes);
        figures["write-alone"] += 1000 * (GetSeconds() - start);
        figures["write-alone-cpu"] += 1000 * (GetCpuSeconds() - cpu);
    }
}

void MeasureLeave(const fs::path& folder, const fs::path& profile, int count)
{
    std::map<std::string, Numbers> all;
    for (int i = 0; i < kStarts; ++i) {
        fs::remove_all(folder / "before");
        fs::copy(profile, folder / "before", fs::copy_options::recursive);
        Figures figures = Run(folder / "app/kivo", profile, "leave");
        WriteAlone(profile, folder / "before", figures);
        for (const char* name : {"leave", "leave-cpu", "write-alone", "write-alone-cpu"})
            all[name].push_back(figures[name]);
    }
    for (const auto& [name, values] : all)
        Print(count, name, GetMedian(values));
}

void Measure(const fs::path& folder, int count)
{
    const fs::path profile = folder / "profile";
    fs::remove_all(profile);
    MakeProfile(profile, folder / "music", count);
    Run(folder / "app/kivo", profile, "quit"); // Makes what a first start makes.
    std::map<std::string, Numbers> all;
    for (int i = 0; i < kStarts; ++i)
        for (const auto& [name, value] : Run(folder / "app/kivo", profile, "quit"))
            all[name].push_back(value);
    for (const auto& [name, values] : all)
        Print(count, name, GetMedian(values));
    if (count == 0)
        return;
    const Figures steps = Run(folder / "app/kivo", profile, "steps");
    for (const auto& [name, value] : steps)
        if (!all.contains(name))
            Print(count, name, value);
    MeasureLeave(folder, profile, count);
}

int RunAll(const std::vector<std::string>& arguments)
{
    if (arguments.size() == 5 && arguments[1] == "--probe") {
        ProbeTask task = ProbeTask::Quit;
        if (arguments[3] == "steps")
            task = ProbeTask::Steps;
        else if (arguments[3] == "leave")
            task = ProbeTask::Leave;
        return RunProbe(arguments[2], task, std::stod(arguments[4]));
    }
    const fs::path folder =
        fs::temp_directory_path() / ("kivo-page-bench-" + std::to_string(getpid()));
    MakeAppFolder(folder / "app");
    std::vector<int> counts;
    for (std::size_t i = 1; i < arguments.size(); ++i)
        counts.push_back(std::stoi(arguments[i]));
    if (counts.empty())
        counts = {0, 1000, 10'000, 100'000, 300'000};
    for (const int count : counts)
        Measure(folder, count);
    fs::remove_all(folder);
    return 0;
}

} // namespace

} // namespace kivo::bench

int main(int argc, char** argv)
{
    return kivo::bench::RunAll({argv, argv + argc});
}
