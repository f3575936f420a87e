#pragma once

#include "medialib/MediaInfo.h"
#include "player/IPlayingList.h"
#include "shell/contracts/base/String.h"

namespace kivo {
class IPlugin;
}

namespace kivo::tunehive {

// The page as the player's panels see it: the road to what lies outside the player.
// Thread: user interface.
class IPage {
public:
    // The tracks that play; null before they exist and after the page has been closed.
    [[nodiscard]] virtual IPlayingList* GetPlayingList() = 0;

    // The stored record of the current track: key 0 path, key 1 name. 0: nothing is current.
    virtual int GetCurrentTrackInfo(MediaInfo& info) = 0;

    // Arranges the lower pane: 0 closed, 1 as it was, 2 picture, 3 sound, 4 video, above: open.
    // Non-zero: the pane is visible afterwards.
    virtual int SetPaneMode(int mode) = 0;
    [[nodiscard]] virtual int IsPaneVisible() = 0;

    // The volume form: 0 hides, 1 shows, 2 toggles; x and y on the screen.
    virtual void ShowVolForm(int action, int x, int y) = 0;
    virtual void ForgetVolForm() = 0;            // The form is about to release itself.
    virtual void OnVolFormShown(bool shown) = 0; // It has opened or closed.

    [[nodiscard]] virtual int GetPlayState() = 0; // The current player's state; 0 without one.

    // Plays the first selected track of any group, through "playing". 0: none is selected.
    virtual int PlaySelectedElsewhere() = 0;
    virtual void ShowAddMenu() = 0; // The menu by which tracks are added, below its button.

    // Layout and painting of the whole page.
    virtual void LayOut() = 0;

    [[nodiscard]] virtual IPlugin* GetPlugin() = 0; // Whose sign it is.

protected:
    ~IPage() = default;
};

} // namespace kivo::tunehive
