#include "tests/end_to_end/KivoRun.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

namespace kivo::test {
namespace {

namespace fs = std::filesystem;

class RunTest : public testing::Test {
protected:
    [[nodiscard]] std::string GetProfile() const { return media_.GetPath("p"); }

    MediaFolder media_;
};

TEST_F(RunTest, EachSignalIsAnOrderlyStop)
{
    const std::string tune = media_.Make("a.wav", 60);
    for (const int number : {SIGTERM, SIGINT, SIGHUP}) {
        SCOPED_TRACE(number);
        KivoRun run({"--profile", GetProfile(), tune});
        ASSERT_TRUE(run.WaitFor("Playing: a.wav")) << run.GetErrors();
        run.Signal(number);
        EXPECT_EQ(run.WaitForEnd(10), 0) << run.GetErrors();
        EXPECT_NE(media_.Get().Read("p/tunehive/config.xml"), "");
        fs::remove_all(GetProfile());
    }
}

TEST_F(RunTest, ASecondRunOnOneProfileSaysSo)
{
    KivoRun first({"--profile", GetProfile()});
    ASSERT_TRUE(first.WaitFor("running without a window"));
    KivoRun second({"--profile", GetProfile()});
    EXPECT_EQ(second.WaitForEnd(10), 3);
    EXPECT_NE(second.GetErrors().find("is in use"), std::string::npos);
    first.Signal(SIGTERM);
    EXPECT_EQ(first.WaitForEnd(10), 0);
}

// The bytes are read, kept in the group and the library, found there by the next run, and played.
TEST_F(RunTest, APathThatIsNoUtf8IsImportedKeptAndPlayed)
{
    media_.Get().Write("m\xFF/x", "");
    fs::rename(media_.Make("a.wav", 0.2), media_.GetPath("m\xFF/t\xE9.wav"));
    for (const char* const run : {"first", "second"}) {
        SCOPED_TRACE(run);
        KivoRun kivo({"--profile", GetProfile(), "--quit-at-end", media_.GetPath("m\xFF")});
        EXPECT_EQ(kivo.WaitForEnd(20), 0) << kivo.GetErrors();
        int files = 0;
        for (const std::string& name : media_.Get().List()) {
            const std::string bytes = media_.Get().Read(name);
            const std::size_t at = bytes.find("m\xED\xB3\xBF/t\xED\xB3\xA9.wav\"");
            files += name.starts_with("p/") && at != std::string::npos ? 1 : 0;
        }
        EXPECT_EQ(files, 2) << "the group's file and the library's";
    }
}

TEST_F(RunTest, WrongUseIsOneLineAndStatusTwo)
{
    for (const char* const argument : {"--loud", "/no/such/file.mp3", "--profile", "edl://x"}) {
        SCOPED_TRACE(argument);
        KivoRun run({argument});
        EXPECT_EQ(run.WaitForEnd(10), 2);
        const std::string& errors = run.GetErrors();
        EXPECT_EQ(errors.rfind("kivo: ", 0), 0U) << errors;
        EXPECT_EQ(errors.find('\n'), errors.size() - 1) << errors;
    }
}

TEST_F(RunTest, ADisplayThatDoesNotAnswerIsNone)
{
    KivoRun run(
        {
            "--profile", GetProfile()
    },
        {"", {"QT_QPA_PLATFORM=", "DISPLAY=:987"}, 0});
    EXPECT_TRUE(run.WaitFor("there is no display")) << run.GetErrors();
    run.Signal(SIGTERM);
    EXPECT_EQ(run.WaitForEnd(10), 0);
}

TEST_F(RunTest, WhatCannotBeSavedIsNamed)
{
    if (getuid() != 0)
        GTEST_SKIP() << "needs another user";
    constexpr unsigned kNobody = 65534;
    const std::string tune = media_.Make("a.wav", 0.2);
    KivoRun first({"--profile", GetProfile(), "--quit-at-end", tune});
    ASSERT_EQ(first.WaitForEnd(20), 0);
    fs::permissions(media_.GetPath(""), fs::perms(0755));
    fs::permissions(GetProfile(), fs::perms(0755));
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(GetProfile()))
        fs::permissions(entry, fs::perms(0755));
    KivoRun run({"--profile", GetProfile(), "--quit-at-end", tune},
                {"", {"HOME=/nowhere"}, kNobody});
    EXPECT_EQ(run.WaitForEnd(20), 0);
    EXPECT_NE(run.GetErrors().find("playing.kvm could not be saved"), std::string::npos)
        << run.GetErrors();
}

// The program's tree in the build folder, copied, so that a plug-in can be spoilt.
class SpoiltTree : public RunTest {
protected:
    SpoiltTree()
        : tree_(media_.GetPath("app"))
        , world_{tree_ + "/kivo", {}, 0}
    {
        fs::copy(fs::path(KIVO_PROGRAM).parent_path(), tree_, fs::copy_options::recursive);
    }

    std::string tree_;
    KivoRun::World world_;
};

TEST_F(SpoiltTree, APlugInThatCannotBeLoadedIsToldAndTheOthersRun)
{
    const auto add = [this](const std::string& name, const std::string& library) {
        fs::create_directories(tree_ + "/plugin/" + name);
        fs::copy(library, tree_ + "/plugin/" + name + "/" + name + ".so");
    };
    media_.Get().Write("app/plugin/broken/broken.so", "not a library");
    add("other", tree_ + "/KVLibExport.so");
    add("failing", KIVO_FAILING_PLUGIN);
    KivoRun run({"--profile", GetProfile(), "--quit-at-end", media_.Make("a.wav", 0.2)}, world_);
    EXPECT_EQ(run.WaitForEnd(20), 0);
    const std::string& errors = run.GetErrors();
    for (const char* const line : {"plug-in broken can't",
                                   "plug-in other can't",
                                   "plug-in failing can't be loaded: its start failed"})
        EXPECT_NE(errors.find(line), std::string::npos) << errors;
    // What began is taken back at once.
    const std::size_t takenDown = errors.find("failing: taken down\nfailing: gone\n");
    EXPECT_NE(takenDown, std::string::npos) << errors;
    EXPECT_GT(errors.find("Playing: a.wav"), takenDown);
}

TEST_F(SpoiltTree, WithoutAPlayerNothingCanBePlayed)
{
    media_.Get().Write("app/plugin/tunehive/tunehive.so", "not a library");
    KivoRun run({"--profile", GetProfile(), media_.Make("a.wav", 0.2)}, world_);
    EXPECT_EQ(run.WaitForEnd(20), 1) << run.GetErrors();

    KivoRun idle({"--profile", GetProfile()}, world_);
    EXPECT_TRUE(idle.WaitFor("plug-in tunehive can't")) << idle.GetErrors();
    idle.Signal(SIGTERM);
    EXPECT_EQ(idle.WaitForEnd(10), 0);
}

} // namespace
} // namespace kivo::test
