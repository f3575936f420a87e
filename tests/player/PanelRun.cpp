#include "tests/player/PanelRun.h"

#include "player/IMediaPlayer.h"
#include "player/PlayerState.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/ui/SkinManager.h"
#include "tests/platform/engine/EngineRun.h"
#include "tests/support/TestLoop.h"

namespace kivo::test {

namespace {

constexpr int kPlaying = 3;
constexpr int kTransitioning = 9;
constexpr int kTurn = 50; // Milliseconds between two looks at what is posted to the host.

std::string JoinNumbers(const std::vector<int>& numbers)
{
    std::string text;
    for (const int number : numbers)
        text += (text.empty() ? "" : " ") + std::to_string(number);
    return text;
}

} // namespace

PanelRun::PanelRun(const MediaEngineSettings& settings)
{
    SetBeyond(true);
    ui::CSkinManager::GetInstance()->IncludeSkinBuildFile(u"" KIVO_DATA_DIR "/build.xml");
    SetMediaEngineFactory([settings] { return Engine::Make(settings); });
    auto& manager = tunehive::CMediaPlayerManager::GetInstance();
    manager.RegisterPlayers();
    Build();
    manager.AddListener({this, &PanelRun::OnState});
}

PanelRun::~PanelRun()
{
    Unload();
    SetMediaEngineFactory({});
}

void PanelRun::Unload()
{
    panel.reset();
    if (auto* manager = tunehive::CMediaPlayerManager::FindInstance())
        manager->Destroy();
    host.ReleasePosted();
}

void PanelRun::AddFile(const std::string& name)
{
    Add(GetMediaPath(name));
}

void PanelRun::Add(const std::string& url)
{
    page.rows.push_back(common::PathToText(url));
}

bool PanelRun::RunUntil(const std::function<bool()>& isDone, int milliseconds)
{
    bool done = isDone();
    for (int passed = 0; !done && passed < milliseconds; passed += kTurn) {
        done = test::RunUntil(
            [&] {
                host.RunPosted();
                return isDone();
            },
            kTurn);
    }
    return done;
}

void PanelRun::RunFor(int milliseconds)
{
    RunUntil([] { return false; }, milliseconds);
}

bool PanelRun::RunToState(int state)
{
    return RunUntil([&] { return !states_.empty() && states_.back() == state; });
}

bool PanelRun::RunToStarts(std::size_t count)
{
    return RunUntil([&] { return started_.size() >= count; });
}

bool PanelRun::RunToRest(int milliseconds)
{
    constexpr int kTries = 50;
    for (int i = 0; i < kTries; ++i) {
        const std::size_t before = states_.size();
        RunFor(milliseconds);
        if (states_.size() == before && Player().GetPlayState() != kPlaying)
            return true;
    }
    return false;
}

std::string PanelRun::GetTrace() const
{
    return JoinNumbers(states_);
}

std::string PanelRun::GetStarted() const
{
    return JoinNumbers(started_);
}

tunehive::IMediaPlayer& PanelRun::Player() const
{
    return *tunehive::CMediaPlayerManager::FindPlayer();
}

void PanelRun::OnState(tunehive::ITuneHive_AsyncCallbackParam* param)
{
    const Released<tunehive::ITuneHive_PlayerState> owned(
        static_cast<tunehive::ITuneHive_PlayerState*>(param));
    states_.push_back(owned->state);
    isOpening_ = isOpening_ || owned->state == kTransitioning;
    if (owned->state == kPlaying && isOpening_) {
        isOpening_ = false;
        started_.push_back(page.mark);
    }
}

} // namespace kivo::test
