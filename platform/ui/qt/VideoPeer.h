#pragma once

#include "shell/contracts/control/VideoSurface.h"

#include <memory>

namespace kivo::ui::qt {

// Draws a video surface inside `parent`; null when that has no widget. Thread: user interface.
[[nodiscard]] std::unique_ptr<VideoSurfacePeer> MakeVideoPeer(IVideoSurface& surface, CWnd* parent);

} // namespace kivo::ui::qt
