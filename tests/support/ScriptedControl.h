#pragma once

#include "shell/contracts/control/MediaEngine.h"
#include "shell/contracts/control/VideoSurface.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace kivo::test {

// The playing control as a test writes it: answers are plain fields, calls are kept, states come
// when the test says so. While one stands, CreateMediaEngine gives a control that follows it; one
// at a time.
class ScriptedControl {
public:
    ScriptedControl();
    ScriptedControl(const ScriptedControl&) = delete;
    ScriptedControl& operator=(const ScriptedControl&) = delete;
    ~ScriptedControl();

    void Emit(int state); // Becomes the state, then reaches the listener, as from the event loop.
    void EmitFrame();     // A newer picture waits.

    // What it answers.
    bool canBeMade = true;
    String url;
    double duration = 0;
    double position = 0;
    int volume = 60;
    bool mute = false;
    int state = 0;
    int bufferingProgress = 0;
    std::map<String, String> itemInfo;
    int imageWidth = 0;
    int imageHeight = 0;
    VideoFrame frame;

    // What it was told: "SetURL a.mp3", "Play", "Pause", "Stop", "SetAutoStart 0", "SetPosition 3",
    // "SetVolume 40", "SetMute 1", "SetSurface 320 240 1".
    std::vector<std::string> calls;
    int madeCount = 0; // How many controls were made,
    int liveCount = 0; // and how many of them still stand.

    // How often a call begins with the word.
    [[nodiscard]] int CountCalls(const std::string& word) const;
    [[nodiscard]] std::string GetLastCall() const; // Empty before the first.

private:
    friend class ScriptedEngine;

    Delegate<int> stateListener_;
    Delegate<> frameListener_;
};

// A surface's peer as a test sees it; while one stands, CreateVideoSurfacePeer gives such a peer.
class ScriptedSurface {
public:
    ScriptedSurface();
    ScriptedSurface(const ScriptedSurface&) = delete;
    ScriptedSurface& operator=(const ScriptedSurface&) = delete;
    ~ScriptedSurface();

    IVideoSurface* surface = nullptr; // Null before the peer is made, and after it is gone.
    CWnd* parent = nullptr;
    Rect bounds;
    bool visible = false;
    bool fullScreen = false;
    int updateCount = 0;
};

} // namespace kivo::test
