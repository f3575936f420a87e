#pragma once

#include "shell/contracts/base/String.h"

namespace kivo {
class CWnd;
}

namespace kivo::tunehive {

class CMediaPlayerManager;

// A player: it plays one URL and knows nothing of groups or tracks. A status is 0 for done and 1
// for not done. "Else" is the result without a control, when nothing is touched; the control exists
// from the first successful Init on. Thread: user interface.
class IMediaPlayer {
public:
    // Makes the control, once; `parent` (borrowed, may be null) holds its surface. Non-zero: it is
    // there. 0: this machine has none; may be tried again.
    virtual int Init(CWnd* parent) = 0;
    virtual void Release() = 0; // Ends the surface and the player itself.

    [[nodiscard]] virtual int IsInited() = 0;   // 1 after a successful Init.
    [[nodiscard]] virtual bool IsCreated() = 0; // The control exists.

    [[nodiscard]] virtual String GetURL() = 0; // The URL last set. Else empty.

    // Opens a local path or an address. With `autoplay` 0 the control comes to rest ready instead
    // of starting, now and at every later URL. A status; else 1. Not from inside a state callback,
    // which must return first: post a CSetURLTask.
    virtual int SetURL(String url, int autoplay) = 0;

    virtual int Play() = 0;  // Resumes, or starts the URL anew. A status; else 1.
    virtual int Stop() = 0;  // A status; else 1.
    virtual int Pause() = 0; // A status; else 1.

    [[nodiscard]] virtual double GetDuration() = 0; // Seconds; 0: a stream without one. Else -1.0.
    [[nodiscard]] virtual String GetDurationString() = 0; // "m:ss" or "h:mm:ss". Else empty.

    [[nodiscard]] virtual int GetVolume() = 0; // 0 to 100. Else -1.
    virtual int SetVolume(int volume) = 0; // Also becomes the remembered volume. A status; else 1.
    [[nodiscard]] virtual bool GetMute() = 0; // Else false.
    virtual int SetMute(bool on) = 0;         // A status; else 1.

    [[nodiscard]] virtual double GetPosition() = 0;       // Seconds from the start. Else -1.0.
    [[nodiscard]] virtual String GetPositionString() = 0; // Else empty.
    virtual int SetPosition(double seconds) = 0;          // A status; else 1.

    [[nodiscard]] virtual int GetPlayState() = 0; // The state last reported, 0 at first. Else -1.
    [[nodiscard]] virtual int GetBufferingProgress() = 0; // Percent. Else 0.

    // The control's own buttons: 0 "Full", 1 "Mini", 2 "None", any other "Full". The control must
    // exist.
    virtual void SetUIMode(int mode) = 0;
    [[nodiscard]] virtual bool GetFullScreen() = 0; // Else false.

    // Enters or leaves full screen. While it is on, Escape and a double click leave it, and reach
    // whoever else waits for them. Else nothing.
    virtual void SetFullScreen(bool on) = 0;
    virtual void EnableContextMenu(bool on) = 0; // Else nothing.

    // What the medium tells under that name, see MediaEngine::GetItemInfo. Else empty.
    [[nodiscard]] virtual String GetItemInfo(String name) = 0;

    [[nodiscard]] virtual int GetImageWidth() = 0;  // Pixels; 0: no moving picture. Else 0.
    [[nodiscard]] virtual int GetImageHeight() = 0; // Pixels; 0: no moving picture. Else 0.
    virtual void SetStretchToFit(bool on) = 0;      // The control must exist.

    [[nodiscard]] virtual bool CanPlay(String url) = 0; // Whether this player serves the URL.

    // Moves the surface to the corner of its parent, with the size of the rectangle.
    virtual void SetBounds(int left, int top, int right, int bottom) = 0;

    [[nodiscard]] virtual int GetPlayerId() = 0; // Unique among the players.

    // Who hears of the states; borrowed, may be null.
    virtual void SetManager(CMediaPlayerManager* manager) = 0;

    virtual void Show(int command) = 0; // Platform show command for the surface: 0 hides, 1 shows.

protected:
    ~IMediaPlayer() = default; // Not public: a player is freed through Release.
};

} // namespace kivo::tunehive
