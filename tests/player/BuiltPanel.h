#pragma once

#include "player/MediaPlayerManager.h"
#include "tests/player/PanelView.h"
#include "tests/support/ScriptedPlayer.h"
#include "tests/support/TempFolder.h"

#include <cstdint>
#include <string>

namespace kivo::test {

// The panel over a scripted player, with a clock that the test turns. Mode 2, without what goes
// beyond.
class BuiltPanel : public PanelView {
public:
    BuiltPanel();
    ~BuiltPanel();

    void Report(int state);      // As the control does.
    void Pass(int milliseconds); // One turn of the timers.
    void PassSeconds(int seconds);

    // The player opens its address and reports as a file of that length does.
    void Start(double seconds);
    void PlayRow(int row, double seconds);

    ScriptedPlayer player;
    tunehive::CMediaPlayerManager& manager = tunehive::CMediaPlayerManager::GetInstance();

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
