#pragma once

#include "shell/contracts/control/MediaEngine.h"

#include <functional>
#include <memory>

struct mpv_handle;

namespace kivo {

// Draws the moving picture into memory, on a thread of its own that owns the core's one render
// context. A video without a context fails as a whole, so it exists before the first medium.
class RenderThread {
public:
    // Starts the thread and waits for its context. `onFrame` is called on that thread when a newer
    // picture waits, once until PaintFrame has run.
    RenderThread(mpv_handle* core, std::function<void()> onFrame);
    RenderThread(const RenderThread&) = delete;
    RenderThread& operator=(const RenderThread&) = delete;
    ~RenderThread(); // Frees the context, which waits for the core; the core is destroyed later.

    [[nodiscard]] bool HasContext() const;

    // Device pixels; hidden or empty: pictures are taken from the core and dropped.
    void SetSurface(int width, int height, bool visible);

    // The pictures of a medium are shown from here on, the one that the core has first, or no
    // longer; those before are forgotten.
    void SetOpen(bool open);

    // False: no picture of the open medium has been drawn yet.
    bool PaintFrame(const std::function<void(const VideoFrame&)>& paint);

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace kivo
