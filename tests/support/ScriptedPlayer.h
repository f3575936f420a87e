#pragma once

#include "player/IMediaPlayer.h"
#include "player/MediaPlayerManager.h"

#include <string>
#include <utility>
#include <vector>

namespace kivo::test {

// A player whose answers a test sets, and which notes what it was asked to do.
class ScriptedPlayer final : public tunehive::IMediaPlayer {
public:
    int Init(CWnd* /*parent*/) override { return inited = canBegin; }
    void Release() override {} // It belongs to the test.
    int IsInited() override { return inited; }
    bool IsCreated() override { return inited != 0; }
    String GetURL() override { return url; }
    int SetURL(String address, int autoplay) override
    {
        calls.push_back(u"set " + address + (autoplay != 0 ? u"" : u" (held)"));
        url = address;
        return 0;
    }
    int Play() override { return Note(u"play"); }
    int Stop() override { return Note(u"stop"); }
    int Pause() override { return Note(u"pause"); }
    double GetDuration() override { return duration; }
    String GetDurationString() override { return {}; }
    int GetVolume() override { return volume; }
    int SetVolume(int value) override
    {
        volume = value;
        return 0;
    }
    bool GetMute() override { return false; }
    int SetMute(bool /*on*/) override { return 0; }
    double GetPosition() override { return position; }
    String GetPositionString() override { return {}; }
    int SetPosition(double seconds) override
    {
        position = seconds;
        return Note(u"seek");
    }
    int GetPlayState() override { return state; }
    int GetBufferingProgress() override { return buffering; }
    void SetUIMode(int /*mode*/) override {}
    bool GetFullScreen() override { return false; }
    void SetFullScreen(bool /*on*/) override {}
    void EnableContextMenu(bool /*on*/) override {}
    String GetItemInfo(String /*name*/) override { return {}; }
    int GetImageWidth() override { return width; }
    int GetImageHeight() override { return height; }
    void SetStretchToFit(bool /*on*/) override {}
    bool CanPlay(String /*address*/) override { return canPlay; }
    void SetBounds(int left, int top, int right, int bottom) override
    {
        bounds = {left, top, right, bottom};
    }
    int GetPlayerId() override { return id; }
    void SetManager(tunehive::CMediaPlayerManager* /*manager*/) override {}
    void Show(int command) override { shown = command; }

    // What was called since the last time.
    std::vector<String> TakeCalls() { return std::exchange(calls, {}); }

    int id = 1;
    int canBegin = 1;
    bool canPlay = true;
    int inited = 1;
    int shown = -1; // The last command to show; -1: none.
    Rect bounds;
    String url;
    double duration = 0.0;
    double position = 0.0;
    int volume = 60;
    int state = 0;
    int buffering = 0;
    int width = 0;
    int height = 0;
    std::vector<String> calls;

private:
    int Note(const char16_t* call)
    {
        calls.emplace_back(call);
        return 0;
    }
};

} // namespace kivo::test
