#pragma once

#include "platform/engine/Core.h"
#include "platform/engine/RenderThread.h"

#include <atomic>
#include <cstdint>
#include <string>
#include <vector>

namespace kivo::test {

// The engine's way of showing a video, with the core at hand to be asked what it lost on it.
class VideoRun {
public:
    struct Count {
        std::int64_t shown = 0;   // Pictures that were painted.
        std::int64_t dropped = 0; // By the decoder or on the way to the surface.
        double seconds = 0;

        [[nodiscard]] double GetRate() const // Pictures a second.
        {
            return seconds > 0 ? static_cast<double>(shown) / seconds : 0;
        }
    };

    VideoRun(int width, int height);
    VideoRun(const VideoRun&) = delete;
    VideoRun& operator=(const VideoRun&) = delete;

    // Plays a file that make_media.sh made, from its first picture on. False: none came.
    bool Start(const std::string& name);

    // Paints each picture that comes for that long, as a window would.
    Count Watch(double seconds);

    void SetVisible(bool visible);

private:
    [[nodiscard]] std::int64_t GetDropped() const;

    int width_;
    int height_;
    CoreHandle core_; // Outlives the thread.
    std::atomic<bool> isWaiting_ = false;
    RenderThread thread_;
    std::vector<unsigned char> window_;
};

} // namespace kivo::test
