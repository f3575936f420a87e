#pragma once

#include "platform/ui/Peers.h"

#include <memory>

namespace kivo::ui::qt {

// The peer of a browser, which loads the browser's module at its first use. Null: the module is
// missing, or a browser can't run here. Thread: user interface.
[[nodiscard]] std::unique_ptr<IBrowserPeer> MakeBrowserPeer(CSkinWebBrowser& browser);

} // namespace kivo::ui::qt
