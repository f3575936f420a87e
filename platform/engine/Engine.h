#pragma once

#include "platform/engine/Address.h"
#include "platform/engine/CoreParts.h"
#include "platform/engine/CoreProperties.h"
#include "platform/engine/MediaFacts.h"
#include "platform/engine/SoundOutput.h"
#include "platform/engine/StateQueue.h"
#include "platform/engine/Watchdog.h"
#include "shell/contracts/base/LifeToken.h"
#include "shell/contracts/control/MediaEngine.h"
#include "shell/contracts/control/MediaEngineSettings.h"
#include "shell/contracts/framework/Timers.h"

#include <cstdint>
#include <memory>
#include <set>
#include <string>

namespace kivo {

// The playing control on libmpv. The core has threads of its own and is only ever asked without
// waiting; what it tells arrives as posted messages, and every answer of a getter is one that was
// told before. Thread: user interface.
class Engine final : public MediaEngine {
public:
    // Null: the core or its picture can't be had.
    [[nodiscard]] static std::unique_ptr<Engine> Make(const MediaEngineSettings& settings,
                                                      double speed = 1.0);
    ~Engine() override;

    void SetAutoStart(bool on) override { autoStart_ = on; }
    void SetURL(const String& url) override;
    [[nodiscard]] String GetURL() const override { return url_; }

    void Play() override;
    void Pause() override;
    void Stop() override;

    [[nodiscard]] double GetDuration() const override { return duration_; }
    [[nodiscard]] String GetDurationString() const override;
    [[nodiscard]] double GetPosition() const override;
    [[nodiscard]] String GetPositionString() const override;
    void SetPosition(double seconds) override;

    [[nodiscard]] int GetVolume() const override { return volume_.volume; }
    void SetVolume(int volume) override;
    [[nodiscard]] bool GetMute() const override { return volume_.mute; }
    void SetMute(bool on) override;

    [[nodiscard]] int GetPlayState() const override;
    [[nodiscard]] int GetBufferingProgress() const override { return buffering_; }
    [[nodiscard]] String GetItemInfo(const String& name) const override;
    [[nodiscard]] int GetImageWidth() const override;
    [[nodiscard]] int GetImageHeight() const override;

    void SetSurface(int width, int height, bool visible) override;
    bool PaintFrame(const std::function<void(const VideoFrame&)>& paint) override;
    void SetFrameListener(const Delegate<>& listener) override { frameListener_ = listener; }
    void SetStateListener(const Delegate<int>& listener) override { stateListener_ = listener; }

private:
    // How far the current address has come.
    enum class Stage {
        Resting, // Nothing is loaded, or what was has ended.
        Opening, // On its way to the first sound.
        Started,
    };

    // What the medium tells about itself while it plays.
    struct Tags {
        std::string title;
        std::string author;
        std::string album;
        std::string station;
        double bitrate = 0;
    };

    explicit Engine(const MediaEngineSettings& settings);
    bool Start(double speed);

    [[nodiscard]] mpv_handle* GetCore() const { return parts_->GetCore(); }
    [[nodiscard]] bool IsToFile() const { return !settings_.audioFile.empty(); }
    [[nodiscard]] bool IsGapless() const { return settings_.gapless && !IsToFile(); }
    void StoreVolume();

    // EnginePlay.cpp: one address from its start to its end.
    void Begin();
    void Load(const std::string& target);
    void LoadInTurn();
    [[nodiscard]] bool IsTailLeft() const;
    void EndCurrent();
    void Rest();
    void RestPaused();
    void StopCore();
    void SetPaused(bool on);
    void Fail();
    void Finish();
    void Report(EngineState state);
    void Deliver();

    // The clock, which runs only while something moves.
    static void OnTimer(HWND window, unsigned message, TimerId timer, std::uint32_t time);
    void SetTimerRuns(bool on);
    void OnTick();
    void OnTailTick();
    void OnVerdict(Watchdog::Verdict verdict);
    void Ask(CoreProperty property, const char* name);
    void AskPosition();

    // EngineEvents.cpp: what the core tells.
    void OnMessage(unsigned message);
    void TakeEvents();
    void OnEvent(const mpv_event& event);
    void OnCommandReply(const mpv_event& event);
    void OnStartFile(std::int64_t entry);
    void OnHook(std::uint64_t id);
    void ReadFacts();
    void OnFileLoaded();
    void OnRestart();
    void OnEndFile(const mpv_event_end_file& end);
    void OnEndReached(bool on);
    void LeaveGapless();
    void OnAnswer(const mpv_event& event);
    void OnMediumAnswer(CoreProperty id, const mpv_node& value);
    void OnCachePaused(bool on);
    void OnPosition(double seconds);
    void HoldPosition(double seconds);
    bool NoteChange(double& kept, double now);

    // Whether sound or picture advance right now.
    [[nodiscard]] bool IsMoving() const
    {
        return stage_ == Stage::Started && !isPaused_ && !isCachePaused_ && !isStalled_;
    }

    // Whether the core's events are about the current address.
    [[nodiscard]] bool IsCurrent() const { return entry_ != 0 && entry_ == eventEntry_; }

    MediaEngineSettings settings_;
    MediaEngineVolume volume_;
    CoreMailbox mailbox_;
    std::unique_ptr<CoreParts> parts_;
    SoundOutput sound_;

    Delegate<int> stateListener_;
    Delegate<> frameListener_;
    StateQueue states_;
    bool isDeliveryPosted_ = false;

    bool autoStart_ = true;
    String url_;
    Address address_;
    std::string target_;           // What the core was given for it.
    std::set<String> failedFiles_; // Since the last that played.

    std::uint64_t serial_ = 0;    // Of the last load that was sent.
    std::int64_t entry_ = 0;      // The core's number for it; 0: not known, or it is over.
    std::int64_t eventEntry_ = 0; // Whom the core's events are about.
    bool isCoreBusy_ = false;     // The core was given something and wasn't told to stop.
    bool isCorePaused_ = false;   // What it was told last.

    // Gapless playing. The end is reported while the rest of the sound, the tail, is still in the
    // device's buffer; what comes next must not cut it off.
    bool isAtEnd_ = false;        // The core waits behind the last sample for an appended file.
    bool isEndDelivered_ = false; // The listener is being told of an end right now.
    bool isLoadHeld_ = false;     // The address waits until the tail is over.
    bool isAppended_ = false;     // The last load was joined to the one before.
    std::int64_t tailEnd_ = 0;    // On the steady clock; 0: there is none.

    Stage stage_ = Stage::Resting;
    bool isPaused_ = false;      // By the user.
    bool isCachePaused_ = false; // The core waits for data.
    bool isStalled_ = false;     // The position stands, and 6 was reported for it.
    MediaFacts facts_;
    Tags tags_;
    double duration_ = 0;
    double speed_ = 1;
    double position_ = 0;           // Seconds, as told last,
    std::int64_t positionTime_ = 0; // and when: between two answers it is counted on.
    double toldPosition_ = 0;
    std::uint64_t asked_ = 0;    // How often the core was asked for the position,
    std::uint64_t answered_ = 0; // how often it answered,
    std::uint64_t stale_ = 0;    // and the last answer from before a seek.
    double audioPosition_ = 0;
    double cachePosition_ = 0;
    int buffering_ = 0;
    int width_ = 0; // As the core shows the picture; 0: it hasn't told yet.
    int height_ = 0;

    Watchdog watchdog_;
    TimerId timer_ = 0;
    LifeToken life_;
};

} // namespace kivo
