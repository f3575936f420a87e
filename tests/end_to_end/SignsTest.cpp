#include "host/sign/SecretStore.h"
#include "tests/end_to_end/Desktop.h"
#include "tests/end_to_end/KivoRun.h"
#include "tests/host/sign/Keyring.h"
#include "tests/host/sign/SignServer.h"
#include "tests/support/HttpServer.h"
#include "tests/support/Process.h"
#include "tests/support/TempFolder.h"
#include "tests/support/XScreen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace kivo::test {

namespace {

std::string ReadFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The time in a line of kivo_signtest, in milliseconds.
long GetTime(const std::string& line)
{
    const std::size_t blank = line.find(' ');
    return blank == std::string::npos ? 0 : std::stol(line.substr(blank + 1));
}

// The program's settings of somebody who is signed in.
std::string MakeSettings(const SignServer& server, const std::string& name, bool publishes)
{
    const host::SignAccount account = server.GetAccount(name);
    return "account.on=1\naccount.address=" + name + "@" + SignServer::kDomain +
           "\naccount.server=127.0.0.1\naccount.port=" + std::to_string(account.port) +
           "\naccount.pin=" + account.fingerprint + "\naccount.publish=" + (publishes ? "1" : "0") +
           "\n";
}

// Somebody with the program in front of him.
class User {
public:
    User(const SignServer& server,
         const XScreen& screen,
         const std::string& name,
         const std::vector<std::string>& arguments = {},
         bool publishes = true)
    {
        folder_.Write("host.ini", MakeSettings(server, name, publishes));
        std::vector<std::string> command{KIVO_SIGNTEST, "--profile", folder_.GetNative().native()};
        command.insert(command.end(), arguments.begin(), arguments.end());
        process_ = std::make_unique<Process>(
            command,
            std::vector<std::string>{"DISPLAY=" + screen.GetName(),
                                     "QT_QPA_PLATFORM=xcb",
                                     "PULSE_SERVER=unix:/nowhere",
                                     "KIVO_SIGNTEST_PASSWORD=" + SignServer::GetPassword(name)});
    }

    // The next line of that kind that holds the text; empty: none in that time.
    std::string WaitFor(const std::string& kind, const std::string& text, int milliseconds = 30000)
    {
        return process_->WaitFor(
            [&](const std::string& line) {
                return line.starts_with(kind + " ") && line.find(text) != std::string::npos;
            },
            milliseconds);
    }
    void Do(const std::string& what) { process_->Say(what); }
    void Kill() { process_->Kill(); }
    int Quit()
    {
        process_->Signal(SIGTERM);
        return process_->WaitForEnd();
    }
    [[nodiscard]] const std::string& GetOutput() const { return process_->GetOutput(); }

    // Whether a file of his profile holds the text.
    [[nodiscard]] bool Keeps(const std::string& text) const
    {
        for (const std::string& name : folder_.List()) {
            if (name != "host.ini" && folder_.Read(name).find(text) != std::string::npos)
                return true;
        }
        return false;
    }

private:
    TempFolder folder_;
    std::unique_ptr<Process> process_;
};

struct Signs : testing::Test {
    Signs()
    {
        for (const char* const name : {"alice", "bob"})
            server.AddUser(name);
        server.Befriend("alice", "bob");
        server.Start();
        EXPECT_TRUE(screen.IsUp());
        media.Make("song.mp3", 120, "-metadata title=Evening");
        web.ServeBytes("/song.mp3", ReadFile(media.GetPath("song.mp3")), "audio/mpeg");
        web.ServeBytes("/other.mp3", ReadFile(media.GetPath("song.mp3")), "audio/mpeg");
    }

    SignServer server;
    XScreen screen{/*hasManager=*/false};
    MediaFolder media;
    HttpServer web;
    std::string song = web.GetUrl("/song.mp3");
    std::string other = web.GetUrl("/other.mp3");
};

TEST_F(Signs, AFriendSeesTheTitleJoinsInAndSeesItStop)
{
    User bob(server, screen, "bob");
    ASSERT_NE(bob.WaitFor("row", "alice, Offline"), "") << bob.GetOutput();
    User alice(server, screen, "alice", {song});
    ASSERT_NE(bob.WaitFor("row", "alice, Online"), "");
    const std::string shown = alice.WaitFor("sign", song);
    ASSERT_NE(shown, "") << alice.GetOutput();
    const std::string seen = bob.WaitFor("row", "plays");
    ASSERT_NE(seen, "");
    RecordProperty("title_ms", static_cast<int>(GetTime(seen) - GetTime(shown)));
    EXPECT_LT(GetTime(seen) - GetTime(shown), 2000);
    EXPECT_TRUE(server.HasHeard("song.mp3"));

    bob.Do("go alice");
    ASSERT_NE(bob.WaitFor("sign", song), "") << bob.GetOutput(); // It plays.

    alice.Do("pause");
    EXPECT_EQ(bob.WaitFor("gone", "plays", 5000), "");
    alice.Do("play");
    alice.Do("stop");
    ASSERT_NE(alice.WaitFor("nosign", ""), "");
    EXPECT_NE(bob.WaitFor("gone", "plays"), "");
    EXPECT_EQ(bob.GetOutput().find("nosign"), std::string::npos); // Hers is not his.

    EXPECT_EQ(bob.Quit(), 0);
    EXPECT_EQ(alice.Quit(), 0);
    EXPECT_TRUE(bob.Keeps(song)); // In "Playing".
}

TEST_F(Signs, AFilesSignIsExplainedAndDisturbsNothing)
{
    User bob(server, screen, "bob", {other});
    ASSERT_NE(bob.WaitFor("sign", other), "") << bob.GetOutput();
    User alice(server, screen, "alice", {media.GetPath("song.mp3")});
    ASSERT_NE(bob.WaitFor("row", "plays Evening"), "") << alice.GetOutput();
    bob.Do("go alice");
    EXPECT_NE(bob.WaitFor("box", "can't be played from here"), "");
    EXPECT_EQ(bob.WaitFor("nosign", "", 1000), "");
    EXPECT_EQ(bob.Quit(), 0);
    EXPECT_FALSE(bob.Keeps("Evening"));
    EXPECT_TRUE(server.HasHeard("Evening"));
    EXPECT_FALSE(server.HasHeard("song.mp3")); // The path never left.
}

TEST_F(Signs, AKilledProgramsSignGoesOnceTheServerKnows)
{
    User bob(server, screen, "bob");
    User alice(server, screen, "alice", {song});
    ASSERT_NE(bob.WaitFor("row", "plays"), "");
    alice.Kill();
    EXPECT_NE(bob.WaitFor("row", "alice, Offline"), "");
    EXPECT_NE(bob.WaitFor("gone", "plays"), "");
}

TEST_F(Signs, NothingLeavesBeforeTheUserHasSaidYes)
{
    User bob(server, screen, "bob");
    User alice(server, screen, "alice", {song}, /*publishes=*/false);
    ASSERT_NE(bob.WaitFor("row", "alice, Online"), "");
    EXPECT_EQ(bob.WaitFor("row", "plays", 8000), "");
    EXPECT_GT(web.CountRequests("/song.mp3"), 0U); // She does play.
    EXPECT_FALSE(server.HasHeard("song.mp3"));
}

TEST_F(Signs, AServerThatIsKilledAndComesBackShowsThemAgain)
{
    User bob(server, screen, "bob");
    User alice(server, screen, "alice", {song});
    ASSERT_NE(bob.WaitFor("row", "plays"), "");
    server.Kill();
    ASSERT_NE(bob.WaitFor("gone", "plays"), "");
    server.Start();
    EXPECT_NE(bob.WaitFor("row", "plays", 60000), "") << server.ReadLog();
}

TEST_F(Signs, FiftyTracksInFiveSecondsAreFewMessages)
{
    std::vector<std::string> songs;
    for (int i = 0; i <= 50; ++i) {
        const std::string path = "/" + std::to_string(i) + ".mp3";
        web.ServeBytes(path, ReadFile(media.GetPath("song.mp3")), "audio/mpeg");
        songs.push_back(web.GetUrl(path));
    }
    User bob(server, screen, "bob");
    User alice(server, screen, "alice", songs);
    ASSERT_NE(alice.WaitFor("sign", songs.front()), "");
    const auto count = [this] {
        const std::string log = server.ReadLog();
        const std::string mark = "Sending notification to bob@sign.example";
        int found = 0;
        for (std::size_t at = 0; (at = log.find(mark, at)) != std::string::npos; ++at)
            ++found;
        return found;
    };
    ASSERT_NE(bob.WaitFor("row", "plays"), "");
    const int before = count();
    const auto start = std::chrono::steady_clock::now();
    for (int i = 1; i <= 50; ++i) {
        alice.Do("next");
        std::this_thread::sleep_until(start + i * std::chrono::milliseconds(100)); // The pace.
    }
    ASSERT_NE(alice.WaitFor("sign", songs.back()), "") << alice.GetOutput();
    EXPECT_EQ(bob.WaitFor("never", "", 4000), "");
    EXPECT_LE(count() - before, 3);
    EXPECT_GE(count() - before, 1);
}

// The program itself, with its own keyring, under real mouse and keys.
TEST_F(Signs, TheProgramPlaysNothingFromThisMachine)
{
    Keyring keyring;
    ASSERT_TRUE(keyring.IsUp());
    ASSERT_TRUE(
        host::MakeSecretStore()->Write(SignServer::GetId("bob"), SignServer::GetPassword("bob")));
    User alice(server, screen, "alice", {song});
    ASSERT_NE(alice.WaitFor("sign", song), "");
    Desktop bob;
    ASSERT_TRUE(bob.IsUp());
    bob.GetMedia().Get().Write("p/host.ini", MakeSettings(server, "bob", /*publishes=*/true));
    bob.Start({}, {"DBUS_SESSION_BUS_ADDRESS=" + keyring.GetBus()});
    bob.Click("control", "Contacts");
    ASSERT_TRUE(WaitUntil([&] {
        const std::vector<Seen> all = bob.Look();
        return std::any_of(all.begin(), all.end(), [](const Seen& seen) {
            return seen.name == "alice" && seen.value.find("plays") != std::string::npos;
        });
    }));
    const std::size_t requests = web.CountRequests("/song.mp3");
    bob.DoubleClick("group", "alice");
    // What it says of a file on her own disk.
    EXPECT_TRUE(WaitUntil([&] {
        const std::vector<Seen> all = bob.Look();
        return std::any_of(all.begin(), all.end(), [](const Seen& seen) {
            return seen.name.find("can't be played from here") != std::string::npos;
        });
    }));
    EXPECT_EQ(web.CountRequests("/song.mp3"), requests);
}

} // namespace

} // namespace kivo::test
