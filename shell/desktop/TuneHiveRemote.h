#pragma once

#include "shell/contracts/desktop/TuneHiveRemote.h"

namespace kivo::tunehive {

class IMediaPlayer;
class ITuneHive_AsyncCallbackParam;
class TuneHiveWindow;

// The remote over an open page. Thread: user interface.
class TuneHiveRemote : public ITuneHiveRemote {
public:
    explicit TuneHiveRemote(TuneHiveWindow& window); // Borrowed; its page has been created.
    TuneHiveRemote(const TuneHiveRemote&) = delete;
    TuneHiveRemote& operator=(const TuneHiveRemote&) = delete;
    virtual ~TuneHiveRemote();

    void Open(const std::vector<String>& items, const String& group, bool playFirst) override;
    void Play() override;
    void Pause() override;
    void Stop() override;
    void Next() override;
    void Previous() override;
    void Seek(double seconds) override;
    [[nodiscard]] int GetVolume() const override;
    void SetVolume(int volume) override;
    [[nodiscard]] int GetState() const override;
    [[nodiscard]] String GetTitle() const override;
    [[nodiscard]] String GetArtist() const override;
    [[nodiscard]] String GetPath() const override;
    [[nodiscard]] double GetPosition() const override;
    [[nodiscard]] double GetLength() const override;
    [[nodiscard]] bool IsAtRest() const override;
    void AddListener(const Delegate<int>& listener) override;
    void RemoveListener(const Delegate<int>& listener) override;
    [[nodiscard]] bool StopWork(int timeoutMs) override;
    void ToggleFullScreen() override;
    void OpenWebForm() override;
    void SetMusicServer(const String& hostAndPort) override;

private:
    void OnPlayerState(ITuneHive_AsyncCallbackParam* param);
    [[nodiscard]] IMediaPlayer* FindPlayer() const;

    TuneHiveWindow& window_;
    DelegateList<int> listeners_;
};

} // namespace kivo::tunehive
