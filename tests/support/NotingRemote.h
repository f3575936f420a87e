#pragma once

#include "shell/contracts/desktop/TuneHiveRemote.h"

#include <string>

namespace kivo::test {

// A player that notes what is asked of it, and goes through the states that a test tells.
class NotingRemote final : public ITuneHiveRemote {
public:
    void Tell(int newState)
    {
        state = newState;
        listeners.Notify(newState);
    }

    void Open(const std::vector<String>& items, const String& group, bool playFirst) override
    {
        calls += "open " + std::to_string(items.size());
        calls += group == u"playing" && playFirst ? " and play " : " ";
    }
    void Play() override { calls += "play "; }
    void Pause() override { calls += "pause "; }
    void Stop() override { calls += "stop "; }
    void Next() override { calls += "next "; }
    void Previous() override { calls += "previous "; }
    void Seek(double) override {}
    [[nodiscard]] int GetVolume() const override { return -1; }
    void SetVolume(int) override {}
    [[nodiscard]] int GetState() const override { return state; }
    [[nodiscard]] String GetTitle() const override { return title; }
    [[nodiscard]] String GetArtist() const override { return {}; }
    [[nodiscard]] String GetPath() const override { return path; }
    [[nodiscard]] double GetPosition() const override { return 0.0; }
    [[nodiscard]] double GetLength() const override { return 0.0; }
    [[nodiscard]] bool IsAtRest() const override { return isAtRest; }
    void AddListener(const Delegate<int>& listener) override { listeners.Add(listener); }
    void RemoveListener(const Delegate<int>& listener) override { listeners.Remove(listener); }
    [[nodiscard]] bool StopWork(int) override { return true; }
    void ToggleFullScreen() override { calls += "full "; }
    void OpenWebForm() override {}
    void SetMusicServer(const String&) override {}

    int state = 0;
    bool isAtRest = false;
    String title;
    String path;
    DelegateList<int> listeners;
    std::string calls;
};

} // namespace kivo::test
