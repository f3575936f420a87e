#pragma once

#include "host/sign/TuneMapping.h"

#include <chrono>
#include <optional>

namespace kivo::host {

// When the user's tune goes to the server: the last one wins, once nothing has changed for a while,
// and never soon after the one before. It knows no clock: whoever asks tells the time, which never
// goes back.
class PublishPolicy {
public:
    using Time = std::chrono::steady_clock::time_point;

    static constexpr std::chrono::milliseconds kQuiet{1500}; // From the last change.
    static constexpr std::chrono::seconds kFloor{3};         // From the last one published.
    static constexpr std::chrono::seconds kFatal{5}; // A stream that ends so soon after a tune.
    static constexpr int kMaxFatal = 2;              // So many times, and the tune is dropped.

    void Want(const Tune& tune, Time now); // Empty: none.
    void Withdraw(Time now);               // None, and at once.

    // A stream began; what the server shows of the user is unknown, perhaps what a crash has left.
    // It is cleared where nothing plays, which holds up nothing that comes next. `isClear`: the
    // server is known to show nothing of ours.
    void OnOnline(bool isClear = false);

    void OnOrderlyEnd(); // The user's own end of the stream says nothing about the tune.

    // A tune whose publishing ends the stream each time must not do so for ever. An attempt that
    // never came online says nothing about it.
    void OnStreamEnd(Time now);

    // When Take has something next; nothing: not before one of the calls above.
    [[nodiscard]] std::optional<Time> GetDue() const;

    // What is to be published now, an empty tune included. It counts as published from here on.
    [[nodiscard]] std::optional<Tune> Take(Time now);

    // Whether the server has to be told before the stream ends, as far as is known.
    [[nodiscard]] bool IsOut() const;

private:
    Tune wanted_;
    std::optional<Tune> published_; // Nothing: unknown.
    bool isOnline_ = false;
    bool isUrgent_ = false;
    Time changed_{};
    std::optional<Time> publishedAt_;
    int fatal_ = 0;
};

} // namespace kivo::host
