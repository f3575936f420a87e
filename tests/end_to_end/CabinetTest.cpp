#include "tests/end_to_end/KivoRun.h"
#include "tests/support/HttpServer.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <list>
#include <map>
#include <semaphore>
#include <set>

namespace kivo::test {
namespace {

namespace fs = std::filesystem;

constexpr char kStartPage[] = "/music/kivo_tj.jsp";
constexpr char kNoSandbox[] = "QTWEBENGINE_CHROMIUM_FLAGS=--no-sandbox";
constexpr unsigned kNobody = 65534;

// All processes below that one.
std::set<pid_t> FindProcessesBelow(pid_t top)
{
    std::multimap<pid_t, pid_t> children;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        std::ifstream stat(entry.path() / "stat");
        pid_t pid = 0;
        pid_t parent = 0;
        std::string name;
        std::string state;
        if (stat >> pid >> name >> state >> parent)
            children.emplace(parent, pid);
    }
    std::set<pid_t> found;
    std::vector<pid_t> open{top};
    while (!open.empty()) {
        const pid_t parent = open.back();
        open.pop_back();
        const auto [first, last] = children.equal_range(parent);
        for (auto child = first; child != last; ++child)
            if (found.insert(child->second).second)
                open.push_back(child->second);
    }
    return found;
}

// A process, to be waited for whoever its parent is.
class OtherProcess {
public:
    explicit OtherProcess(pid_t process)
        : handle_(static_cast<int>(syscall(SYS_pidfd_open, process, 0)))
    {
    }
    OtherProcess(const OtherProcess&) = delete;
    OtherProcess& operator=(const OtherProcess&) = delete;
    ~OtherProcess()
    {
        if (handle_ >= 0)
            close(handle_);
    }

    [[nodiscard]] bool Ends(int milliseconds) const
    {
        pollfd wait{handle_, POLLIN, 0};
        return handle_ < 0 || poll(&wait, 1, milliseconds) == 1; // Below 0: gone already.
    }

private:
    int handle_;
};

// The program's tree, copied, with a user in it who opens the cabinet.
class CabinetTest : public testing::Test {
protected:
    CabinetTest()
    {
        const std::string tree = media_.GetPath("app");
        fs::copy(fs::path(KIVO_PROGRAM).parent_path(), tree, fs::copy_options::recursive);
        fs::create_directories(tree + "/plugin/user");
        fs::copy(KIVO_CABINET_USER, tree + "/plugin/user/user.so");
        world_.program = tree + "/kivo";
        if (getuid() == 0)
            world_.environment = {kNoSandbox};
    }

    void NeedBrowser()
    {
        if (!fs::exists(media_.GetPath("app/libkivo_web.so")))
            GTEST_SKIP() << "the browser was left out of the build";
    }

    [[nodiscard]] std::vector<std::string> GetArguments() const
    {
        const std::string root = server_.GetUrl("");
        return {
            "--profile", media_.GetPath("p"), "--music-server", root.substr(root.find("://") + 3)};
    }

    // The run ends in order, and with it all processes that it has started.
    void Stop(KivoRun& run) const
    {
        std::list<OtherProcess> processes;
        for (const pid_t process : FindProcessesBelow(run.GetPid()))
            processes.emplace_back(process);
        run.Signal(SIGTERM);
        EXPECT_EQ(run.WaitForEnd(20), 0) << run.GetErrors();
        for (const OtherProcess& process : processes)
            EXPECT_TRUE(process.Ends(10000));
        EXPECT_NE(media_.Get().Read("p/tunehive/config.xml"), "");
    }

    bool WaitForRequest() { return requested_.try_acquire_for(std::chrono::seconds(30)); }

    MediaFolder media_;
    std::counting_semaphore<> requested_{0}; // By those handlers that want to be waited for.
    HttpServer server_;
    KivoRun::World world_;
};

TEST_F(CabinetTest, ALinkOfItsPagePlays)
{
    NeedBrowser();
    media_.Make("a.wav", 30);
    server_.ServeBytes("/tune.wav", media_.Get().Read("a.wav"), "audio/wav");
    server_.ServeBytes(kStartPage,
                       "<a target=_blank style='position:fixed;inset:0' href='" +
                           server_.GetUrl("/tune.wav") +
                           "?kivo=1&p=1&song=Snow&singer=Ada' onclick='setTimeout(() => "
                           "this.remove())'>play</a>",
                       "text/html");
    KivoRun run(GetArguments(), world_);
    EXPECT_TRUE(run.WaitFor("Playing: Snow - Ada", 60)) << run.GetErrors();
    Stop(run);
    const std::string playing = media_.Get().Read("p/tunehive/playing.kvm");
    EXPECT_NE(playing.find(server_.GetUrl("/tune.wav") + "\""), std::string::npos) << playing;
    EXPECT_NE(playing.find("Snow - Ada"), std::string::npos) << playing;
}

TEST_F(CabinetTest, WhereItCannotRunItSaysWhyAndAsksNoServer)
{
    const std::string module = media_.GetPath("app/libkivo_web.so");
    const bool isBuilt = fs::exists(module);
    if (getuid() == 0 && isBuilt) {
        KivoRun run(GetArguments(), {world_.program, {"QTWEBENGINE_DISABLE_SANDBOX=1"}, 0});
        EXPECT_TRUE(run.WaitFor("runs as administrator")) << run.GetErrors();
        Stop(run);
    }
    fs::remove(module);
    KivoRun run(GetArguments(), world_);
    EXPECT_TRUE(run.WaitFor("browser component (Qt WebEngine) isn't installed")) << run.GetErrors();
    Stop(run);
    EXPECT_EQ(server_.CountConnections(), 0U);
}

// The one case with the sandbox around the page, which needs an ordinary user.
TEST_F(CabinetTest, AnOrdinaryUserHasItInASandbox)
{
    NeedBrowser();
    const char* const command =
        "su nobody -s /bin/sh -c 'unshare -U -r -p -f true' > /dev/null 2>&1";
    if (getuid() != 0 || std::system(command) != 0) // NOLINT(concurrency-mt-unsafe): one thread
        GTEST_SKIP() << "needs another user, and a system with user name spaces";
    server_.ServeBytes(kStartPage, "<script>fetch('/runs')</script>", "text/html");
    server_.Serve("/runs", [this](const HttpRequest&, const HttpAnswer&) { requested_.release(); });
    fs::permissions(media_.GetPath(""), fs::perms(0755));
    fs::create_directories(media_.GetPath("p"));
    fs::permissions(media_.GetPath("p"), fs::perms(0777));
    fs::create_directories(media_.GetPath("home"));
    fs::permissions(media_.GetPath("home"), fs::perms(0777));
    world_.user = kNobody;
    world_.environment = {"HOME=" + media_.GetPath("home"),
                          "XDG_RUNTIME_DIR=" + media_.GetPath("home")};
    KivoRun run(GetArguments(), world_);
    EXPECT_TRUE(WaitForRequest()) << run.GetErrors();
    bool isSandboxed = false;
    for (const pid_t process : FindProcessesBelow(run.GetPid())) {
        std::ifstream status("/proc/" + std::to_string(process) + "/status");
        std::string line;
        while (std::getline(status, line))
            isSandboxed = isSandboxed || line == "Seccomp:\t2";
    }
    EXPECT_TRUE(isSandboxed);
    Stop(run);
}

} // namespace
} // namespace kivo::test
