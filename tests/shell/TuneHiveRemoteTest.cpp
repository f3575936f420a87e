#include "shell/contracts/desktop/TuneHiveRemote.h"

#include "shell/contracts/ui/SkinManager.h"
#include "shell/desktop/TuneHiveRemote.h"
#include "shell/Plugin_TuneHiveApp.h"
#include "shell/TuneHiveWindow.h"
#include "tests/support/FakeHost.h"
#include "tests/support/ScriptedControl.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace kivo::tunehive {
namespace {

// The whole plug-in with an open page, over a scripted control.
class TuneHiveRemoteTest : public testing::Test {
protected:
    TuneHiveRemoteTest()
    {
        host_.directory = folder_.GetPath();
        ui::CSkinManager::GetInstance()->IncludeSkinBuildFile(u"" KIVO_DATA_DIR "/build.xml");
        for (const char* name : {"a.mp3", "b.mp3", "c.mp3"})
            folder_.Write(name, "sound");
        EXPECT_EQ(plugin_->OnLoad(nullptr, nullptr), 1);
        plugin_->GetWindow()->CreatePage();
        remote_ = plugin_->GetRemote();
        remote_->AddListener(GetListener());
    }
    ~TuneHiveRemoteTest() override
    {
        plugin_->GetWindow()->ClosePage();
        plugin_->OnUnLoad();
        ui::CSkinManager::GetInstance()->Clear();
    }
    void OnState(int state) { states_.push_back(state); }
    [[nodiscard]] Delegate<int> GetListener() { return {this, &TuneHiveRemoteTest::OnState}; }

    // A state as the event loop brings it, with all that follows from it.
    void Emit(int state)
    {
        control_.Emit(state);
        host_.RunPosted();
    }
    void OpenAndPlay(const std::vector<const char*>& names)
    {
        std::vector<String> paths;
        paths.reserve(names.size());
        for (const char* name : names)
            paths.push_back(folder_.GetPath(name));
        remote_->Open(paths, u"playing", /*playFirst=*/true);
        host_.RunPosted();
    }
    void Start()
    {
        Emit(9);
        control_.duration = 120;
        Emit(3);
    }

    test::TempFolder folder_;
    test::FakeHost host_;
    test::ScriptedControl control_;
    std::unique_ptr<CPlugin_TuneHiveApp> plugin_ = std::make_unique<CPlugin_TuneHiveApp>();
    ITuneHiveRemote* remote_ = nullptr;
    std::vector<int> states_;
};

TEST_F(TuneHiveRemoteTest, OpensInOrderAndPlaysTheFirst)
{
    EXPECT_EQ(remote_->GetVolume(), -1); // Nothing has played yet.
    remote_->SetVolume(20);
    EXPECT_EQ(remote_->GetPosition(), -1.0);
    EXPECT_EQ(remote_->GetPath(), u"");
    EXPECT_EQ(remote_->GetState(), 0);
    EXPECT_TRUE(remote_->IsAtRest());
    EXPECT_EQ(control_.madeCount, 0);
    OpenAndPlay({"b.mp3", "a.mp3"});
    EXPECT_EQ(control_.url, folder_.GetPath("b.mp3"));
    EXPECT_EQ(remote_->GetPath(), folder_.GetPath("b.mp3"));
    Start();
    EXPECT_EQ(remote_->GetState(), 3);
    EXPECT_EQ(remote_->GetTitle(), u"b.mp3");
    EXPECT_EQ(remote_->GetLength(), 120.0);
    remote_->Next();
    host_.RunPosted();
    EXPECT_EQ(control_.url, folder_.GetPath("a.mp3"));
    Start();
    remote_->Previous();
    host_.RunPosted();
    EXPECT_EQ(control_.url, folder_.GetPath("b.mp3"));
    Start();
    remote_->Open({folder_.GetPath("c.mp3")}, u"playing", /*playFirst=*/false);
    EXPECT_EQ(control_.url, folder_.GetPath("b.mp3")); // It plays on.
    OpenAndPlay({"c.mp3"});
    EXPECT_EQ(control_.url, folder_.GetPath("c.mp3"));
}

TEST_F(TuneHiveRemoteTest, PressesTheButtons)
{
    OpenAndPlay({"a.mp3"});
    Start();
    control_.calls.clear();
    remote_->Pause();
    EXPECT_EQ(control_.GetLastCall(), "Pause");
    Emit(2);
    remote_->Play();
    EXPECT_EQ(control_.GetLastCall(), "Play");
    Emit(3);
    remote_->Seek(30.5);
    EXPECT_EQ(control_.CountCalls("SetPosition"), 1);
    for (const int volume : {40, -3, 400})
        remote_->SetVolume(volume);
    EXPECT_EQ(control_.CountCalls("SetVolume 40"), 1);
    EXPECT_EQ(control_.CountCalls("SetVolume 0"), 1);
    EXPECT_EQ(control_.CountCalls("SetVolume 100"), 1);
    remote_->Stop();
    EXPECT_EQ(control_.CountCalls("Stop"), 1);
}

TEST_F(TuneHiveRemoteTest, ListenersHearEachStateUntilTheyLeave)
{
    OpenAndPlay({"a.mp3"});
    states_.clear();
    Start();
    Emit(2);
    EXPECT_EQ(states_, (std::vector<int>{9, 3, 2}));
    remote_->RemoveListener(GetListener());
    Emit(3);
    EXPECT_EQ(states_.size(), 3U);
}

TEST_F(TuneHiveRemoteTest, RestsWhenTheLastTrackHasEnded)
{
    OpenAndPlay({"a.mp3", "b.mp3"});
    Start();
    EXPECT_FALSE(remote_->IsAtRest());
    control_.Emit(8);
    EXPECT_FALSE(remote_->IsAtRest()); // The next address is on its way.
    host_.RunPosted();
    EXPECT_EQ(control_.url, folder_.GetPath("b.mp3"));
    Start();
    Emit(8);
    Emit(1);
    EXPECT_TRUE(remote_->IsAtRest());
}

TEST_F(TuneHiveRemoteTest, IsGoneWithThePage)
{
    OpenAndPlay({"a.mp3"});
    EXPECT_TRUE(remote_->StopWork(5000));
    plugin_->GetWindow()->ClosePage();
    EXPECT_EQ(plugin_->GetRemote(), nullptr);
    Emit(1); // A late state reaches no remote.
}

} // namespace
} // namespace kivo::tunehive
