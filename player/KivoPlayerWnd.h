#pragma once

#include "player/IMediaPlayer.h"
#include "shell/contracts/control/MediaEngine.h"
#include "shell/contracts/control/VideoSurface.h"
#include "shell/contracts/framework/Windows.h"

#include <functional>
#include <memory>

namespace kivo::tunehive {

// The one player: the window that a video plays in, and the control behind it. The control comes
// into being at the first Init, so that a player that plays nothing loads nothing. Thread: user
// interface.
class CKivoPlayerWnd : public CWnd, public IMediaPlayer, private IVideoSurface {
public:
    // What was set on the control beyond playing.
    struct ControlState {
        String uiMode = u"Full";
        bool contextMenu = true;
        bool stretchToFit = false;
    };

    CKivoPlayerWnd() = default;

    int Init(CWnd* parent) override;
    void Release() override;
    [[nodiscard]] int IsInited() override { return isInited_ ? 1 : 0; }
    [[nodiscard]] bool IsCreated() override { return control_ != nullptr; }
    [[nodiscard]] String GetURL() override;
    int SetURL(String url, int autoplay) override;
    int Play() override;
    int Stop() override;
    int Pause() override;
    [[nodiscard]] double GetDuration() override;
    [[nodiscard]] String GetDurationString() override;
    [[nodiscard]] int GetVolume() override;
    int SetVolume(int volume) override;
    [[nodiscard]] bool GetMute() override;
    int SetMute(bool on) override;
    [[nodiscard]] double GetPosition() override;
    [[nodiscard]] String GetPositionString() override;
    int SetPosition(double seconds) override;
    [[nodiscard]] int GetPlayState() override;
    [[nodiscard]] int GetBufferingProgress() override;
    void SetUIMode(int mode) override;
    [[nodiscard]] bool GetFullScreen() override { return isFullScreen_; }
    void SetFullScreen(bool on) override;
    void EnableContextMenu(bool on) override;
    [[nodiscard]] String GetItemInfo(String name) override;
    [[nodiscard]] int GetImageWidth() override;
    [[nodiscard]] int GetImageHeight() override;
    void SetStretchToFit(bool on) override;
    [[nodiscard]] bool CanPlay(String url) override;
    void SetBounds(int left, int top, int right, int bottom) override;
    [[nodiscard]] int GetPlayerId() override;
    void SetManager(CMediaPlayerManager* manager) override { manager_ = manager; }
    void Show(int command) override { ShowWindow(command); }

    // The surface follows. Ends the control too.
    void DestroyWindow() override;
    void ShowWindow(int command) override;
    void MoveWindow(const Rect& bounds) override;

    [[nodiscard]] const ControlState& GetControlState() const { return controlState_; }

protected:
    ~CKivoPlayerWnd() override;

private:
    void OnSurfaceChanged(int width, int height, bool visible) override;
    bool PaintFrame(const std::function<void(const VideoFrame&)>& paint) override;
    [[nodiscard]] bool IsVideoOpen() const override;
    void OnPress() override;
    void OnDoubleClick() override;

    void OnPlayStateChange(int state);
    void OnFrame();
    void UpdateSurface();

    std::unique_ptr<MediaEngine> control_;
    bool isInited_ = false;
    CMediaPlayerManager* manager_ = nullptr; // Borrowed.

    ControlState controlState_;
    bool isFullScreen_ = false;
    bool wasFullScreenAtPress_ = false;
    std::unique_ptr<VideoSurfacePeer> peer_; // Null without a window system. Before the control.
};

} // namespace kivo::tunehive
