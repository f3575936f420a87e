#include "tests/end_to_end/Desktop.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <sstream>
#include <system_error>
#include <thread>

namespace kivo::test {

namespace {

namespace fs = std::filesystem;

// All that whoever listens there says; empty: nobody does.
std::string ReadSocket(const std::string& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    const int stream = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    std::string text;
    if (connect(stream, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
        const timeval limit{5, 0};
        setsockopt(stream, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
        std::array<char, 4096> buffer{};
        for (ssize_t count = 0; (count = read(stream, buffer.data(), buffer.size())) > 0;)
            text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    close(stream);
    return text;
}

Seen ReadLine(const std::string& line)
{
    std::vector<std::string> parts;
    std::istringstream stream(line + "|");
    for (std::string part; std::getline(stream, part, '|');)
        parts.push_back(part);
    parts.resize(8);
    Seen seen;
    seen.kind = parts[0];
    seen.name = parts[1];
    seen.x = std::atoi(parts[2].c_str());
    seen.y = std::atoi(parts[3].c_str());
    seen.width = std::atoi(parts[4].c_str());
    seen.height = std::atoi(parts[5].c_str());
    seen.state = parts[6];
    seen.value = parts[7];
    return seen;
}

bool IsSamePlace(const Seen& one, const Seen& other)
{
    return one.x == other.x && one.y == other.y && one.width == other.width &&
           one.height == other.height;
}

std::string PlaceOf(const Seen& seen)
{
    // Beside the middle, where a label's last letter may already be another control.
    return std::to_string(seen.x + std::min(seen.width / 2, 60)) + " " +
           std::to_string(seen.y + seen.height / 2);
}

} // namespace

bool WaitUntil(const std::function<bool()>& holds)
{
    constexpr std::chrono::milliseconds kPause{40};
    // Once something went wrong, what builds on it need not be waited for.
    const std::chrono::seconds longest{testing::Test::HasFailure() ? 1 : 30};
    const auto deadline = std::chrono::steady_clock::now() + longest;
    while (!holds()) {
        if (std::chrono::steady_clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(kPause);
    }
    return true;
}

bool Seen::Is(const std::string& word) const
{
    return (" " + state + " ").find(" " + word + " ") != std::string::npos;
}

Desktop::Desktop()
{
    const std::string tree = media_.GetPath("app");
    fs::copy(fs::path(KIVO_PROGRAM).parent_path(), tree, fs::copy_options::recursive);
    fs::create_directories(tree + "/plugin/eyes");
    fs::copy(KIVO_EYES_PLUGIN, tree + "/plugin/eyes/eyes.so");
}

Desktop::~Desktop()
{
    if (!testing::Test::HasFailure() || !IsUp())
        return;
    const testing::TestInfo& test = *testing::UnitTest::GetInstance()->current_test_info();
    std::string name = std::string("failed-") + test.test_suite_name() + "-" + test.name() + ".png";
    std::replace(name.begin(), name.end(), '/', '-');
    const fs::path file = fs::path(KIVO_PICTURES) / name;
    TakePicture(file.native());
    std::fprintf(stderr, "the screen: %s\n", file.c_str());
    for (const Seen& seen : Look())
        std::fprintf(stderr,
                     "  %s \"%s\" %d %d %d %d %s %s\n",
                     seen.kind.c_str(),
                     seen.name.c_str(),
                     seen.x,
                     seen.y,
                     seen.width,
                     seen.height,
                     seen.state.c_str(),
                     seen.value.c_str());
}

void Desktop::Start(std::vector<std::string> arguments, std::vector<std::string> variables)
{
    arguments.insert(arguments.begin(), {"--profile", media_.GetPath("p")});
    variables.insert(variables.begin(),
                     {"QT_QPA_PLATFORM=xcb",
                      "DISPLAY=" + screen_.GetName(),
                      "HOME=" + media_.GetPath(""),
                      "KIVO_EYES=" + GetSocket()});
    fs::remove(GetSocket());
    run_.emplace(arguments, KivoRun::World{media_.GetPath("app/kivo"), variables, 0});
    const bool isThere = WaitUntil([this] {
        const std::optional<Seen> window = Peek("window", "kivo");
        return window && window->Is("active");
    });
    EXPECT_TRUE(isThere) << run_->GetErrors();
}

int Desktop::WaitForEnd()
{
    return run_->WaitForEnd(30);
}

bool Desktop::HasOpen(const std::string& file) const
{
    std::error_code error;
    const fs::path folder = "/proc/" + std::to_string(run_->GetPid()) + "/fd";
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code gone;
        if (fs::read_symlink(entry->path(), gone) == fs::path(file))
            return true;
    }
    return false;
}

std::vector<Seen> Desktop::Look() const
{
    std::vector<Seen> all;
    std::istringstream lines(ReadSocket(GetSocket()));
    for (std::string line; std::getline(lines, line);)
        all.push_back(ReadLine(line));
    return all;
}

std::optional<Seen> Desktop::Peek(const std::string& kind, const std::string& name) const
{
    for (const Seen& seen : Look())
        if (seen.kind == kind && seen.name == name)
            return seen;
    return std::nullopt;
}

bool Desktop::Sees(const std::string& kind, const std::string& name) const
{
    return Peek(kind, name).has_value();
}

Seen Desktop::Find(const std::string& kind, const std::string& name)
{
    std::optional<Seen> last;
    const bool isFound = WaitUntil([&] {
        std::optional<Seen> now = Peek(kind, name);
        const bool isStill = now && last && IsSamePlace(*now, *last) && !now->Is("disabled");
        last = std::move(now);
        return isStill;
    });
    EXPECT_TRUE(isFound) << kind << " " << name;
    return last.value_or(Seen());
}

void Desktop::Click(const std::string& kind, const std::string& name, int button)
{
    const Seen seen = Find(kind, name);
    Do("mousemove --sync " + PlaceOf(seen) + " click " + std::to_string(button));
}

void Desktop::DoubleClick(const std::string& kind, const std::string& name)
{
    const Seen seen = Find(kind, name);
    Do("mousemove --sync " + PlaceOf(seen) + " click --repeat 2 --delay 60 1");
}

// In steps, as a hand moves: the first one has to leave the place by more than a click's shake.
void Desktop::Drag(const Seen& from, int x, int y) const
{
    constexpr int kSteps = 6;
    const int startX = from.x + std::min(from.width / 2, 60);
    const int startY = from.y + from.height / 2;
    Do("mousemove --sync " + std::to_string(startX) + " " + std::to_string(startY) +
       " mousedown 1");
    for (int step = 1; step <= kSteps; ++step)
        Do("mousemove --sync " + std::to_string(startX + (x - startX) * step / kSteps) + " " +
           std::to_string(startY + (y - startY) * step / kSteps) + " sleep 0.1");
    // The one below has to answer that it would take it.
    Do("mousemove --sync " + std::to_string(x + 2) + " " + std::to_string(y) +
       " sleep 0.4 mouseup 1");
}

void Desktop::Press(const std::string& keys) const
{
    Do("key --delay 30 " + keys);
}

void Desktop::Type(const std::string& text) const
{
    Run({"xdotool", "type", "--delay", "8", text});
}

std::string Desktop::Do(const std::string& command) const
{
    std::vector<std::string> words{"xdotool"};
    std::istringstream stream(command);
    for (std::string word; stream >> word;)
        words.push_back(word);
    return Run(words);
}

std::string Desktop::Run(const std::vector<std::string>& command) const
{
    Process process(command, {"DISPLAY=" + screen_.GetName(), "QT_QPA_PLATFORM=xcb"});
    process.WaitForEnd();
    return process.GetOutput();
}

QImage Desktop::TakePicture(const std::string& file) const
{
    const std::string path = file.front() == '/' ? file : media_.GetPath(file);
    Run({KIVO_SCREEN_PICTURE, path});
    return QImage(QString::fromStdString(path));
}

std::string Desktop::ReadProfile(const std::string& file) const
{
    return media_.Get().Read("p/" + file);
}

} // namespace kivo::test
