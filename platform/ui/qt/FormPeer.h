#pragma once

#include "platform/ui/Peers.h"

#include <memory>

namespace kivo::ui::qt {

// The peer of main forms, dialogs and pop-ups. Thread: user interface.
[[nodiscard]] std::unique_ptr<IFormPeer> MakeFormPeer(CSkinForm& form);

// Shows the menu and waits; see IPeerFactory::RunMenu.
[[nodiscard]] IMenu* RunMenu(CSkinForm* form, IMenu& menu, int x, int y);

} // namespace kivo::ui::qt
