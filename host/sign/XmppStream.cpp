#include "host/sign/XmppStream.h"

#include "shell/contracts/common/Text.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/select.h>
#include <sys/socket.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <utility>

namespace kivo::host {

namespace {

// What the library decrypted and didn't hand on yet doesn't wake a wait for the socket. It reads
// 4096 bytes a turn, and 16384 are the most that were decrypted at once.
constexpr int kIdleTurns = 4;
constexpr int kMaxTurns = 256;

// The library's callbacks for sockets and certificates carry no word of ours.
thread_local XmppStream* currentStream = nullptr;

class Current {
public:
    explicit Current(XmppStream* stream)
        : before_(std::exchange(currentStream, stream))
    {
    }
    Current(const Current&) = delete;
    Current& operator=(const Current&) = delete;
    ~Current() { currentStream = before_; }

private:
    XmppStream* before_;
};

// The system notices a cable that was cut: after a minute of silence, then three times.
void KeepAlive(int socket)
{
    struct Option {
        int level;
        int name;
        int value;
    };
    constexpr Option kOptions[] = {
        {SOL_SOCKET,  SO_KEEPALIVE,     1     },
        {IPPROTO_TCP, TCP_KEEPIDLE,     60    },
        {IPPROTO_TCP, TCP_KEEPINTVL,    20    },
        {IPPROTO_TCP, TCP_KEEPCNT,      3     },
        {IPPROTO_TCP, TCP_USER_TIMEOUT, 120000},
    };
    for (const Option& option : kOptions)
        setsockopt(socket, option.level, option.name, &option.value, sizeof option.value);
    fcntl(socket, F_SETFD, FD_CLOEXEC);
}

std::string GetDomain(const std::string& address)
{
    const std::size_t at = address.find('@');
    return at == std::string::npos ? address : address.substr(at + 1);
}

// Two writings of one fingerprint are equal here.
std::string NormalizeFingerprint(const std::string& text)
{
    std::string digits;
    for (const char16_t unit : common::ToLowerAscii(common::utf8_to_CString(text))) {
        if ((unit >= u'0' && unit <= u'9') || (unit >= u'a' && unit <= u'f'))
            digits += static_cast<char>(unit);
    }
    return digits;
}

std::string GetFingerprint(const xmpp_tlscert_t* certificate)
{
    const char* const text =
        certificate != nullptr ? xmpp_tlscert_get_string(certificate, XMPP_CERT_FINGERPRINT_SHA256)
                               : nullptr;
    return NormalizeFingerprint(text != nullptr ? text : "");
}

void Initialize()
{
    static std::once_flag once;
    std::call_once(once, xmpp_initialize);
}

} // namespace

// What the library calls.
struct XmppCallbacks {
    static int OnSocket(xmpp_conn_t* /*connection*/, void* socket)
    {
        return currentStream->CanUse(*static_cast<int*>(socket)) ? 0 : -1;
    }

    static int OnCertificate(const xmpp_tlscert_t* /*certificate*/, const char* reason)
    {
        currentStream->OnCertificate(reason);
        return 1; // Until the handshake has ended.
    }

    static void OnEvent(xmpp_conn_t* /*connection*/,
                        xmpp_conn_event_t event,
                        int /*error*/,
                        xmpp_stream_error_t* /*streamError*/,
                        void* stream)
    {
        static_cast<XmppStream*>(stream)->OnEvent(event);
    }

    static int OnStanza(xmpp_conn_t* /*connection*/, xmpp_stanza_t* stanza, void* stream)
    {
        static_cast<XmppStream*>(stream)->listener_.OnStanza(XmppElement(stanza));
        return 1; // The next one, too.
    }

    static void OnLog(void* stream, xmpp_log_level_t level, const char* area, const char* text)
    {
        // Only looked at, never kept: it may hold the password's exchange.
        static_cast<XmppStream*>(stream)->OnLog(level, area, text);
    }
};

XmppStream::XmppStream(IXmppStreamListener& listener,
                       SocketWatch& watch,
                       std::chrono::milliseconds attemptLimit)
    : listener_(listener)
    , watch_(watch)
    , attemptLimit_(attemptLimit)
    , log_{&XmppCallbacks::OnLog, this}
    , context_((Initialize(), xmpp_ctx_new(nullptr, &log_)))
{
}

XmppStream::~XmppStream()
{
    Release();
    xmpp_ctx_free(context_);
}

void XmppStream::Open(const Account& account)
{
    const Current current(this);
    Release();
    result_ = {};
    isEnded_ = false;
    isDoubted_ = false;
    isSilent_ = false;
    fingerprint_ = NormalizeFingerprint(account.fingerprint);
    connection_ = xmpp_conn_new(context_);
    xmpp_conn_set_flags(connection_, XMPP_CONN_FLAG_MANDATORY_TLS | XMPP_CONN_FLAG_DISABLE_SM);
    xmpp_conn_set_jid(connection_, account.address.c_str());
    xmpp_conn_set_pass(connection_, account.password.c_str());
    xmpp_conn_set_sockopt_callback(connection_, &XmppCallbacks::OnSocket);
    xmpp_conn_set_certfail_handler(connection_, &XmppCallbacks::OnCertificate);
    const bool isChosen = !account.server.empty() || account.port != 0;
    const std::string server = account.server.empty() ? GetDomain(account.address) : account.server;
    watch_.Begin(attemptLimit_);
    const int result = xmpp_connect_client(connection_,
                                           isChosen ? server.c_str() : nullptr,
                                           static_cast<unsigned short>(account.port),
                                           &XmppCallbacks::OnEvent,
                                           this);
    isEnded_ = isEnded_ || result != XMPP_EOK;
    if (isEnded_)
        Finish();
}

void XmppStream::Send(xmpp_stanza_t* stanza)
{
    if (isOpen_)
        xmpp_send(connection_, stanza);
}

void XmppStream::Close()
{
    if (connection_ == nullptr)
        return;
    const Current current(this);
    watch_.Limit(kCloseLimit);
    if (isOpen_)
        xmpp_disconnect(connection_);
    else
        isEnded_ = true; // Nothing was said yet that needs an end.
}

bool XmppStream::Run(std::chrono::milliseconds longest)
{
    const Current current(this);
    auto wait = static_cast<unsigned long>(longest.count());
    int idle = 0;
    for (int turn = 0; connection_ != nullptr && !isEnded_ && idle < kIdleTurns; ++turn) {
        if (turn == kMaxTurns)
            return true;
        xmpp_run_once(context_, wait);
        wait = 0;
        isEnded_ = isEnded_ || !IsTrusted();
        idle = IsReadable() ? 0 : idle + 1;
    }
    if (isEnded_)
        Finish();
    return false;
}

int XmppStream::CountUnsent() const
{
    return isOpen_ ? xmpp_conn_send_queue_len(connection_) : 0;
}

bool XmppStream::CanUse(int socket)
{
    // The library waits by a set of numbers that ends there, and writes beyond it.
    if (socket >= FD_SETSIZE || !watch_.Follow(socket))
        return false;
    KeepAlive(socket);
    socket_ = socket;
    return true;
}

// Called for each certificate of the chain that the system doesn't trust, perhaps an authority's.
// What counts and what the user is shown is the server's own, which is known once the handshake has
// ended.
void XmppStream::OnCertificate(const char* reason)
{
    if (!std::exchange(isDoubted_, true) && reason != nullptr)
        result_.text = reason;
}

// Asked after each turn of the library: it ends its turn with the handshake, and only the next one
// sends what has been queued meanwhile. So whom nobody trusts hears nothing.
bool XmppStream::IsTrusted()
{
    if (!isDoubted_ || xmpp_conn_is_secured(connection_) == 0)
        return true;
    isDoubted_ = false;
    const std::unique_ptr<xmpp_tlscert_t, decltype(&xmpp_tlscert_free)> leaf(
        xmpp_conn_get_peer_cert(connection_), &xmpp_tlscert_free);
    result_.fingerprint = GetFingerprint(leaf.get());
    if (!result_.fingerprint.empty() && result_.fingerprint == fingerprint_)
        return true;
    result_.end = StreamEnd::Untrusted;
    return false;
}

void XmppStream::OnEvent(xmpp_conn_event_t event)
{
    if (event != XMPP_CONN_CONNECT) {
        isOpen_ = false;
        isEnded_ = true;
        return;
    }
    isOpen_ = true;
    watch_.Lift();
    xmpp_handler_add(connection_, &XmppCallbacks::OnStanza, nullptr, nullptr, nullptr, this);
    const char* const bound = xmpp_conn_get_bound_jid(connection_);
    listener_.OnStreamOpen(bound != nullptr ? bound : xmpp_conn_get_jid(connection_));
}

void XmppStream::OnLog(xmpp_log_level_t level, const std::string& area, std::string_view text)
{
    // A server that is slow to name its ways of signing in has refused nothing.
    if (text == "didn't get stream features")
        isSilent_ = true;
    // The only trace of a refused password.
    if (!isSilent_ && level == XMPP_LEVEL_ERROR && area == "auth" && result_.end == StreamEnd::Lost)
        result_.end = StreamEnd::Refused;
}

void XmppStream::Finish()
{
    isEnded_ = false;
    Release();
    listener_.OnStreamEnd(result_);
}

void XmppStream::Release()
{
    isOpen_ = false;
    socket_ = -1;
    watch_.End();
    if (connection_ != nullptr)
        xmpp_conn_release(std::exchange(connection_, nullptr));
}

bool XmppStream::IsReadable() const
{
    pollfd entry{socket_, POLLIN, 0};
    return socket_ >= 0 && poll(&entry, 1, 0) > 0;
}

} // namespace kivo::host
