#pragma once

#include "platform/engine/Engine.h"
#include "shell/contracts/base/String.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kivo::test {

// The real engine without a sound device, and all states that it has delivered.
class EngineRun {
public:
    explicit EngineRun(const MediaEngineSettings& settings = Silent(), double speed = 1.0);
    EngineRun(const EngineRun&) = delete;
    EngineRun& operator=(const EngineRun&) = delete;

    // Without a sound device; whether tracks are joined says the whole program of tests.
    [[nodiscard]] static MediaEngineSettings Silent();
    static void SetGapless(bool on);

    [[nodiscard]] Engine& Get() { return *engine_; }
    void End() { engine_.reset(); }

    void SetFile(const std::string& name); // Of the files that make_media.sh made.
    void SetBytes(std::string_view url);

    // Until the states end in one of `last` and nothing more is waiting; false: 20 s passed.
    bool RunToState(int state, int milliseconds = 20'000);
    bool RunToCount(std::size_t count, int milliseconds = 20'000);

    // What was delivered, as "9 3 8".
    [[nodiscard]] std::string GetTrace() const;
    [[nodiscard]] std::size_t GetCount() const { return states_.size(); }
    void Clear() { states_.clear(); }

    std::function<void(int)> onState; // Called within each delivery.

private:
    void OnState(int state);

    std::vector<int> states_;
    std::unique_ptr<Engine> engine_;
};

// A file that make_media.sh made.
[[nodiscard]] std::string GetMediaPath(const std::string& name);
[[nodiscard]] std::string ReadMedia(const std::string& name);

} // namespace kivo::test
