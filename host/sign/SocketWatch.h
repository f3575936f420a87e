#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

namespace kivo::host {

// Cuts a connection that takes too long, from a thread of its own: the library waits inside one
// call for a server that has fallen silent in the middle of a handshake. It sleeps unless a limit
// is set, and its thread starts with the first one. Thread: any, but for construction and
// destruction.
class SocketWatch {
public:
    using Duration = std::chrono::milliseconds;

    SocketWatch() = default;
    SocketWatch(const SocketWatch&) = delete;
    SocketWatch& operator=(const SocketWatch&) = delete;
    ~SocketWatch();

    // An attempt begins; the sockets that follow are cut at the end of `limit`, those after it at
    // once.
    void Begin(Duration limit);

    // Follows a duplicate of the socket, so that a number which is used anew is never cut by
    // mistake. One at a time. False: it can't be followed.
    bool Follow(int socket);

    void Limit(Duration limit); // No later than that, of what is followed.
    void Lift();                // The socket may go on without a limit.
    void End();                 // The attempt is over; nothing is followed.

private:
    using Time = std::chrono::steady_clock::time_point;

    void Run();
    void StartThread();
    void Drop(); // Closes the duplicate.
    void Cut();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::optional<Time> deadline_; // These four are guarded by mutex_.
    int socket_ = -1;
    bool isEnding_ = false;
    std::thread thread_;
};

} // namespace kivo::host
