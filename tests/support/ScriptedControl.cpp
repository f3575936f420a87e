#include "tests/support/ScriptedControl.h"

#include "shell/contracts/common/Text.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kivo::test {

class ScriptedEngine final : public MediaEngine {
public:
    explicit ScriptedEngine(ScriptedControl& script)
        : script_(script)
    {
        ++script_.madeCount;
        ++script_.liveCount;
    }
    ~ScriptedEngine() override
    {
        script_.stateListener_ = {};
        script_.frameListener_ = {};
        --script_.liveCount;
    }

    void SetAutoStart(bool on) override { Note("SetAutoStart", on ? 1 : 0); }
    void SetURL(const String& url) override
    {
        script_.url = url;
        script_.calls.push_back("SetURL " + common::TextToPath(url));
    }
    [[nodiscard]] String GetURL() const override { return script_.url; }
    void Play() override { script_.calls.emplace_back("Play"); }
    void Pause() override { script_.calls.emplace_back("Pause"); }
    void Stop() override { script_.calls.emplace_back("Stop"); }
    [[nodiscard]] double GetDuration() const override { return script_.duration; }
    [[nodiscard]] String GetDurationString() const override { return ToText(script_.duration); }
    [[nodiscard]] double GetPosition() const override { return script_.position; }
    [[nodiscard]] String GetPositionString() const override { return ToText(script_.position); }
    void SetPosition(double seconds) override
    {
        script_.position = seconds;
        Note("SetPosition", static_cast<int>(std::lround(seconds)));
    }
    [[nodiscard]] int GetVolume() const override { return script_.volume; }
    void SetVolume(int volume) override
    {
        script_.volume = std::clamp(volume, 0, 100);
        Note("SetVolume", volume);
    }
    [[nodiscard]] bool GetMute() const override { return script_.mute; }
    void SetMute(bool on) override
    {
        script_.mute = on;
        Note("SetMute", on ? 1 : 0);
    }
    [[nodiscard]] int GetPlayState() const override { return script_.state; }
    [[nodiscard]] int GetBufferingProgress() const override { return script_.bufferingProgress; }
    [[nodiscard]] String GetItemInfo(const String& name) const override
    {
        const auto found = script_.itemInfo.find(name);
        return found == script_.itemInfo.end() ? String() : found->second;
    }
    [[nodiscard]] int GetImageWidth() const override { return script_.imageWidth; }
    [[nodiscard]] int GetImageHeight() const override { return script_.imageHeight; }
    void SetSurface(int width, int height, bool visible) override
    {
        script_.calls.push_back("SetSurface " + std::to_string(width) + " " +
                                std::to_string(height) + (visible ? " 1" : " 0"));
    }
    bool PaintFrame(const std::function<void(const VideoFrame&)>& paint) override
    {
        if (script_.frame.bits == nullptr)
            return false;
        paint(script_.frame);
        return true;
    }
    void SetFrameListener(const Delegate<>& listener) override
    {
        script_.frameListener_ = listener;
    }
    void SetStateListener(const Delegate<int>& listener) override
    {
        script_.stateListener_ = listener;
    }

private:
    static String ToText(double seconds) { return common::FormatWhole(seconds) + u" s"; }

    void Note(const std::string& call, int argument)
    {
        script_.calls.push_back(call + " " + std::to_string(argument));
    }

    ScriptedControl& script_;
};

ScriptedControl::ScriptedControl()
{
    SetMediaEngineFactory([this]() -> std::unique_ptr<MediaEngine> {
        if (!canBeMade)
            return nullptr;
        return std::make_unique<ScriptedEngine>(*this);
    });
}

ScriptedControl::~ScriptedControl()
{
    SetMediaEngineFactory({});
}

void ScriptedControl::Emit(int newState)
{
    state = newState;
    stateListener_(newState);
}

void ScriptedControl::EmitFrame()
{
    frameListener_();
}

int ScriptedControl::CountCalls(const std::string& word) const
{
    return static_cast<int>(std::count_if(calls.begin(), calls.end(), [&](const auto& call) {
        return call == word || call.starts_with(word + " ");
    }));
}

std::string ScriptedControl::GetLastCall() const
{
    return calls.empty() ? std::string() : calls.back();
}

namespace {

class ScriptedPeer final : public VideoSurfacePeer {
public:
    explicit ScriptedPeer(ScriptedSurface& script)
        : script_(script)
    {
    }
    ~ScriptedPeer() override { script_.surface = nullptr; }

    void MoveWindow(const Rect& bounds) override { script_.bounds = bounds; }
    void ShowWindow(bool visible) override { script_.visible = visible; }
    void SetFullScreen(bool on) override { script_.fullScreen = on; }
    void Update() override { ++script_.updateCount; }

private:
    ScriptedSurface& script_;
};

} // namespace

ScriptedSurface::ScriptedSurface()
{
    SetVideoSurfacePeerFactory([this](IVideoSurface& made, CWnd* madeParent) {
        surface = &made;
        parent = madeParent;
        return std::make_unique<ScriptedPeer>(*this);
    });
}

ScriptedSurface::~ScriptedSurface()
{
    SetVideoSurfacePeerFactory({});
}

} // namespace kivo::test
