#pragma once

namespace kivo::tunehive {

class IMediaPlayer;

// Leaves full screen at Escape and at a double click, wherever the input is for, and passes both
// on. Thread: user interface.
void SetFullScreenHooks(bool on);

// The player whose full screen they leave: the one last initialised. Borrowed.
void SetFullScreenPlayer(IMediaPlayer* player);
void ForgetFullScreenPlayer(const IMediaPlayer* player); // Nothing if it is another one.

} // namespace kivo::tunehive
