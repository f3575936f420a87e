#pragma once

#include "platform/ui/Peers.h"

#include <memory>

namespace kivo::ui::qt {

// The peers of what the user presses, types into and chooses from. Thread: user interface.
[[nodiscard]] std::unique_ptr<IPeer> MakeButtonPeer(CSkinButton& button);
[[nodiscard]] std::unique_ptr<IWindowPeer> MakeEditPeer(CSWColorEdit& edit);
[[nodiscard]] std::unique_ptr<IWindowPeer> MakeComboxPeer(CSkinCombox& combox);
[[nodiscard]] std::unique_ptr<IPeer> MakeSplitterPeer(CSkinSplitter& splitter);
[[nodiscard]] std::unique_ptr<IWindowPeer> MakeSliderPeer(CSkinSlider& slider);

} // namespace kivo::ui::qt
