// The buttons of CPlayerPanel, what they do, and which track follows one that has ended.

#include "medialib/KivoMediaHelper.h"
#include "player/IMediaPlayer.h"
#include "player/IPage.h"
#include "player/IPlayingList.h"
#include "player/MediaPlayerManager.h"
#include "player/MediaSliderBar.h"
#include "player/OutputVolume.h"
#include "player/PlayerPanel.h"
#include "player/PlayMode.h"
#include "player/PlayTurn.h"
#include "player/SetURLTask.h"
#include "shell/base/Settings.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/framework/Paths.h"
#include "shell/contracts/host/KivoApi.h"
#include "shell/contracts/ui/SkinForm.h"

#include <algorithm>

namespace kivo::tunehive {

void CPlayerPanel::OnControlEvent(ui::CSkinObject* sender, void* /*data*/)
{
    struct Press {
        ui::CSkinObject* CPlayerPanel::*button;
        void (CPlayerPanel::*action)();
    };
    static constexpr Press kPresses[] = {
        {&CPlayerPanel::volButton_,   &CPlayerPanel::ToggleVolForm},
        {&CPlayerPanel::paneButton_,  &CPlayerPanel::TogglePane   },
        {&CPlayerPanel::playButton_,  &CPlayerPanel::PressPlay    },
        {&CPlayerPanel::prevButton_,  &CPlayerPanel::PressPrevious},
        {&CPlayerPanel::nextButton_,  &CPlayerPanel::PressNext    },
        {&CPlayerPanel::stopButton_,  &CPlayerPanel::PressStop    },
        {&CPlayerPanel::pauseButton_, &CPlayerPanel::PressPause   },
    };
    if (sender == nullptr)
        return;
    if (sender == bar_) {
        SeekTo(bar_->GetPosition());
        return;
    }
    for (const auto& [button, action] : kPresses) {
        if (this->*button == sender) {
            (this->*action)();
            return;
        }
    }
}

void CPlayerPanel::ToggleVolForm()
{
    ui::CSkinForm* form = GetOwnerForm();
    if (page_ == nullptr || volButton_ == nullptr)
        return;
    // Beside the button's edge and under it. Without a form the page has no place on a screen.
    constexpr int kInset = 6;
    const Rect button = volButton_->GetRectInForm();
    const Rect window = form != nullptr ? form->GetWindowRect() : Rect();
    page_->ShowVolForm(2, window.left + button.left + kInset, window.top + button.bottom);
}

// The wheel over the volume button, as over the form's slider.
void CPlayerPanel::TurnVolume(int angleDelta)
{
    constexpr int kWheelStep = 120; // A notch, in eighths of a degree.
    constexpr int kVolumeStep = 2;
    const int volume = GetOutputVolume();
    if (volume < 0)
        return;
    wheelRest_ += std::clamp(angleDelta, -100 * kWheelStep, 100 * kWheelStep);
    const int steps = wheelRest_ / kWheelStep;
    wheelRest_ -= steps * kWheelStep;
    if (steps != 0)
        SetOutputVolume(std::clamp(volume + steps * kVolumeStep, 0, 100));
}

void CPlayerPanel::TogglePane()
{
    if (page_ != nullptr)
        page_->SetPaneMode(page_->IsPaneVisible() != 0 ? 0 : 1);
}

void CPlayerPanel::PressPlay()
{
    userStop_ = 0;
    AttachPlayer();
    IMediaPlayer* player = CMediaPlayerManager::FindPlayer();
    if (paused_ && player != nullptr) {
        player->Play();
        return;
    }
    IPlayingList* list = GetList();
    if (list == nullptr || list->PlaySelected() != 0)
        return;
    String url;
    list->GetCurrentURL(url);
    if (GetMediaHelperInstance().IsVideoFile(url))
        page_->SetPaneMode(2);
    if (!url.empty())
        SetPlayerURL(url);
    else if (IsBeyond())
        PlayWithoutMark(*list);
}

// Nothing is paused, selected or current: the button still has to do what a newcomer means by it.
void CPlayerPanel::PlayWithoutMark(IPlayingList& list)
{
    String url;
    list.GetNextURL(url, /*wrap=*/0);
    if (!url.empty())
        SetPlayerURL(url);
    else if (list.GetPlayingCount() == 0 && page_->PlaySelectedElsewhere() == 0)
        page_->ShowAddMenu();
}

void CPlayerPanel::PressPause()
{
    if (IMediaPlayer* player = CMediaPlayerManager::FindPlayer())
        player->Pause();
}

void CPlayerPanel::PressStop()
{
    StopPlayback(1);
}

void CPlayerPanel::PressNext()
{
    Step(/*forward=*/true);
}

void CPlayerPanel::PressPrevious()
{
    Step(/*forward=*/false);
}

void CPlayerPanel::SeekTo(double seconds)
{
    IMediaPlayer* player = CMediaPlayerManager::FindPlayer();
    if (player == nullptr)
        return;
    player->SetPosition(seconds);
    // The bar counts for itself: left behind, it would end the track too soon or too late.
    if (bar_ != nullptr && !bar_->IsLocked())
        bar_->SetPosition(seconds > 0 ? static_cast<int>(std::min(seconds, duration_)) : 0);
}

void CPlayerPanel::Step(bool forward)
{
    addressSet_ = false;
    OvertakePendingTask();
    if (IMediaPlayer* player = CMediaPlayerManager::FindPlayer())
        player->Stop();
    StopSeconds();
    ResetSlider();
    paused_ = false;

    IPlayingList* list = GetList();
    if (list == nullptr)
        return;
    const int mode = GetPlayMode();
    const int wrap = mode == static_cast<int>(PlayMode::RepeatGroup) ? 1 : 0;
    String url;
    if (mode == static_cast<int>(PlayMode::Random))
        list->GetRandomURL(url);
    else if (forward)
        list->GetNextURL(url, wrap);
    else
        list->GetPrevURL(url, wrap);
    if (!url.empty())
        SetPlayerURL(url);
    else if (IsBeyond())
        ShowPlayButton(/*shown=*/true);
}

void CPlayerPanel::SetPlayerURL(const String& url)
{
    addressSet_ = true;
    OvertakePendingTask();
    if (IMediaPlayer* player = CMediaPlayerManager::FindPlayer(url))
        player->SetURL(url, /*autoplay=*/1);
    ShowStopButton();
}

bool CPlayerPanel::PostNext()
{
    const String url = ChooseAutoNext();
    if (url.empty())
        return false;
    addressSet_ = true;
    posted_ = true;
    // Posted, not set: we are inside the control's callback.
    _KivoAPI_PostSDKEvent(new CSetURLTask(url, /*autoplay=*/1));
    return true;
}

void CPlayerPanel::OvertakePendingTask()
{
    NextPlayTurn();
    posted_ = false;
}

String CPlayerPanel::ChooseAutoNext()
{
    IPlayingList* list = GetList();
    if (list == nullptr)
        return {};
    const int mode = GetPlayMode();
    int left = list->GetPlayingCount(); // Tries.
    if (mode == static_cast<int>(PlayMode::RepeatTrack))
        left = std::min(left, 1); // The mark stands: another look would find the same.
    String candidate;
    bool isFound = false;
    list->BeginMoves();
    for (; left > 0 && !isFound; --left) {
        candidate = PickByMode(mode, *list, candidate);
        if (candidate.empty())
            break;
        isFound = PathFileExistsW(candidate);
    }
    list->EndMoves();
    return isFound ? candidate : String();
}

String CPlayerPanel::PickByMode(int mode, IPlayingList& list, const String& candidate) const
{
    String url;
    switch (static_cast<PlayMode>(mode)) {
    case PlayMode::Track: break;
    case PlayMode::RepeatTrack: list.GetCurrentURL(url); break;
    case PlayMode::Sequence: list.GetNextURL(url, /*wrap=*/0); break;
    case PlayMode::RepeatGroup: list.GetNextURL(url, /*wrap=*/1); break;
    case PlayMode::Random: list.GetRandomURL(url); break;
    default: return candidate; // A mode of no meaning chooses nothing.
    }
    return url;
}

} // namespace kivo::tunehive
