#pragma once

#include "player/MediaSliderBar.h"
#include "player/PlayerPanel.h"
#include "shell/contracts/base/Released.h"
#include "tests/support/FakeHost.h"
#include "tests/support/FakePage.h"

namespace kivo::test {

// A built player's panel as a user sees it, over whatever player there is. The page is a list that
// a test writes.
class PanelView {
public:
    PanelView(const PanelView&) = delete;
    PanelView& operator=(const PanelView&) = delete;

    void Press(const char16_t* button) const;

    [[nodiscard]] bool IsShown(const char16_t* id) const;
    [[nodiscard]] tunehive::CMediaSliderBar& Bar() const;
    [[nodiscard]] String GetStateLine() const; // Empty: it isn't shown.

    FakeHost host;
    FakePage page;
    Released<tunehive::CPlayerPanel> panel;

protected:
    PanelView();
    ~PanelView(); // After the players.

    void Build(); // From the build file, which is there; it hears the states from here on.
};

} // namespace kivo::test
