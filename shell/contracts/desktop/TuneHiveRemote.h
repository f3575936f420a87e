#pragma once

#include "shell/contracts/base/Delegate.h"
#include "shell/contracts/base/String.h"

#include <vector>

namespace kivo {

// The message by which an import brings its tracks to the tree's window.
inline constexpr unsigned kFolderImportMessage = 11014;

// How the desktop side of the host reaches the player: command line, second start, media keys,
// status line, menu. Each call does what window, tree and panel offer anyway. Thread: user
// interface.
class ITuneHiveRemote {
public:
    // Adds files, folders and addresses to the end of a group ("playing", …), files first, folders
    // by an import. With `playFirst` the first one plays: the first file, else the first track of
    // the first import, unless something else was started meanwhile. Folders and files are absolute
    // paths.
    virtual void Open(const std::vector<String>& items, const String& group, bool playFirst) = 0;

    virtual void Play() = 0; // As the play button.
    virtual void Pause() = 0;
    virtual void Stop() = 0; // As the stop button.
    virtual void Next() = 0;
    virtual void Previous() = 0;
    virtual void Seek(double seconds) = 0; // Nothing before anything has played.

    [[nodiscard]] virtual int GetVolume() const = 0; // 0 to 100; -1 before anything has played.
    virtual void SetVolume(int volume) = 0;          // Clamped; nothing before anything has played.

    [[nodiscard]] virtual int
    GetState() const = 0; // The player's state number; 0 before the first.
    [[nodiscard]] virtual String GetTitle() const = 0; // As the sign would show it.
    [[nodiscard]] virtual String GetArtist() const = 0;
    [[nodiscard]] virtual String GetPath() const = 0;     // Of the current track; empty: none.
    [[nodiscard]] virtual double GetPosition() const = 0; // Seconds; -1 without a control.
    [[nodiscard]] virtual double GetLength() const = 0;   // The same of the whole track.

    // No import runs, no address waits to be set, and the player is stopped, ended or ready:
    // nothing more will happen by itself.
    [[nodiscard]] virtual bool IsAtRest() const = 0;

    // Called after each state with its number, and with -1 when the track or the rest changed.
    virtual void AddListener(const Delegate<int>& listener) = 0;
    virtual void RemoveListener(const Delegate<int>& listener) = 0;

    // Before ClosePage, when the program stops: imports skip what metadata is left and post their
    // lists, look-ups end. Waits at most `timeoutMs`. True: nothing works in the background any
    // more; deliver the messages kFolderImportMessage next. False: a thread hangs in the system and
    // was given up; close the page, save, and end the process without unloading the library.
    [[nodiscard]] virtual bool StopWork(int timeoutMs) = 0;

    virtual void ToggleFullScreen() = 0; // Of a moving picture; nothing without one.

    virtual void OpenWebForm() = 0; // The music cabinet.
    virtual void
    SetMusicServer(const String& hostAndPort) = 0; // "HOST[:PORT]", before the form opens.

protected:
    ~ITuneHiveRemote() = default;
};

// Exported by tunehive.so as "GetTuneHiveRemote". Null before CreatePage and after ClosePage.
using GetTuneHiveRemoteFunction = ITuneHiveRemote* (*)();

} // namespace kivo
