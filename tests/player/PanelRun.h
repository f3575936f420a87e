#pragma once

#include "player/MediaPlayerManager.h"
#include "shell/contracts/control/MediaEngineSettings.h"
#include "tests/platform/engine/EngineRun.h"
#include "tests/player/PanelView.h"

#include <functional>
#include <string>
#include <vector>

namespace kivo::test {

// The panel over the real engine, without a window or a tree, and with a sound device only if the
// settings say so. The build file is the program's.
class PanelRun : public PanelView {
public:
    explicit PanelRun(const MediaEngineSettings& settings = EngineRun::Silent());
    ~PanelRun();

    // Of the files that make_media.sh made; or any other path or address.
    void AddFile(const std::string& name);
    void Add(const std::string& url);

    void Unload(); // The panel first, then the players, as the program does.

    // Runs the event loop and what is posted to the host; false: the time is over.
    bool RunUntil(const std::function<bool()>& isDone, int milliseconds = 20'000);
    void RunFor(int milliseconds);
    bool RunToState(int state);             // Until it is the last that was reported.
    bool RunToStarts(std::size_t count);    // Until that many tracks have started.
    bool RunToRest(int milliseconds = 300); // Until nothing has happened for so long.

    [[nodiscard]] std::string GetTrace() const;   // What the engine reported, as "9 3 8".
    [[nodiscard]] std::string GetStarted() const; // The rows that started, as "0 1 2".
    [[nodiscard]] tunehive::IMediaPlayer& Player() const;

private:
    void OnState(tunehive::ITuneHive_AsyncCallbackParam* param);

    std::vector<int> states_;
    std::vector<int> started_; // Rows.
    bool isOpening_ = false;
};

} // namespace kivo::test
