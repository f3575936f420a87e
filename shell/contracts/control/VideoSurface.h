#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/control/MediaEngine.h"
#include "shell/contracts/framework/Windows.h"

#include <functional>
#include <memory>

namespace kivo {

// The rectangle that a video plays in, as its peer sees it: what to draw, and where input goes.
// Thread: user interface.
class IVideoSurface {
public:
    // The peer's size in device pixels, and whether any of it can be seen. Also in full screen.
    virtual void OnSurfaceChanged(int width, int height, bool visible) = 0;

    // Runs `paint` with the newest picture, under the engine's lock. False: there is none; paint
    // black while a video is open, else the player's own picture.
    virtual bool PaintFrame(const std::function<void(const VideoFrame&)>& paint) = 0;
    [[nodiscard]] virtual bool IsVideoOpen() const = 0;

    // The left button over the surface. A double click enters full screen, unless it was on already
    // at the press; it never leaves it, which is the input hooks' matter.
    virtual void OnPress() = 0;
    virtual void OnDoubleClick() = 0;

protected:
    ~IVideoSurface() = default;
};

// What draws a surface. Thread: user interface.
class VideoSurfacePeer {
public:
    virtual ~VideoSurfacePeer() = default; // Its window is gone; the surface isn't touched.

    virtual void MoveWindow(const Rect& bounds) = 0; // In the parent, device-independent pixels.
    virtual void ShowWindow(bool visible) = 0;
    virtual void
    SetFullScreen(bool on) = 0; // Over the whole screen, whatever bounds and parent say.
    virtual void Update() = 0;  // A newer picture waits, or the ground changed: paint soon.
};

// Makes the peer of a surface inside `parent` (may be null), hidden and without a size. Null: there
// is no window system; everything else works. Both are borrowed; the surface outlives the peer, the
// parent need not, and then the peer draws nothing any more. Thread: user interface.
using VideoSurfacePeerFactory =
    std::function<std::unique_ptr<VideoSurfacePeer>(IVideoSurface& surface, CWnd* parent)>;
[[nodiscard]] KIVO_API std::unique_ptr<VideoSurfacePeer>
CreateVideoSurfacePeer(IVideoSurface& surface, CWnd* parent);
KIVO_API void SetVideoSurfacePeerFactory(VideoSurfacePeerFactory factory); // Empty: no peers.

} // namespace kivo
