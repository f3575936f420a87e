#include "player/PlayerPanel.h"

#include "medialib/IMediaLibManager.h"
#include "player/IMediaPlayer.h"
#include "player/IPage.h"
#include "player/MediaPlayerManager.h"
#include "player/MediaSliderBar.h"
#include "player/PlayerState.h"
#include "player/PlayTurn.h"
#include "shell/base/TuneHiveEvent.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Paths.h"
#include "shell/contracts/host/KivoApi.h"
#include "shell/contracts/ui/SkinButton.h"
#include "shell/contracts/ui/SkinManager.h"

namespace kivo::tunehive {

namespace {

constexpr TimerId kSecondsTimer = 3432;
constexpr TimerId kBufferingTimer = 3433;
constexpr unsigned kSecondsPeriodMs = 1000;
constexpr unsigned kBufferingPeriodMs = 100;
constexpr int kSecondsAtEnd = 3; // How long the control's own report may follow the counted end.

CPlayerPanel* builtPanel = nullptr;

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

    if (auto* button = dynamic_cast<ui::CSkinButton*>(volButton_))
        button->SetWheelListener(Delegate<int>(this, &CPlayerPanel::TurnVolume));

    bar_ = new CMediaSliderBar;
    bar_->SetObjectID(u"ProcessBar");
    bar_->SetAccessibleName(
        common::CMutiLanSupport::GetInstance()->GetStringViaID(u"STRID_TUNEHIVE_NAME_POSITION"));
    controlPanel_->RegisterControl(bar_);
    bar_->SetSkinName(u"tunehive_player");
    bar_->SetAnchorStyle(ui::anchor::kTop);
    bar_->SetBounds(0, 0, 10, 6);
    bar_->Create(parent_);
    bar_->SetRange(0, 100);
    bar_->SetPosition(0);
    ShowStopButton();
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
    IMediaPlayer* player = CMediaPlayerManager::FindPlayer();
    if (param == nullptr || player == nullptr)
        return;
    const int state = static_cast<ITuneHive_PlayerState*>(param)->state;
    if (EnterState(state, *player))
        lastState_ = state;
    ShowStopButton();
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
    ShowPlayButton(/*shown=*/false);
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
        addressSet_ = false;
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
    ShowPlayButton(/*shown=*/true);
    StopSeconds();
    EndWait();
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
        ShowPlayButton(/*shown=*/true);
    return true;
}

void CPlayerPanel::EnterStopped()
{
    endCounter_ = 0;
    EndWait();
    ShowState(0);
    paused_ = false;
    RemoveSign();
    if (IsBeyond() && !addressSet_)
        ShowPlayButton(/*shown=*/true);
}

// Stopped or paused in mid-buffering nobody waits any more, though no state will say so.
void CPlayerPanel::EndWait()
{
    if (!IsBeyond() || !bufferingTimer_)
        return;
    StopBuffering();
    ShowState(0);
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
    IMediaPlayer* player = CMediaPlayerManager::FindPlayer();
    if ((show == 0 && !stateLineShown_) || player == nullptr || controlPanel_ == nullptr ||
        statePanel_ == nullptr) {
        return;
    }
    int height = controlPanel_->GetHeight();
    if (show != 0) {
        const auto* language = common::CMutiLanSupport::GetInstance();
        String text;
        if (state == static_cast<int>(PlayerState::Buffering)) {
            text = common::FormatNumber(language->GetStringViaID(u"STRID_TUNEHIVE_STATE_BUFFER"),
                                        player->GetBufferingProgress());
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
    if (IMediaPlayer* player = CMediaPlayerManager::FindPlayer())
        player->Stop();
    StopSeconds();
    ShowState(0);
    StopBuffering();
    ShowPlayButton(/*shown=*/true);
    ResetSlider();
    RemoveSign();
    ShowStopButton();
}

void CPlayerPanel::ShowPlayButton(bool shown)
{
    if (playButton_ == nullptr || pauseButton_ == nullptr)
        return;
    playButton_->SetVisible(shown ? 1 : 0);
    pauseButton_->SetVisible(shown ? 0 : 1);
    AddAllSubTooltip();
    RePositionSubControls();
    Refresh();
}

void CPlayerPanel::ShowStopButton()
{
    if (stopButton_ == nullptr || !IsBeyond())
        return;
    bool isOpen = addressSet_;
    for (const PlayerState state : {PlayerState::Playing,
                                    PlayerState::Paused,
                                    PlayerState::Buffering,
                                    PlayerState::Transitioning})
        isOpen = isOpen || lastState_ == static_cast<int>(state);
    stopButton_->SetEnabled(isOpen ? 1 : 0);
}

void CPlayerPanel::ShowPaneOpen(bool open)
{
    if (auto* button = dynamic_cast<ui::CSkinButton*>(paneButton_); button != nullptr && IsBeyond())
        button->SetChecked(open ? 1 : 0);
}

void CPlayerPanel::ShowVolumeOpen(bool open)
{
    if (auto* button = dynamic_cast<ui::CSkinButton*>(volButton_); button != nullptr && IsBeyond())
        button->SetChecked(open ? 1 : 0);
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

IPlayingList* CPlayerPanel::GetList() const
{
    return page_ != nullptr ? page_->GetPlayingList() : nullptr;
}

} // namespace kivo::tunehive
