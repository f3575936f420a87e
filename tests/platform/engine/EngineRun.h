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

    // A user's hand, word by word:
    //   tone.mp3     sets that file of make_media.sh
    //   /radio       sets that path below `base`, a server's address
    //   play pause stop seek=10
    //   manual       a set address doesn't start by itself
    //   @3           until 3 is the last state; #5: until five states have come; 20 s at most
    //   quiet        long enough for the core to say what it still has to say
    //   on8=WORD     does the word inside each delivery of 8; once8=WORD: inside the next
    void Do(const std::string& script);
    std::string base;

    void SetFile(const std::string& name); // Of the files that make_media.sh made.
    void SetBytes(std::string_view url);

    // False: the time passed.
    bool RunToState(int state, int milliseconds = 20'000); // Until it is the last.
    bool RunToCount(std::size_t count, int milliseconds = 20'000);

    // What was delivered, as "9 3 8".
    [[nodiscard]] std::string GetTrace() const;
    void Clear() { states_.clear(); }

    std::function<void(int)> onState; // Called within each delivery.

private:
    struct Reaction {
        int state;
        std::string word;
        bool isRepeated;
    };

    void Act(const std::string& word);
    void OnState(int state);

    std::vector<int> states_;
    std::vector<Reaction> reactions_;
    std::unique_ptr<Engine> engine_;
};

// A file that make_media.sh made.
[[nodiscard]] std::string GetMediaPath(const std::string& name);
[[nodiscard]] std::string ReadMedia(const std::string& name);

} // namespace kivo::test
