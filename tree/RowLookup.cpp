#include "tree/RowLookup.h"

#include "medialib/IMediaLibManager.h"
#include "shell/base/TuneHiveEvent.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/framework/Paths.h"
#include "shell/contracts/framework/Threads.h"

#include <deque>
#include <unordered_set>
#include <utility>
#include <vector>

namespace kivo::tunehive {

namespace {

constexpr std::size_t kResultsPerTurn = 256; // So that painting and input get their turn.

struct Result {
    String path;
    bool exists;
};

// Only says that results wait.
class ResultsParam final : public ITuneHive_AsyncCallbackParam {
public:
    ~ResultsParam() override = default;
};

} // namespace

struct RowLookup::State {
    // The paths that wait for one job, each once.
    struct Line {
        std::deque<String> paths;
        std::unordered_set<String> waiting;
        bool isJobPosted = false;
    };

    Line& GetLine(bool isOnScreen) { return isOnScreen ? onScreen : inBackground; }

    CriticalSection section; // Guards all below.
    Line onScreen;
    Line inBackground;
    std::vector<Result> results;
    bool isEventPosted = false;
    bool isEnded = false;

    AsyncCallback callback; // Set before the first job.
    LifeWatch life;
};

// Takes one path of its line per slice.
class RowLookup::Job final : public IJob {
public:
    Job(std::shared_ptr<State> state, bool onScreen, const CWorker* worker)
        : state_(std::move(state))
        , worker_(worker)
        , onScreen_(onScreen)
    {
    }

    bool RunSlice() override
    {
        String path;
        if (!Take(path))
            return false;
        const bool exists = UrlIsW(path) || common::IsFileExist(path);
        if (IMediaLibManager* library = FindMediaLibManager()) {
            MediaInfo info; // Only its cache entry counts.
            library->GetMediaInfo(path, info);
        }
        Give(path, exists);
        return true;
    }

private:
    bool Take(String& path)
    {
        const CriticalSection::Guard guard(state_->section);
        State::Line& line = state_->GetLine(onScreen_);
        if (line.paths.empty() || state_->isEnded || worker_->IsStopping()) {
            line.isJobPosted = false;
            return false;
        }
        path = std::move(line.paths.front());
        line.paths.pop_front();
        line.waiting.erase(path);
        return true;
    }

    void Give(const String& path, bool exists)
    {
        {
            const CriticalSection::Guard guard(state_->section);
            state_->results.push_back({path, exists});
            if (std::exchange(state_->isEventPosted, true))
                return;
        }
        PostCallback(state_->callback, new ResultsParam, state_->life);
    }

    // Shared with the RowLookup; see there.
    std::shared_ptr<State> state_;
    const CWorker* worker_;
    bool onScreen_;
};

RowLookup::RowLookup(Found found)
    : found_(std::move(found))
    , state_(std::make_shared<State>())
{
    state_->callback = AsyncCallback(this, &RowLookup::OnResults);
    state_->life = life_.Watch();
}

RowLookup::~RowLookup()
{
    const CriticalSection::Guard guard(state_->section);
    state_->isEnded = true;
}

void RowLookup::AskOnScreen(const String& path)
{
    Ask(path, /*onScreen=*/true);
}

void RowLookup::AskInBackground(const String& path)
{
    Ask(path, /*onScreen=*/false);
}

void RowLookup::Ask(const String& path, bool onScreen)
{
    IMediaLibManager* library = FindMediaLibManager();
    CWorker* worker = library != nullptr ? library->GetWorker() : nullptr;
    if (worker == nullptr)
        return;
    {
        const CriticalSection::Guard guard(state_->section);
        State::Line& line = state_->GetLine(onScreen);
        if (!line.waiting.insert(path).second)
            return;
        line.paths.push_back(path);
        if (std::exchange(line.isJobPosted, true))
            return;
    }
    worker->Post(onScreen ? JobPriority::RowOnScreen : JobPriority::RowInBackground,
                 std::make_unique<Job>(state_, onScreen, worker));
}

bool RowLookup::IsBusy() const
{
    const CriticalSection::Guard guard(state_->section);
    return state_->onScreen.isJobPosted || !state_->results.empty();
}

void RowLookup::OnResults(ITuneHive_AsyncCallbackParam* /*param*/)
{
    std::vector<Result> results;
    bool hasMore = false;
    {
        const CriticalSection::Guard guard(state_->section);
        if (state_->results.size() <= kResultsPerTurn) {
            results.swap(state_->results);
        } else {
            const auto end = state_->results.begin() + static_cast<std::ptrdiff_t>(kResultsPerTurn);
            results.assign(std::make_move_iterator(state_->results.begin()),
                           std::make_move_iterator(end));
            state_->results.erase(state_->results.begin(), end);
            hasMore = true;
        }
        state_->isEventPosted = hasMore;
    }
    if (hasMore)
        PostCallback(state_->callback, new ResultsParam, state_->life);
    for (const Result& result : results)
        found_(result.path, result.exists);
}

} // namespace kivo::tunehive
