#pragma once

#include "player/MediaPlayerManager.h"
#include "player/MediaSliderBar.h"
#include "player/PlayerPanel.h"
#include "shell/contracts/base/Released.h"
#include "tests/support/FakeHost.h"
#include "tests/support/FakePage.h"
#include "tests/support/ScriptedPlayer.h"
#include "tests/support/TempFolder.h"

#include <cstdint>
#include <string>

namespace kivo::test {

// The player's panel over a scripted player, listening, with a clock that the test turns. The page
// is a list that the test writes. Mode 2, without what goes beyond.
class BuiltPanel {
public:
    BuiltPanel();
    BuiltPanel(const BuiltPanel&) = delete;
    BuiltPanel& operator=(const BuiltPanel&) = delete;
    ~BuiltPanel();

    void Report(int state); // As the control does.
    void Press(const char16_t* id) const;
    void Pass(int milliseconds); // One turn of the timers.
    void PassSeconds(int seconds);

    // The player opens its address and reports as a file of that length does.
    void Start(double seconds);
    void PlayRow(int row, double seconds);

    [[nodiscard]] bool IsShown(const char16_t* id) const;
    [[nodiscard]] tunehive::CMediaSliderBar& Bar() const;
    [[nodiscard]] String GetStateLine() const; // Empty: it isn't shown.

    FakeHost host;
    FakePage page;
    ScriptedPlayer player;
    tunehive::CMediaPlayerManager& manager = tunehive::CMediaPlayerManager::GetInstance();
    Released<tunehive::CPlayerPanel> panel;

private:
    std::int64_t now_ = 0;
};

// One whose page lists three tracks that are there.
class TracksPanel : public BuiltPanel {
public:
    TracksPanel();

    String WriteTrack(const std::string& name) const; // Gives its path.

    // What player and page were told since the last time, an address by its row: "stop set 1", with
    // the last mode of the pane: "set 3 pane 2".
    [[nodiscard]] std::string TakeCalls();

    TempFolder folder;
};

} // namespace kivo::test
