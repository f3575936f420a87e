#pragma once

#include "shell/contracts/desktop/TuneHiveRemote.h"

#include <string>

namespace kivo::test {

// Notes the player's keys that reach it.
class NotingRemote final : public ITuneHiveRemote {
public:
    void Open(const std::vector<String>&, const String&, bool) override {}
    void Play() override { calls += "play "; }
    void Pause() override { calls += "pause "; }
    void Stop() override { calls += "stop "; }
    void Next() override { calls += "next "; }
    void Previous() override { calls += "previous "; }
    void Seek(double) override {}
    [[nodiscard]] int GetVolume() const override { return -1; }
    void SetVolume(int) override {}
    [[nodiscard]] int GetState() const override { return state; }
    [[nodiscard]] String GetTitle() const override { return {}; }
    [[nodiscard]] String GetArtist() const override { return {}; }
    [[nodiscard]] String GetPath() const override { return {}; }
    [[nodiscard]] double GetPosition() const override { return 0.0; }
    [[nodiscard]] double GetLength() const override { return 0.0; }
    [[nodiscard]] bool IsAtRest() const override { return true; }
    void AddListener(const Delegate<int>&) override {}
    void RemoveListener(const Delegate<int>&) override {}
    [[nodiscard]] bool StopWork(int) override { return true; }
    void ToggleFullScreen() override { calls += "full "; }
    void OpenWebForm() override {}
    void SetMusicServer(const String&) override {}

    int state = 0;
    std::string calls;
};

} // namespace kivo::test
