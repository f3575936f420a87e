#include "player/KivoPlayerWnd.h"

#include "player/FullScreenHooks.h"
#include "player/MediaPlayerManager.h"
#include "player/PlayerState.h"
#include "player/PlayTurn.h"
#include "shell/base/Settings.h"

#include <utility>

namespace kivo::tunehive {

namespace {

constexpr int kPlayerId = 55'442;
constexpr int kDone = 0;
constexpr int kNotDone = 1;

} // namespace

int CKivoPlayerWnd::Init(CWnd* parent)
{
    if (isInited_)
        return 1;
    control_ = CreateMediaEngine();
    if (!control_)
        return 0;
    control_->SetStateListener(Delegate<int>(this, &CKivoPlayerWnd::OnPlayStateChange));
    control_->SetFrameListener(Delegate<>(this, &CKivoPlayerWnd::OnFrame));
    CreateHandle();
    peer_ = CreateVideoSurfacePeer(*this, parent);
    UpdateSurface();
    isInited_ = true;
    SetFullScreenPlayer(this);
    EnableContextMenu(/*on=*/false);
    SetUIMode(2);
    return 1;
}

void CKivoPlayerWnd::Release()
{
    if (IsWindow())
        DestroyWindow();
    delete this;
}

CKivoPlayerWnd::~CKivoPlayerWnd()
{
    ForgetFullScreenPlayer(this);
}

void CKivoPlayerWnd::DestroyWindow()
{
    SetFullScreen(/*on=*/false);
    peer_.reset();
    control_.reset();
    isInited_ = false;
    CWnd::DestroyWindow();
}

String CKivoPlayerWnd::GetURL()
{
    return control_ ? control_->GetURL() : String();
}

int CKivoPlayerWnd::SetURL(String url, int autoplay)
{
    if (!control_)
        return kNotDone;
    NextPlayTurn();
    if (autoplay == 0)
        control_->SetAutoStart(/*on=*/false);
    control_->SetURL(url);
    SetStartUnderWay(/*underWay=*/true);
    return kDone;
}

int CKivoPlayerWnd::Play()
{
    if (!control_)
        return kNotDone;
    control_->Play();
    return kDone;
}

int CKivoPlayerWnd::Stop()
{
    if (!control_)
        return kNotDone;
    NextPlayTurn();
    SetStartUnderWay(/*underWay=*/false);
    control_->Stop();
    return kDone;
}

int CKivoPlayerWnd::Pause()
{
    if (!control_)
        return kNotDone;
    control_->Pause();
    return kDone;
}

double CKivoPlayerWnd::GetDuration()
{
    return control_ ? control_->GetDuration() : -1.0;
}

String CKivoPlayerWnd::GetDurationString()
{
    return control_ ? control_->GetDurationString() : String();
}

int CKivoPlayerWnd::GetVolume()
{
    return control_ ? control_->GetVolume() : -1;
}

int CKivoPlayerWnd::SetVolume(int volume)
{
    if (!control_)
        return kNotDone;
    control_->SetVolume(volume);
    SetRememberedVolume(volume);
    return kDone;
}

bool CKivoPlayerWnd::GetMute()
{
    return control_ && control_->GetMute();
}

int CKivoPlayerWnd::SetMute(bool on)
{
    if (!control_)
        return kNotDone;
    control_->SetMute(on);
    return kDone;
}

double CKivoPlayerWnd::GetPosition()
{
    return control_ ? control_->GetPosition() : -1.0;
}

String CKivoPlayerWnd::GetPositionString()
{
    return control_ ? control_->GetPositionString() : String();
}

int CKivoPlayerWnd::SetPosition(double seconds)
{
    if (!control_)
        return kNotDone;
    control_->SetPosition(seconds);
    return kDone;
}

int CKivoPlayerWnd::GetPlayState()
{
    return control_ ? control_->GetPlayState() : -1;
}

int CKivoPlayerWnd::GetBufferingProgress()
{
    return control_ ? control_->GetBufferingProgress() : 0;
}

void CKivoPlayerWnd::SetUIMode(int mode)
{
    switch (mode) {
    case 1: controlState_.uiMode = u"Mini"; break;
    case 2: controlState_.uiMode = u"None"; break;
    default: controlState_.uiMode = u"Full"; break;
    }
}

void CKivoPlayerWnd::SetFullScreen(bool on)
{
    if (!control_)
        return;
    isFullScreen_ = on;
    if (peer_)
        peer_->SetFullScreen(on);
    SetFullScreenHooks(on);
}

void CKivoPlayerWnd::EnableContextMenu(bool on)
{
    if (control_)
        controlState_.contextMenu = on;
}

String CKivoPlayerWnd::GetItemInfo(String name)
{
    return control_ ? control_->GetItemInfo(name) : String();
}

int CKivoPlayerWnd::GetImageWidth()
{
    return control_ ? control_->GetImageWidth() : 0;
}

int CKivoPlayerWnd::GetImageHeight()
{
    return control_ ? control_->GetImageHeight() : 0;
}

void CKivoPlayerWnd::SetStretchToFit(bool on)
{
    controlState_.stretchToFit = on;
}

bool CKivoPlayerWnd::CanPlay(String /*url*/)
{
    return true;
}

void CKivoPlayerWnd::SetBounds(int left, int top, int right, int bottom)
{
    MoveWindow({0, 0, right - left, bottom - top});
}

int CKivoPlayerWnd::GetPlayerId()
{
    return kPlayerId;
}

void CKivoPlayerWnd::ShowWindow(int command)
{
    CWnd::ShowWindow(command);
    UpdateSurface();
}

void CKivoPlayerWnd::MoveWindow(const Rect& bounds)
{
    CWnd::MoveWindow(bounds);
    UpdateSurface();
}

// A peer knows the screen's density and tells by itself what can be seen.
void CKivoPlayerWnd::UpdateSurface()
{
    const Rect bounds = GetWindowRect();
    if (peer_) {
        peer_->MoveWindow(bounds);
        peer_->ShowWindow(IsWindowVisible());
    } else {
        OnSurfaceChanged(bounds.right - bounds.left, bounds.bottom - bounds.top, IsWindowVisible());
    }
}

void CKivoPlayerWnd::OnSurfaceChanged(int width, int height, bool visible)
{
    if (control_)
        control_->SetSurface(width, height, visible);
}

bool CKivoPlayerWnd::PaintFrame(const std::function<void(const VideoFrame&)>& paint)
{
    return control_ && control_->PaintFrame(paint);
}

bool CKivoPlayerWnd::IsVideoOpen() const
{
    if (!control_ || control_->GetImageWidth() == 0)
        return false;
    switch (static_cast<PlayerState>(control_->GetPlayState())) {
    case PlayerState::Paused:
    case PlayerState::Playing:
    case PlayerState::Buffering: return true;
    default: return false;
    }
}

void CKivoPlayerWnd::OnPress()
{
    wasFullScreenAtPress_ = isFullScreen_;
}

void CKivoPlayerWnd::OnDoubleClick()
{
    if (!wasFullScreenAtPress_)
        SetFullScreen(/*on=*/true);
}

void CKivoPlayerWnd::OnPlayStateChange(int state)
{
    SetStartUnderWay(/*underWay=*/false);
    if (peer_)
        peer_->Update(); // The ground may be another one now.
    if (manager_ != nullptr)
        manager_->NotifyState(state);
}

void CKivoPlayerWnd::OnFrame()
{
    if (peer_)
        peer_->Update();
}

} // namespace kivo::tunehive
