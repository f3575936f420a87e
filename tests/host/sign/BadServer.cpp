#include "tests/host/sign/BadServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>

namespace kivo::test {

namespace {

constexpr char kHead[] = "<?xml version='1.0'?><stream:stream xmlns='jabber:client' "
                         "xmlns:stream='http://etherx.jabber.org/streams' id='1' "
                         "from='sign.example' version='1.0'><stream:features>";
constexpr char kTail[] = "</stream:features>";
constexpr char kStartTls[] = "<starttls xmlns='urn:ietf:params:xml:ns:xmpp-tls'/>";
constexpr char kProceed[] = "<proceed xmlns='urn:ietf:params:xml:ns:xmpp-tls'/>";
constexpr char kPlain[] = "<mechanisms xmlns='urn:ietf:params:xml:ns:xmpp-sasl'>"
                          "<mechanism>PLAIN</mechanism></mechanisms>";

void Say(int connection, const std::string& text)
{
    send(connection, text.data(), text.size(), MSG_NOSIGNAL);
}

} // namespace

BadServer::BadServer(Manner manner)
    : manner_(manner)
    , listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    static_cast<void>(bind(listener_, reinterpret_cast<const sockaddr*>(&address), size));
    getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size);
    listen(listener_, 8);
    port_ = ntohs(address.sin_port);
    thread_ = std::thread([this] { Serve(); });
}

BadServer::~BadServer()
{
    shutdown(listener_, SHUT_RDWR); // Which ends the wait for the next one.
    thread_.join();
    close(listener_);
}

host::SignAccount BadServer::GetAccount() const
{
    return {u"alice@sign.example", u"127.0.0.1", port_, {}};
}

std::string BadServer::GetReceived()
{
    const std::lock_guard lock(mutex_);
    return received_;
}

void BadServer::Serve()
{
    while (true) {
        const int connection = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
        if (connection < 0)
            return;
        ++connections_;
        Speak(connection);
        close(connection);
    }
}

void BadServer::Speak(int connection)
{
    std::string heard;
    bool hasGreeted = manner_ == Manner::Silent;
    hasSaidAll_ = hasGreeted;
    std::array<char, 4096> buffer{};
    while (true) {
        const ssize_t count = recv(connection, buffer.data(), buffer.size(), 0);
        if (count <= 0)
            return;
        const std::string bytes(buffer.data(), static_cast<std::size_t>(count));
        heard += bytes;
        {
            const std::lock_guard lock(mutex_);
            received_ += bytes;
        }
        if (!hasGreeted && heard.find("<stream:stream") != std::string::npos) {
            const bool isPlain = manner_ == Manner::WithoutEncryption;
            Say(connection, std::string(kHead) + (isPlain ? kPlain : kStartTls) + kTail);
            hasGreeted = true;
            hasSaidAll_ = isPlain;
        } else if (!hasSaidAll_ && heard.find("<starttls") != std::string::npos) {
            Say(connection, kProceed);
            hasSaidAll_ = true;
        }
    }
}

} // namespace kivo::test
