#include "tests/platform/engine/EngineRun.h"

#include "shell/contracts/common/Text.h"
#include "tests/support/TestLoop.h"

#include <fstream>
#include <iterator>

namespace kivo::test {

namespace {

bool isGapless = false;

} // namespace

EngineRun::EngineRun(const MediaEngineSettings& settings, double speed)
    : engine_(Engine::Make(settings, speed))
{
    engine_->SetStateListener(Delegate<int>(this, &EngineRun::OnState));
}

MediaEngineSettings EngineRun::Silent()
{
    MediaEngineSettings settings;
    settings.silent = true;
    settings.gapless = isGapless;
    return settings;
}

void EngineRun::SetGapless(bool on)
{
    isGapless = on;
}

void EngineRun::SetFile(const std::string& name)
{
    SetBytes(GetMediaPath(name));
}

void EngineRun::SetBytes(std::string_view url)
{
    engine_->SetURL(common::PathToText(url));
}

bool EngineRun::RunToState(int state, int milliseconds)
{
    return RunUntil([&] { return !states_.empty() && states_.back() == state; }, milliseconds);
}

bool EngineRun::RunToCount(std::size_t count, int milliseconds)
{
    return RunUntil([&] { return states_.size() >= count; }, milliseconds);
}

std::string EngineRun::GetTrace() const
{
    std::string trace;
    for (const int state : states_)
        trace += (trace.empty() ? "" : " ") + std::to_string(state);
    return trace;
}

void EngineRun::OnState(int state)
{
    states_.push_back(state);
    if (onState)
        onState(state);
}

std::string GetMediaPath(const std::string& name)
{
    return std::string(KIVO_TEST_MEDIA) + name;
}

std::string ReadMedia(const std::string& name)
{
    std::ifstream file(GetMediaPath(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace kivo::test
