#pragma once

#include "shell/contracts/base/String.h"
#include "shell/contracts/framework/Timers.h"
#include "shell/contracts/ui/SkinPanel.h"

#include <optional>

namespace kivo::ui {
class CSkinLabel;
}

namespace kivo::tunehive {

class CMediaSliderBar;
class IMediaPlayer;
class IPage;
class IPlayingList;
class ITuneHive_AsyncCallbackParam;

// The strip of buttons and the position bar, and the state machine of the whole player: the only
// listener of CMediaPlayerManager. It counts the seconds itself, starts the next track when one
// ends, and puts the state sign up and takes it down. Thread: user interface.
class CPlayerPanel : public ui::CSkinPanel {
public:
    explicit CPlayerPanel(IPage* page); // Borrowed; may be null.
    ~CPlayerPanel() override;
    void Release() override;

    // The panel that has built itself; null before. Timers reach their panel through it.
    [[nodiscard]] static CPlayerPanel* GetInstance();

    void Build(CWnd* parent); // Without a node in the build file nothing is built.
    int OnBuildControlAfter() override;

    void AttachPlayer(); // From here on it hears the player's states. Once.

    // Stops, whatever plays, and shows it. 1: by the user's stop button.
    void StopPlayback(int userStop);

    [[nodiscard]] int GetUserStopMark() const { return userStop_; }
    [[nodiscard]] int GetPausedFlag() const { return paused_ ? 1 : 0; }
    void ClearPausedFlag() { paused_ = false; }

    // The argument is an ITuneHive_PlayerState, which is released in any case.
    void OnPlayerState(ITuneHive_AsyncCallbackParam* param);

    // The buttons of what is open stay pressed in.
    void ShowPaneOpen(bool open);
    void ShowVolumeOpen(bool open);

    void PublishSign(); // Shows contacts what plays, unless it is shown or not allowed.
    void RemoveSign();  // Takes a published sign down.
    [[nodiscard]] bool IsSignPublished() const { return published_; }

    // Buttons pressed by other hands: keyboard, media keys, the remote.
    void PressPlay();
    void PressPause();
    void PressStop();
    void PressNext();
    void PressPrevious();
    void SeekTo(double seconds);

    // No address waits to be set by a posted task.
    [[nodiscard]] bool IsAtRest() const { return !posted_; }

private:
    // True: the state becomes the last state.
    [[nodiscard]] bool EnterState(int state, IMediaPlayer& player);
    [[nodiscard]] bool EnterPlaying(IMediaPlayer& player);
    [[nodiscard]] bool EnterReady(const String& url);
    void EnterPaused();
    void EnterEnded();
    void EnterBuffering();
    void EnterTransitioning(const String& url);
    void EnterStopped();
    [[nodiscard]] bool StartFresh(IMediaPlayer& player, const String& url);

    void OnControlEvent(ui::CSkinObject* sender, void* data);
    void OnSettingChanged(const String& key, int reserved1, int reserved2, int reserved3);
    static void OnTimer(HWND window, unsigned message, TimerId timer, std::uint32_t time);
    void OnSecond();

    void ToggleVolForm();
    void TurnVolume(int angleDelta);
    void TogglePane();
    void Step(bool forward);
    void PlayWithoutMark(IPlayingList& list);
    void SetPlayerURL(const String& url);
    [[nodiscard]] bool PostNext(); // False: there is none.
    [[nodiscard]] String ChooseAutoNext();
    [[nodiscard]] String PickByMode(int mode, IPlayingList& list, const String& candidate) const;

    void ShowState(int show, int state = 0);
    void ShowPlayButton(bool shown); // Or the pause button in its place.
    void ShowStopButton();           // As it can be used: with something open, or on its way to be.
    void ResetSlider();
    void StopSeconds();
    void StopBuffering();
    void EndWait();
    void OvertakePendingTask();
    [[nodiscard]] IPlayingList* GetList() const;
    [[nodiscard]] String MakeSignTitle(const String& url) const;

    CWnd* parent_ = nullptr;
    IPage* page_;
    ui::CSkinObject* playButton_ = nullptr;
    ui::CSkinObject* pauseButton_ = nullptr;
    ui::CSkinObject* prevButton_ = nullptr;
    ui::CSkinObject* nextButton_ = nullptr;
    ui::CSkinObject* stopButton_ = nullptr;
    ui::CSkinObject* volButton_ = nullptr;
    ui::CSkinObject* paneButton_ = nullptr;
    ui::CSkinObject* popButton_ = nullptr;
    ui::CSkinObject* stateLabel_ = nullptr;
    ui::CSkinObject* controlPanel_ = nullptr;
    ui::CSkinObject* statePanel_ = nullptr;
    CMediaSliderBar* bar_ = nullptr;

    std::optional<TimerId> secondsTimer_;
    std::optional<TimerId> bufferingTimer_;
    double duration_ = 0.0; // Seconds, of the track last opened.
    int userStop_ = 0;
    int lastState_ = 0;
    int wheelRest_ = 0;  // Of a turn over the volume button that made no whole step.
    int endCounter_ = 0; // Seconds that the position has stood at the end.
    bool attached_ = false;
    bool paused_ = false;
    bool stateLineShown_ = false;
    bool transition_ = true; // From transitioning until buffering.
    bool published_ = false;
    bool addressSet_ = false; // An address was set or posted since the last stop.
    bool posted_ = false;     // An address is on its way to the player.
};

} // namespace kivo::tunehive
