#pragma once

#include "platform/ui/Peers.h"

#include <memory>

namespace kivo::ui::qt {

// The peer of a list or a tree. Thread: user interface.
[[nodiscard]] std::unique_ptr<IListPeer> MakeListPeer(CSkinList& list);

} // namespace kivo::ui::qt
