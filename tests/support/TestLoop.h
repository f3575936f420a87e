#pragma once

#include <functional>

namespace kivo::test {

// Runs the process's posts and timers on this thread, waiting for them as an event loop does, until
// `isDone` says so or `milliseconds` have passed. What `isDone` said last.
bool RunUntil(const std::function<bool()>& isDone, int milliseconds);

// The same for what other threads change without posting: asked every few milliseconds.
bool PollUntil(const std::function<bool()>& isDone, int milliseconds);

// The same for a time; for what must not happen.
void RunFor(int milliseconds);

// The longest single turn so far, in milliseconds: what a user would feel as a hang.
[[nodiscard]] int GetLongestTurn();
void ResetLongestTurn();

} // namespace kivo::test
