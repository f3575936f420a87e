#pragma once

#include <functional>
#include <memory>

namespace kivo {
class ITuneHiveRemote;
}

namespace kivo::host {

// The player's keys while a window of the program is active: Space plays and pauses unless a
// focused control or a search under way wants it; Ctrl+Left and Ctrl+Right go to the previous and
// the next track, F11 to full screen, and the keyboard's media keys do what they say. None of them
// works in a field that is edited, in a menu or below a modal form. Thread: user interface.
class PlayerKeys {
public:
    // `remote` gives the player at each key; null: there is none.
    explicit PlayerKeys(std::function<ITuneHiveRemote*()> remote);
    PlayerKeys(const PlayerKeys&) = delete;
    PlayerKeys& operator=(const PlayerKeys&) = delete;
    ~PlayerKeys();

private:
    class Filter;
    std::unique_ptr<Filter> filter_;
};

} // namespace kivo::host
