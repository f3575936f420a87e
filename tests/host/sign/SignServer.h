#pragma once

#include "host/sign/ISignNetwork.h"
#include "tests/support/Process.h"
#include "tests/support/TempFolder.h"

#include <memory>
#include <string>

namespace kivo::test {

// A real XMPP server on a port of this machine, with a certificate and accounts of its own. It is
// a program of the build tree, never a service of the machine; scripts/prosody brings it. A tune
// that holds "poison" ends the stream of whoever publishes it.
class SignServer {
public:
    struct Options {
        bool hasEventing = true;
        std::string certificateName = "sign.example";
        std::string unheard = "[nothing]"; // Requests that hold this text get no answer.
    };

    static constexpr char kDomain[] = "sign.example";

    explicit SignServer(const Options& options);
    SignServer();
    SignServer(const SignServer&) = delete;
    SignServer& operator=(const SignServer&) = delete;
    ~SignServer();

    // Before Start. The password is the name, followed by "-secret".
    void AddUser(const std::string& name) const;

    // Two who see each other, as if they had asked and been answered.
    void Befriend(const std::string& a, const std::string& b) const;

    void Start(); // Returns when it takes connections; again after Kill or Stop.
    void Kill();  // Without warning.
    void Stop();  // In order.

    [[nodiscard]] host::SignAccount GetAccount(const std::string& name) const; // Its pin is set.
    [[nodiscard]] static std::string GetPassword(const std::string& name);
    [[nodiscard]] static String GetId(const std::string& name);
    [[nodiscard]] const std::string& GetFingerprint() const { return fingerprint_; }
    [[nodiscard]] std::string ReadLog() const { return folder_.Read("log"); }

    // Whether a client has sent something that holds the text to the server itself.
    [[nodiscard]] bool HasHeard(const std::string& text) const;
    [[nodiscard]] int GetPort() const { return port_; }

private:
    void MakeCertificate();
    void WriteSettings() const;

    Options options_;
    TempFolder folder_;
    int port_ = 0;
    std::string fingerprint_;
    std::unique_ptr<Process> process_;
};

// A port of this machine that nobody listens on.
[[nodiscard]] int FindFreePort();

} // namespace kivo::test
