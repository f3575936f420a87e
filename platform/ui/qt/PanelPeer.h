#pragma once

#include "platform/ui/Peers.h"

#include <memory>

namespace kivo::ui::qt {

// The peers of what only shows something. Thread: user interface.
[[nodiscard]] std::unique_ptr<IPeer> MakePanelPeer(CSkinObject& panel);
[[nodiscard]] std::unique_ptr<IWindowPeer> MakeWindowPeer(CSkinWnd& window);
[[nodiscard]] std::unique_ptr<IPeer> MakeLabelPeer(CSkinLabel& label);
[[nodiscard]] std::unique_ptr<IPeer> MakePhotoPeer(CSkinPhoto& photo);

} // namespace kivo::ui::qt
