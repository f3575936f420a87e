#pragma once

#include "shell/contracts/ui/SkinPanel.h"

namespace kivo::host {

// The page of contacts while nobody is signed in: it says what it is for. Thread: user interface.
class ContactsPage : public ui::CSkinPanel {
public:
    ContactsPage();

    void Build(); // Once, below a parent.
    void CalculateBounds(const Rect& place) override;
};

} // namespace kivo::host
