#pragma once

#include "shell/contracts/base/Delegate.h"
#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace kivo {

// A picture of the engine's: 32 bits a pixel, bytes B G R and one unused, lines `stride` bytes
// apart.
struct VideoFrame {
    const std::uint8_t* bits = nullptr;
    int width = 0;
    int height = 0;
    int stride = 0;
};

// The playing control: what the player drives and what reports its states. One address at a time.
// Thread: user interface for all. No call waits for the core or the sound; a start looks once at
// the disk of its path. No call reports a state from inside itself.
class MediaEngine {
public:
    virtual ~MediaEngine() =
        default; // No state is reported afterwards. Waits at most 2 s for the core.

    // True at creation, and sticky: whether a set address starts by itself. False: it comes to
    // state 10.
    virtual void SetAutoStart(bool on) = 0;

    // A local path or an address. What is under way ends first. An address outside http, https,
    // mms, mmsh, mmst and rtsp, or a path that is no regular file, ends as a file that can't be
    // played.
    virtual void SetURL(const String& url) = 0;
    [[nodiscard]] virtual String GetURL() const = 0; // Empty before the first.

    virtual void Play() = 0; // Resumes when paused; starts the address anew when stopped or ended.
    virtual void Pause() = 0;
    virtual void Stop() = 0; // Allowed in any state.

    [[nodiscard]] virtual double
    GetDuration() const = 0; // Seconds; 0: a stream without one; 0.4: a file without one.
    [[nodiscard]] virtual String GetDurationString() const = 0; // "m:ss", from an hour "h:mm:ss".
    [[nodiscard]] virtual double GetPosition() const = 0;       // Seconds.
    [[nodiscard]] virtual String GetPositionString() const = 0;
    virtual void
    SetPosition(double seconds) = 0; // Clamped to 0 … duration - 0.2; nothing when it can't seek.

    [[nodiscard]] virtual int GetVolume() const = 0; // 0 to 100, also before anything plays.
    virtual void SetVolume(int volume) = 0;          // Clamped.
    [[nodiscard]] virtual bool GetMute() const = 0;
    virtual void SetMute(bool on) = 0;

    [[nodiscard]] virtual int
    GetPlayState() const = 0; // The state last reported; 0 before the first.
    [[nodiscard]] virtual int GetBufferingProgress() const = 0; // Percent.

    // "Title", "Author", "Album", "Duration", "FileSize", "Bitrate", "FileType", "SourceURL",
    // "Station"; any other name gives the empty string. At most 1024 characters, without control
    // characters.
    [[nodiscard]] virtual String GetItemInfo(const String& name) const = 0;

    // Pixels with the aspect applied; 0 without a moving picture (cover art is none).
    [[nodiscard]] virtual int GetImageWidth() const = 0;
    [[nodiscard]] virtual int GetImageHeight() const = 0;

    // The picture's surface in device pixels; hidden or empty: decoding goes on, nothing is drawn.
    virtual void SetSurface(int width, int height, bool visible) = 0;

    // Runs `paint` with the newest picture, under the engine's lock; false: there is none, paint
    // the ground instead.
    virtual bool PaintFrame(const std::function<void(const VideoFrame&)>& paint) = 0;

    // Called on the user-interface thread when a newer picture waits, once until PaintFrame has
    // run.
    virtual void SetFrameListener(const Delegate<>& listener) = 0;

    // Called with each state, one at a time, from the event loop: 1 stopped, 2 paused, 3 playing, 6
    // buffering, 7 waiting, 8 media ended, 9 transitioning, 10 ready.
    virtual void SetStateListener(const Delegate<int>& listener) = 0;
};

// Makes the engine, loading its module at the first call. Null: the module or its library is
// missing. Thread: user interface. A test sets a factory of its own; an empty one restores the
// module.
using MediaEngineFactory = std::function<std::unique_ptr<MediaEngine>()>;
[[nodiscard]] KIVO_API std::unique_ptr<MediaEngine> CreateMediaEngine();
KIVO_API void SetMediaEngineFactory(MediaEngineFactory factory);

} // namespace kivo
