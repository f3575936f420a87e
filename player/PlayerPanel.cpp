#include "player/PlayerPanel.h"

#include "medialib/IMediaLibManager.h"
#include "medialib/KivoMediaHelper.h"
#include "player/IMediaPlayer.h"
#include "player/IPage.h"
#include "player/IPlayingList.h"
#include "player/MediaPlayerManager.h"
#include "player/MediaSliderBar.h"
#include "player/PlayerState.h"
#include "player/PlayMode.h"
#include "player/PlayTurn.h"
#include "player/SetURLTask.h"
#include "shell/base/Settings.h"
#include "shell/base/TuneHiveEvent.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Paths.h"
#include "shell/contracts/host/KivoApi.h"
#include "shell/contracts/ui/SkinForm.h"
#include "shell/contracts/ui/SkinManager.h"

#include <algorithm>

namespace kivo::tunehive {

namespace {

constexpr TimerId kSecondsTimer = 3432;
constexpr TimerId kBufferingTimer = 3433;
constexpr unsigned kSecondsPeriodMs = 1000;
constexpr unsigned kBufferingPeriodMs = 100;
constexpr int kSecondsAtEnd = 3; // How long the control's own report may follow the counted end.

CPlayerPanel* builtPanel = nullptr;

IMediaPlayer* FindPlayer(const String& url = String())
{
    auto* manager = CMediaPlayerManager::FindInstance();
    return manager != nullptr ? manager->GetPlayer(url) : nullptr;
}

bool IsStreamURL(const String& url)
{
    return url.starts_with(u"mms://") || url.starts_with(u"rtsp://");
}

// Gives the library the length that the control found. A local file is asked for first: otherwise
// an entry of a length alone could arise, which would pass for all that is known of the file.
void TellLibrary(const String& url, double duration)
{
    IMediaLibManager* library = FindMediaLibManager();
    if (library == nullptr)
        return;
    if (!UrlIsW(url)) {
        MediaInfo known;
        library->GetMediaInfo(url, known);
    }
    library->UpdateMediaInfo(url,
                             MediaInfo{
                                 {kInfoLength, common::FormatWhole(duration)}
    },
                             static_cast<int>(NotifyMode::Later));
}

} // namespace

CPlayerPanel::CPlayerPanel(IPage* page)
    : page_(page)
{
    SetObjectID(u"PlayerPanel");
    ListenEvent(ui::kControlEvent, ui::EventDelegate(this, &CPlayerPanel::OnControlEvent));
    const SettingDelegate watch(this, &CPlayerPanel::OnSettingChanged);
    const String key = u"usign_setting";
    const String filter = u"*";
    _KivoAPI_Watch(this, &watch, &key, &filter, -1);
}

CPlayerPanel::~CPlayerPanel()
{
    StopSeconds();
    StopBuffering();
    _KivoAPI_Revoke(this);
    if (builtPanel == this)
        builtPanel = nullptr;
}

void CPlayerPanel::Release()
{
    auto* manager = CMediaPlayerManager::FindInstance();
    if (attached_ && manager != nullptr)
        manager->RemoveListener(PlayerStateListener(this, &CPlayerPanel::OnPlayerState));
    delete this;
}

CPlayerPanel* CPlayerPanel::GetInstance()
{
    return builtPanel;
}

void CPlayerPanel::Build(CWnd* parent)
{
    parent_ = parent;
    const String key =
        common::FormatText(u"%s %s TuneHiveWindow %s", {u"KIVO", u"Plugins", GetObjectID()});
    const TiXmlNode* node = ui::CSkinManager::GetInstance()->GetBuildNode(key);
    if (node != nullptr && BuildFromXML(node) != 0)
        builtPanel = this;
}

int CPlayerPanel::OnBuildControlAfter()
{
    struct Control {
        const char16_t* id;
        ui::CSkinObject* CPlayerPanel::*field;
        bool isHidden;
    };
    static constexpr Control kControls[] = {
        {u"PlayBtn",      &CPlayerPanel::playButton_,   false},
        {u"PauseBtn",     &CPlayerPanel::pauseButton_,  true },
        {u"PrevBtn",      &CPlayerPanel::prevButton_,   false},
        {u"NextBtn",      &CPlayerPanel::nextButton_,   false},
        {u"StopBtn",      &CPlayerPanel::stopButton_,   false},
        {u"VolBtn",       &CPlayerPanel::volButton_,    false},
        {u"LyricBtn",     &CPlayerPanel::paneButton_,   false},
        {u"PopBtn",       &CPlayerPanel::popButton_,    false},
        {u"StateLab",     &CPlayerPanel::stateLabel_,   false},
        {u"ControlPanel", &CPlayerPanel::controlPanel_, false},
        {u"StatePanel",   &CPlayerPanel::statePanel_,   true },
    };
    for (const auto& [id, field, isHidden] : kControls) {
        this->*field = FindControlRecusive(id);
        if (this->*field == nullptr)
            return 0;
        if (isHidden)
            (this->*field)->SetVisible(0);
    }

    bar_ = new CMediaSliderBar;
    bar_->SetObjectID(u"ProcessBar");
    controlPanel_->RegisterControl(bar_);
    bar_->SetSkinName(u"tunehive_player");
    bar_->SetAnchorStyle(ui::anchor::kTop);
    bar_->SetBounds(0, 0, 10, 6);
    bar_->Create(parent_);
    bar_->SetRange(0, 100);
    bar_->SetPosition(0);
    return 1;
}

void CPlayerPanel::AttachPlayer()
{
    if (attached_)
        return;
    CMediaPlayerManager::GetInstance().AddListener(
        PlayerStateListener(this, &CPlayerPanel::OnPlayerState));
    attached_ = true;
}

void CPlayerPanel::OnPlayerState(ITuneHive_AsyncCallbackParam* param)
{
    const Released<ITuneHive_AsyncCallbackParam> owned(param);
    IMediaPlayer* player = FindPlayer();
    if (param == nullptr || player == nullptr)
        return;
    const int state = static_cast<ITuneHive_PlayerState*>(param)->state;
    if (EnterState(state, *player))
        lastState_ = state;
}

bool CPlayerPanel::EnterState(int state, IMediaPlayer& player)
{
    switch (static_cast<PlayerState>(state)) {
    case PlayerState::Playing: return EnterPlaying(player);
    case PlayerState::Paused: EnterPaused(); break;
    case PlayerState::Ended: EnterEnded(); break;
    case PlayerState::Buffering: EnterBuffering(); break;
    case PlayerState::Transitioning: EnterTransitioning(player.GetURL()); break;
    case PlayerState::Ready: return EnterReady(player.GetURL());
    case PlayerState::Stopped: EnterStopped(); break;
    default: break; // Any other number is only remembered.
    }
    return true;
}

bool CPlayerPanel::EnterPlaying(IMediaPlayer& player)
{
    StopSeconds();
    StopBuffering();
    ShowState(0);
    ShowPauseButton();
    if (bar_ != nullptr)
        bar_->SetLocked(/*locked=*/false);
    const String url = player.GetURL();
    // A stream that has just buffered, and a track that was paused, go on with the length they had.
    const bool isFresh = lastState_ != static_cast<int>(PlayerState::Buffering) && !paused_;
    if (isFresh && !StartFresh(player, url))
        return false;
    const bool hasPicture = player.GetImageWidth() > 0 && player.GetImageHeight() > 0;
    if (hasPicture && (!UrlIsW(url) || !transition_) && page_ != nullptr)
        page_->SetPaneMode(4);
    if (duration_ > 0.0)
        secondsTimer_ = SetTimer(0, kSecondsTimer, kSecondsPeriodMs, &CPlayerPanel::OnTimer);
    if (bar_ != nullptr)
        bar_->SetEnabled(1);
    paused_ = false;
    PublishSign();
    return true;
}

bool CPlayerPanel::StartFresh(IMediaPlayer& player, const String& url)
{
    duration_ = player.GetDuration();
    TellLibrary(url, duration_);
    if (!(duration_ > 0.0) && !IsStreamURL(url)) {
        player.Stop();
        ResetSlider();
        return false;
    }
    if (bar_ != nullptr) {
        bar_->SetRange(0, static_cast<int>(duration_));
        bar_->SetPosition(0);
    }
    if (page_ != nullptr && page_->IsPaneVisible() != 0)
        page_->SetPaneMode(3);
    return true;
}

void CPlayerPanel::EnterPaused()
{
    ShowPlayButton();
    StopSeconds();
    paused_ = true;
}

void CPlayerPanel::EnterEnded()
{
    endCounter_ = 0;
    StopPlayback(0);
    ResetSlider();
    static_cast<void>(PostNext()); // Without a next one the player rests, stopped.
}

void CPlayerPanel::EnterBuffering()
{
    transition_ = false;
    StopBuffering(); // Two of them in a row would leave a timer that nobody kills.
    bufferingTimer_ = SetTimer(0, kBufferingTimer, kBufferingPeriodMs, &CPlayerPanel::OnTimer);
    StopSeconds();
}

void CPlayerPanel::EnterTransitioning(const String& url)
{
    posted_ = false;
    transition_ = true;
    if (UrlIsW(url))
        ShowState(1, static_cast<int>(PlayerState::Transitioning));
}

bool CPlayerPanel::EnterReady(const String& url)
{
    posted_ = false;
    if (UrlIsW(url)) {
        ShowState(0);
        return false;
    }
    if (!PathFileExistsW(url) && !PostNext() && IsBeyond())
        ShowPlayButton();
    return true;
}

void CPlayerPanel::EnterStopped()
{
    endCounter_ = 0;
    ShowState(0);
    paused_ = false;
    RemoveSign();
    if (IsBeyond() && !addressSet_)
        ShowPlayButton();
}

void CPlayerPanel::OnTimer(HWND /*window*/,
                           unsigned /*message*/,
                           TimerId timer,
                           std::uint32_t /*time*/)
{
    CPlayerPanel* panel = GetInstance();
    if (panel != nullptr && panel->secondsTimer_ == timer)
        panel->OnSecond();
    else if (panel != nullptr && panel->bufferingTimer_ == timer)
        panel->ShowState(1, static_cast<int>(PlayerState::Buffering));
    else
        KillTimer(0, timer); // Nobody's any more.
}

void CPlayerPanel::OnSecond()
{
    if (bar_ == nullptr)
        return;
    const int position = bar_->GetPosition();
    const int length = static_cast<int>(duration_);
    if (length < 2 || position < length)
        bar_->SetPosition(position + 1);
    else if (++endCounter_ >= kSecondsAtEnd)
        OnPlayerState(new ITuneHive_PlayerState(static_cast<int>(PlayerState::Ended)));
}

void CPlayerPanel::ShowState(int show, int state)
{
    if ((show == 0 && !stateLineShown_) || FindPlayer() == nullptr || controlPanel_ == nullptr ||
        statePanel_ == nullptr) {
        return;
    }
    int height = controlPanel_->GetHeight();
    if (show != 0) {
        const auto* language = common::CMutiLanSupport::GetInstance();
        String text;
        if (state == static_cast<int>(PlayerState::Buffering)) {
            text = common::FormatNumber(language->GetStringViaID(u"STRID_TUNEHIVE_STATE_BUFFER"),
                                        FindPlayer()->GetBufferingProgress());
        } else if (state == static_cast<int>(PlayerState::Transitioning)) {
            text = language->GetStringViaID(u"STRID_TUNEHIVE_STATE_TRANSITIONING");
        } else {
            return;
        }
        stateLabel_->SetText(text);
        height += statePanel_->GetHeight();
    }
    stateLineShown_ = show != 0;
    statePanel_->SetVisible(show != 0 ? 1 : 0);
    if (GetHeight() != height) {
        SetBounds(0, 0, 10, height);
        if (page_ != nullptr)
            page_->LayOut();
    } else {
        statePanel_->Refresh();
    }
}

void CPlayerPanel::ResetSlider()
{
    if (bar_ == nullptr)
        return;
    bar_->SetRange(0, 1);
    bar_->SetPosition(0);
    bar_->SetLocked(/*locked=*/true);
}

void CPlayerPanel::StopPlayback(int userStop)
{
    userStop_ = userStop;
    addressSet_ = false;
    OvertakePendingTask();
    if (IMediaPlayer* player = FindPlayer())
        player->Stop();
    StopSeconds();
    ShowState(0);
    StopBuffering();
    ShowPlayButton();
    ResetSlider();
    RemoveSign();
}

void CPlayerPanel::ShowPlayButton()
{
    if (playButton_ == nullptr || pauseButton_ == nullptr)
        return;
    playButton_->SetVisible(1);
    pauseButton_->SetVisible(0);
    AddAllSubTooltip();
    RePositionSubControls();
    Refresh();
}

void CPlayerPanel::ShowPauseButton()
{
    if (playButton_ == nullptr || pauseButton_ == nullptr)
        return;
    playButton_->SetVisible(0);
    pauseButton_->SetVisible(1);
    AddAllSubTooltip();
    RePositionSubControls();
    Refresh();
}

void CPlayerPanel::StopSeconds()
{
    if (secondsTimer_)
        KillTimer(0, *secondsTimer_);
    secondsTimer_.reset();
}

void CPlayerPanel::StopBuffering()
{
    if (bufferingTimer_)
        KillTimer(0, *bufferingTimer_);
    bufferingTimer_.reset();
}

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

void CPlayerPanel::TogglePane()
{
    if (page_ != nullptr)
        page_->SetPaneMode(page_->IsPaneVisible() != 0 ? 0 : 1);
}

void CPlayerPanel::PressPlay()
{
    userStop_ = 0;
    AttachPlayer();
    IMediaPlayer* player = FindPlayer();
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
    if (IMediaPlayer* player = FindPlayer())
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
    IMediaPlayer* player = FindPlayer();
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
    if (IMediaPlayer* player = FindPlayer())
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
        ShowPlayButton();
}

void CPlayerPanel::SetPlayerURL(const String& url)
{
    addressSet_ = true;
    OvertakePendingTask();
    if (IMediaPlayer* player = FindPlayer(url))
        player->SetURL(url, /*autoplay=*/1);
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
    const int count = list->GetPlayingCount();
    String candidate;
    bool isFound = false;
    list->BeginMoves();
    for (int tries = 0; tries < count && !isFound; ++tries) {
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
    case PlayMode::RepeatTrack:
        list.GetCurrentURL(url);
        if (!UrlIsW(url) && !PathFileExistsW(url))
            url.clear();
        break;
    case PlayMode::Sequence: list.GetNextURL(url, /*wrap=*/0); break;
    case PlayMode::RepeatGroup: list.GetNextURL(url, /*wrap=*/1); break;
    case PlayMode::Random: list.GetRandomURL(url); break;
    default: return candidate; // A mode of no meaning chooses nothing.
    }
    return url;
}

IPlayingList* CPlayerPanel::GetList() const
{
    return page_ != nullptr ? page_->GetPlayingList() : nullptr;
}

} // namespace kivo::tunehive
