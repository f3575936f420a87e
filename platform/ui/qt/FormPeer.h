#pragma once

#include "platform/ui/Peers.h"

#include <memory>

class QWidget;

namespace kivo::ui::qt {

// The peer of main forms, dialogs and pop-ups. Thread: user interface.
[[nodiscard]] std::unique_ptr<IFormPeer> MakeFormPeer(CSkinForm& form);

// Every form fetches colours, fonts and pictures anew and lays itself out.
void ResetForms();
[[nodiscard]] bool IsForm(const QWidget& widget);

// Shows the menu and waits; see IPeerFactory::RunMenu.
[[nodiscard]] IMenu* RunMenu(CSkinForm* form, IMenu& menu, int x, int y);

} // namespace kivo::ui::qt
