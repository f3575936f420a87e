#include "player/MediaPlayerManager.h"

#include "player/IMediaPlayer.h"
#include "player/PlayerState.h"
#include "player/SetURLTask.h"
#include "shell/contracts/base/Released.h"
#include "tests/support/ScriptedControl.h"
#include "tests/support/ScriptedPlayer.h"

#include <gtest/gtest.h>

#include <vector>

namespace kivo::test {

namespace {

using tunehive::CMediaPlayerManager;
using tunehive::CSetURLTask;
using tunehive::IMediaPlayer;
using tunehive::ITuneHive_AsyncCallbackParam;
using tunehive::ITuneHive_PlayerState;
using tunehive::PlayerStateListener;

class Listener {
public:
    void OnState(ITuneHive_AsyncCallbackParam* param)
    {
        const Released<ITuneHive_PlayerState> state(static_cast<ITuneHive_PlayerState*>(param));
        states.push_back(state->state);
        if (leaves != nullptr)
            CMediaPlayerManager::GetInstance().RemoveListener(leaves->GetDelegate());
        if (ends)
            CMediaPlayerManager::GetInstance().Destroy();
    }
    [[nodiscard]] PlayerStateListener GetDelegate() { return {this, &Listener::OnState}; }

    std::vector<int> states;
    Listener* leaves = nullptr;
    bool ends = false;
};

class ManagerTest : public testing::Test {
public:
    ~ManagerTest() override
    {
        if (CMediaPlayerManager* const left = CMediaPlayerManager::FindInstance())
            left->Destroy();
    }

    ScriptedControl control;
    ScriptedSurface surface;
    CMediaPlayerManager* manager = &CMediaPlayerManager::GetInstance();
};

TEST_F(ManagerTest, TheOneInstanceEndsWithDestroyAndComesAnew)
{
    EXPECT_EQ(&CMediaPlayerManager::GetInstance(), manager);
    manager->RegisterPlayers();
    ASSERT_NE(manager->GetPlayer(u"/a.mp3"), nullptr);
    manager->Destroy();
    EXPECT_EQ(control.liveCount, 0);
    EXPECT_EQ(CMediaPlayerManager::FindInstance(), nullptr);
    EXPECT_EQ(CMediaPlayerManager::GetInstance().GetPlayer(u""), nullptr);
    EXPECT_EQ(CMediaPlayerManager::GetInstance().GetPlayer(u"/a.mp3"), nullptr);
}

TEST_F(ManagerTest, TheFirstUrlMakesTheControlInTheParentAndTheBounds)
{
    CWnd parent;
    manager->RegisterPlayers();
    manager->SetParentWnd(&parent);
    manager->SetBounds(5, 6, 105, 56);
    EXPECT_EQ(manager->GetPlayer(u""), nullptr);
    EXPECT_EQ(control.madeCount, 0);
    IMediaPlayer* const player = manager->GetPlayer(u"/a.mp3");
    ASSERT_NE(player, nullptr);
    EXPECT_EQ(surface.parent, &parent);
    EXPECT_TRUE(surface.visible);
    EXPECT_EQ(surface.bounds, (Rect{0, 0, 100, 50}));
    EXPECT_EQ(manager->GetPlayer(u""), player);
    EXPECT_EQ(manager->GetPlayer(u"/b.mp3"), player);
    EXPECT_EQ(control.madeCount, 1);
    manager->SetBounds(0, 0, 20, 10);
    EXPECT_EQ(surface.bounds, (Rect{0, 0, 20, 10}));
}

TEST_F(ManagerTest, ThePlayerIsTheFirstById)
{
    struct Row {
        const char* name;
        bool canPlay; // The first of two,
        int canBegin;
        bool canOther; // and the second.
        int taken;     // By id; 0: none.
    };
    ScriptedPlayer first;
    ScriptedPlayer second;
    second.id = 2;
    manager->AddPlayer(&second);
    manager->AddPlayer(&first);
    manager->SetBounds(1, 2, 3, 4);
    for (const Row& row : {
             Row{"that plays it",             true,  1, true,  1},
             Row{"else the next",             false, 1, true,  2},
             Row{"that begins",               true,  0, true,  2},
             Row{"none",                      false, 1, false, 0},
             Row{"which may be another time", true,  1, false, 1},
    }) {
        SCOPED_TRACE(row.name);
        first.canPlay = row.canPlay;
        first.canBegin = row.canBegin;
        first.inited = row.canBegin;
        second.canPlay = row.canOther;
        IMediaPlayer* const player = manager->GetPlayer(u"/a.mp3");
        EXPECT_EQ(player != nullptr ? player->GetPlayerId() : 0, row.taken);
        EXPECT_EQ(manager->GetPlayer(u""), player);
    }
    EXPECT_EQ(first.shown, 1);
    EXPECT_EQ(first.bounds, (Rect{1, 2, 3, 4}));
    static_cast<void>(manager->GetPlayer(u"/a.mp3"));
    EXPECT_EQ(first.shown, 1);
    first.canPlay = false;
    second.canPlay = true;
    static_cast<void>(manager->GetPlayer(u"/b.mp3"));
    EXPECT_EQ(first.shown, 0) << "It hides for the other.";
    manager->Destroy(); // Before the players, which are the test's.
}

TEST_F(ManagerTest, ListenersHearTheControlInOrderEachWithAStateOfItsOwn)
{
    Listener first;
    Listener second;
    for (const auto& listener :
         {first.GetDelegate(), second.GetDelegate(), first.GetDelegate(), {}})
        manager->AddListener(listener);
    manager->RegisterPlayers();
    static_cast<void>(manager->GetPlayer(u"/a.mp3"));
    control.Emit(9);
    EXPECT_EQ(first.states, std::vector<int>{9});
    manager->RemoveListener(first.GetDelegate());
    manager->RemoveListener(first.GetDelegate());
    control.Emit(7);
    EXPECT_EQ(first.states, std::vector<int>{9});
    EXPECT_EQ(second.states, (std::vector<int>{9, 7}));
}

TEST_F(ManagerTest, InsideAListenerAnotherMayLeaveAndTheManagerEnd)
{
    for (const bool ends : {false, true}) {
        Listener first;
        Listener second;
        first.leaves = ends ? nullptr : &second;
        first.ends = ends;
        manager->AddListener(first.GetDelegate());
        manager->AddListener(second.GetDelegate());
        manager->NotifyState(8);
        EXPECT_EQ(first.states.size(), 1U);
        EXPECT_TRUE(second.states.empty());
        if (!ends)
            manager->RemoveListener(first.GetDelegate());
    }
    EXPECT_EQ(CMediaPlayerManager::FindInstance(), nullptr);
}

// The task as the host runs it.
void RunTask(ISDKEvent* task)
{
    const Released<ISDKEvent> owner(task);
    owner->Execute();
}

TEST_F(ManagerTest, ATaskSetsItsUrlWithItsFlag)
{
    manager->RegisterPlayers();
    RunTask(new CSetURLTask(u"/a.mp3", /*autoplay=*/0));
    EXPECT_EQ(control.CountCalls("SetAutoStart"), 1);
    EXPECT_EQ(control.GetLastCall(), "SetURL /a.mp3");
}

TEST_F(ManagerTest, ATaskWithoutAPlayerDoesNothing)
{
    RunTask(new CSetURLTask(u"/a.mp3", /*autoplay=*/1));
    manager->Destroy();
    RunTask(new CSetURLTask(u"/a.mp3", /*autoplay=*/1));
    EXPECT_EQ(CMediaPlayerManager::FindInstance(), nullptr) << "Made in order to be asked.";
    EXPECT_EQ(control.madeCount, 0);
}

TEST_F(ManagerTest, ATaskThatWasOvertakenDoesNothing)
{
    manager->RegisterPlayers();
    IMediaPlayer* const player = manager->GetPlayer(u"/a.mp3");
    auto* const chosenBeforeASet = new CSetURLTask(u"/b.mp3", /*autoplay=*/1);
    player->SetURL(u"/pressed.mp3", /*autoplay=*/1);
    RunTask(chosenBeforeASet);
    EXPECT_EQ(control.GetLastCall(), "SetURL /pressed.mp3");
    auto* const chosenBeforeAStop = new CSetURLTask(u"/b.mp3", /*autoplay=*/1);
    player->Stop();
    RunTask(chosenBeforeAStop);
    EXPECT_EQ(control.GetLastCall(), "Stop");
}

} // namespace

} // namespace kivo::test
