#pragma once

#include "shell/contracts/base/String.h"

namespace kivo::tunehive {

// The tracks that play one after another, with a mark on the current one, as the player asks for
// them. Thread: user interface.
class IPlayingList {
public:
    // The URL of the marked track; empty if none is marked.
    virtual void GetCurrentURL(String& url) = 0;

    // Moves the mark to the next or previous track and gives its URL. Behind the last or before the
    // first: with `wrap` at the other end, else empty with no track marked.
    virtual void GetNextURL(String& url, int wrap) = 0;
    virtual void GetPrevURL(String& url, int wrap) = 0;

    virtual void
    GetRandomURL(String& url) = 0; // Moves the mark to a random track. Empty: no track.

    [[nodiscard]] virtual int GetPlayingCount() = 0; // Number of tracks.

    virtual int PlaySelected() = 0; // Plays the first selected track; 0 if none is selected.

    // A run of moves of the mark in search of a track: between the two calls only the row where the
    // mark ends need be drawn.
    virtual void BeginMoves() {}
    virtual void EndMoves() {}

protected:
    ~IPlayingList() = default;
};

} // namespace kivo::tunehive
