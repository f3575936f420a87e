#pragma once

#include "host/sign/ISignNetwork.h"

#include <atomic>
#include <mutex>
#include <string>
#include <thread>

namespace kivo::test {

// A server that behaves as servers don't, on a port of this machine, one connection after the
// other. It ends once its last client has gone.
class BadServer {
public:
    enum class Manner {
        Silent,            // Takes the connection and says nothing.
        MuteAfterProceed,  // Lets encryption begin, and says nothing more.
        WithoutEncryption, // Offers to take the password as it is.
    };

    explicit BadServer(Manner manner);
    BadServer(const BadServer&) = delete;
    BadServer& operator=(const BadServer&) = delete;
    ~BadServer();

    [[nodiscard]] host::SignAccount GetAccount() const;
    [[nodiscard]] std::string GetReceived(); // All bytes, of all connections.
    [[nodiscard]] int CountConnections() const { return connections_; }
    [[nodiscard]] bool HasSaidAll() const { return hasSaidAll_; } // All that it ever will.

private:
    void Serve();
    void Speak(int connection);

    Manner manner_;
    int listener_ = -1;
    int port_ = 0;
    std::atomic<int> connections_ = 0;
    std::atomic<bool> hasSaidAll_ = false;
    std::mutex mutex_;
    std::string received_; // Guarded by mutex_.
    std::thread thread_;
};

} // namespace kivo::test
