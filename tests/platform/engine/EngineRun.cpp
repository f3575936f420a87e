#include "tests/platform/engine/EngineRun.h"

#include "shell/contracts/common/Text.h"
#include "tests/support/TestLoop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>

namespace kivo::test {

namespace {

constexpr int kQuiet = 150; // Milliseconds.

bool isGapless = false;

// The number behind the word's first part, as in "seek=10" and "@3".
int GetNumber(const std::string& word, std::size_t from)
{
    return std::stoi(word.substr(from));
}

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

void EngineRun::Do(const std::string& script)
{
    std::istringstream words(script);
    for (std::string word; words >> word;)
        Act(word);
}

void EngineRun::Act(const std::string& word)
{
    if (word == "play")
        engine_->Play();
    else if (word == "pause")
        engine_->Pause();
    else if (word == "stop")
        engine_->Stop();
    else if (word == "manual")
        engine_->SetAutoStart(/*on=*/false);
    else if (word == "quiet")
        RunFor(kQuiet);
    else if (word.starts_with("seek="))
        engine_->SetPosition(GetNumber(word, 5));
    else if (word.starts_with("@"))
        EXPECT_TRUE(RunToState(GetNumber(word, 1))) << word << " after " << GetTrace();
    else if (word.starts_with("#"))
        EXPECT_TRUE(RunToCount(static_cast<std::size_t>(GetNumber(word, 1)))) << GetTrace();
    else if (word.starts_with("on"))
        reactions_.push_back({GetNumber(word, word.starts_with("once") ? 4 : 2),
                              word.substr(word.find('=') + 1),
                              !word.starts_with("once")});
    else if (word.starts_with("/"))
        SetBytes(base + word);
    else
        SetFile(word);
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
    const auto found = std::find_if(
        reactions_.begin(), reactions_.end(), [&](const auto& one) { return one.state == state; });
    if (found == reactions_.end())
        return;
    const std::string word = found->word;
    if (!found->isRepeated)
        reactions_.erase(found);
    Act(word);
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
