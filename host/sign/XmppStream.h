#pragma once

#include "host/sign/SocketWatch.h"
#include "host/sign/XmppStanza.h"

#include <chrono>
#include <string>
#include <string_view>

namespace kivo::host {

enum class StreamEnd {
    Lost,      // No way to the server, or it ended.
    Refused,   // It doesn't take name or password.
    Untrusted, // Its certificate: `text` says why, `fingerprint` which.
};

struct StreamResult {
    StreamEnd end = StreamEnd::Lost;
    std::string text;
    std::string fingerprint; // SHA-256 in hexadecimal digits.
};

class IXmppStreamListener {
public:
    virtual void OnStreamOpen(const std::string& boundAddress) = 0; // "name@server/device".
    virtual void OnStanza(XmppElement stanza) = 0;
    virtual void OnStreamEnd(const StreamResult& result) = 0;

protected:
    ~IXmppStreamListener() = default;
};

// One connection after the other to a server: encrypted always, the certificate checked against the
// system's authorities or the one that the user trusts. Thread: one, the network's; listeners are
// called from inside Run, Open and Send, where they may send, but not open another.
class XmppStream {
public:
    struct Account {
        std::string address;
        std::string password;
        std::string server; // Empty: as the address says.
        int port = 0;       // 0: as the address says.
        std::string fingerprint;
    };

    static constexpr std::chrono::milliseconds kCloseLimit{2500};

    // Listener and watch are borrowed. An attempt that takes longer than the limit is cut.
    XmppStream(IXmppStreamListener& listener,
               SocketWatch& watch,
               std::chrono::milliseconds attemptLimit);
    XmppStream(const XmppStream&) = delete;
    XmppStream& operator=(const XmppStream&) = delete;
    ~XmppStream();

    // Names are looked up before it returns. The end of an attempt is told by OnStreamEnd.
    void Open(const Account& account);
    void Send(const XmppStanza& stanza) { Send(stanza.Get()); }
    void Send(xmpp_stanza_t* stanza); // Copied.
    void Close();                     // In order; OnStreamEnd follows.

    // Handles what came; waits at most that long for it. True: more has come, run it again.
    bool Run(std::chrono::milliseconds longest);

    [[nodiscard]] bool IsActive() const { return connection_ != nullptr; } // Open or about to be.
    [[nodiscard]] bool IsOpen() const { return isOpen_; }
    [[nodiscard]] int CountUnsent() const; // Stanzas that wait until the socket takes them.
    [[nodiscard]] int GetSocket() const { return socket_; }
    [[nodiscard]] xmpp_ctx_t* GetContext() const { return context_; }

private:
    friend struct XmppCallbacks;

    [[nodiscard]] bool CanUse(int socket);
    void OnCertificate(const char* reason);
    [[nodiscard]] bool IsTrusted();
    void OnEvent(xmpp_conn_event_t event);
    void OnLog(xmpp_log_level_t level, const std::string& area, std::string_view text);
    void Finish();
    void Release();
    [[nodiscard]] bool IsReadable() const;

    IXmppStreamListener& listener_;
    SocketWatch& watch_;
    std::chrono::milliseconds attemptLimit_;
    xmpp_log_t log_;
    xmpp_ctx_t* context_;
    xmpp_conn_t* connection_ = nullptr;
    std::string fingerprint_; // Of the certificate that the user trusts.
    StreamResult result_;
    int socket_ = -1;
    bool isSilent_ = false;  // The server has not told how one signs in.
    bool isDoubted_ = false; // The system doesn't trust the certificate; the user may.
    bool isOpen_ = false;
    bool isEnded_ = false; // Its end waits to be told.
};

} // namespace kivo::host
