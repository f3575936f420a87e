#pragma once

#include "host/sign/SignPatience.h"
#include "host/sign/XmppStream.h"
#include "tests/host/sign/SignServer.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kivo::test {

// Another program on the network, which says what a test wants it to. It lives on the test's
// thread: it does something only inside its own calls.
class Peer final : private host::IXmppStreamListener {
public:
    Peer(const SignServer& server, const std::string& name);
    Peer(const Peer&) = delete;
    Peer& operator=(const Peer&) = delete;
    ~Peer(); // Cuts the connection without a word.

    [[nodiscard]] bool IsOnline() const { return !address_.empty(); }
    [[nodiscard]] const std::string& GetAddress() const { return address_; } // With the device.

    void Say(const std::string& xml);
    void SayPresence(); // There, and hears tunes.
    void SayTune(const std::string& children);

    // What was received, in order, as far as it holds the text; empty: none in that time.
    std::string WaitFor(const std::string& text, int milliseconds = 20000);

    // The answer to a request, whose id is put in place of "ID".
    std::string Ask(const std::string& xml);

    [[nodiscard]] const std::vector<std::string>& GetReceived() const { return received_; }

private:
    void OnStreamOpen(const std::string& boundAddress) override;
    void OnStanza(host::XmppElement stanza) override;
    void OnStreamEnd(const host::StreamResult& result) override;
    bool RunUntil(const std::function<bool()>& isDone, int milliseconds);

    host::SocketWatch watch_;
    host::XmppStream stream_;
    std::string address_;
    std::vector<std::string> received_;
    int lastId_ = 0;
};

} // namespace kivo::test
