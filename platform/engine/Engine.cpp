#include "platform/engine/Engine.h"

#include "platform/engine/Clock.h"
#include "platform/engine/CoreProperties.h"
#include "platform/engine/TimeText.h"
#include "shell/contracts/common/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace kivo {

namespace {

constexpr MediaEngineVolume kFileVolume = {100, false};
constexpr int kMostVolume = 100;

// Up to three digits behind the point.
String NumberText(double number)
{
    std::array<char, 32> text{};
    const double rounded = std::round(number * 1000) / 1000;
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), rounded);
    if (error != std::errc())
        return {};
    return common::utf8_to_CString(
        std::string_view(text.data(), static_cast<std::size_t>(end - text.data())));
}

} // namespace

std::unique_ptr<Engine> Engine::Make(const MediaEngineSettings& settings, double speed)
{
    std::unique_ptr<Engine> engine(new Engine(settings));
    return engine->Start(speed) ? std::move(engine) : nullptr;
}

Engine::Engine(const MediaEngineSettings& settings)
    : settings_(settings)
    , sound_(settings.silent || !settings.audioFile.empty())
{
    if (settings_.loadVolume)
        volume_ = settings_.loadVolume();
    volume_.volume = std::clamp(volume_.volume, 0, kMostVolume);
}

bool Engine::Start(double speed)
{
    if (!mailbox_.Open(Delegate<unsigned>(this, &Engine::OnMessage)))
        return false;
    CoreSettings core;
    core.silent = settings_.silent;
    core.speed = speed;
    speed_ = speed;
    std::unique_ptr<WaveFile> wave;
    if (IsToFile()) {
        wave = std::make_unique<WaveFile>(settings_.audioFile);
        core.silent = true; // Also where the file can't be made, which is told at the end.
        if (wave->IsOpen())
            core.samplePath = wave->GetSamplePath();
    }
    core.volume = IsToFile() ? kFileVolume : volume_;
    core.gapless = IsGapless();
    parts_ = std::make_unique<CoreParts>(mailbox_.GetHandle(), std::move(wave), core);
    if (!parts_->IsWhole())
        return false;
    mpv_hook_add(GetCore(), 0, "on_preloaded", 0);
    for (const auto& [id, name] : kObserved)
        mpv_observe_property(GetCore(), static_cast<std::uint64_t>(id), name, MPV_FORMAT_NODE);
    if (IsGapless()) {
        constexpr auto kEnd = static_cast<std::uint64_t>(CoreProperty::EndReached);
        mpv_observe_property(GetCore(), kEnd, "eof-reached", MPV_FORMAT_NODE);
    }
    return true;
}

Engine::~Engine()
{
    life_.End();
    SetTimerRuns(/*on=*/false);
    mailbox_.DestroyWindow();
    if (parts_ && !CoreParts::Close(std::move(parts_)) && settings_.audioFileFailed)
        settings_.audioFileFailed();
}

String Engine::GetDurationString() const
{
    return FormatTime(duration_);
}

double Engine::GetPosition() const
{
    // The core is asked twice a second; longer than until its next answer nothing is guessed.
    constexpr double kLongestGuess = 0.7;
    if (!IsMoving())
        return position_;
    const double passed = static_cast<double>(GetSteadyTime() - positionTime_) / 1000;
    const double now = position_ + std::clamp(passed, 0.0, kLongestGuess) * speed_;
    return position_ < duration_ ? std::min(now, duration_) : now;
}

String Engine::GetPositionString() const
{
    return FormatTime(GetPosition());
}

void Engine::SetVolume(int volume)
{
    volume_.volume = std::clamp(volume, 0, kMostVolume);
    StoreVolume();
}

void Engine::SetMute(bool on)
{
    volume_.mute = on;
    StoreVolume();
}

void Engine::StoreVolume()
{
    // What goes into a file isn't for ears, and says nothing about how loud they like it.
    if (IsToFile())
        return;
    WriteNumber(GetCore(), "volume", volume_.volume);
    WriteFlag(GetCore(), "mute", volume_.mute);
    if (settings_.storeVolume)
        settings_.storeVolume(volume_);
}

int Engine::GetPlayState() const
{
    return static_cast<int>(states_.GetDelivered());
}

String Engine::GetItemInfo(const String& name) const
{
    if (url_.empty())
        return {};
    if (name == u"Title")
        return BoundText(tags_.title);
    if (name == u"Author")
        return BoundText(tags_.author);
    if (name == u"Album")
        return BoundText(tags_.album);
    if (name == u"Station")
        return BoundText(tags_.station);
    if (name == u"FileType")
        return BoundText(facts_.fileFormat);
    if (name == u"SourceURL")
        return url_;
    if (name == u"Duration")
        return NumberText(duration_);
    if (name == u"FileSize")
        return NumberText(facts_.fileSize);
    if (name == u"Bitrate")
        return NumberText(std::round(tags_.bitrate));
    return {};
}

int Engine::GetImageWidth() const
{
    if (!facts_.hasVideo)
        return 0;
    return width_ > 0 && height_ > 0 ? width_ : facts_.width;
}

int Engine::GetImageHeight() const
{
    if (!facts_.hasVideo)
        return 0;
    return width_ > 0 && height_ > 0 ? height_ : facts_.height;
}

void Engine::SetSurface(int width, int height, bool visible)
{
    parts_->GetRender().SetSurface(width, height, visible);
}

bool Engine::PaintFrame(const std::function<void(const VideoFrame&)>& paint)
{
    return parts_->GetRender().PaintFrame(paint);
}

} // namespace kivo
