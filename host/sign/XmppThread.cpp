#include "host/sign/XmppThread.h"

#include "host/sign/SignMail.h"
#include "host/sign/XmppClient.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <limits>
#include <optional>
#include <utility>

namespace kivo::host {

namespace {

using std::chrono::milliseconds;

// While a handshake is under way the library waits by itself, and commands so long for it.
constexpr milliseconds kHandshakeTurn{50};

// Puts what a client tells into the mail.
class Teller final : public ISignNetworkListener {
public:
    explicit Teller(SignMail& mail)
        : mail_(mail)
    {
    }

    void SetSession(unsigned session) { session_ = session; }

    void OnState(const SignState& state) override
    {
        Tell([state](ISignNetworkListener& listener) { listener.OnState(state); });
    }
    void OnContact(const SignContact& contact) override
    {
        Tell([contact](ISignNetworkListener& listener) { listener.OnContact(contact); });
    }
    void OnContactGone(const String& id) override
    {
        Tell([id](ISignNetworkListener& listener) { listener.OnContactGone(id); });
    }
    void OnContactAsks(const String& id) override
    {
        Tell([id](ISignNetworkListener& listener) { listener.OnContactAsks(id); });
    }
    void OnRequestGone(const String& id) override
    {
        Tell([id](ISignNetworkListener& listener) { listener.OnRequestGone(id); });
    }
    void
    OnSign(const String& id, const String& kind, const String& title, const Property& sign) override
    {
        Tell([id, kind, title, sign](ISignNetworkListener& listener) {
            listener.OnSign(id, kind, title, sign);
        });
    }
    void OnSignGone(const String& id) override
    {
        Tell([id](ISignNetworkListener& listener) { listener.OnSignGone(id); });
    }

private:
    void Tell(SignMail::Event event) { mail_.Tell(std::move(event), session_); }

    SignMail& mail_;
    unsigned session_ = 0;
};

void BlockSignals()
{
    // They are for the other threads; SIGPIPE, of a socket that was cut, for none.
    sigset_t all{};
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
}

int GetTimeout(const std::optional<XmppClient::Time>& due)
{
    if (!due)
        return -1;
    const auto left =
        std::chrono::ceil<milliseconds>(*due - std::chrono::steady_clock::now()).count();
    constexpr milliseconds::rep kLongest = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp<milliseconds::rep>(left, 0, kLongest));
}

// Until something was sent, the socket has something, or the client has. What the user-interface
// thread can't take at the moment stays with the server.
void Wait(SignMail& mail, XmppClient& client)
{
    const XmppStream& stream = client.GetStream();
    const auto wanted = static_cast<short>(stream.CountUnsent() > 0 ? POLLIN | POLLOUT : POLLIN);
    std::array entries{
        pollfd{mail.GetWakeDescriptor(), POLLIN, 0},
        pollfd{stream.GetSocket(),       wanted, 0},
    };
    const nfds_t count = stream.IsOpen() && !mail.IsFull() ? 2 : 1;
    poll(entries.data(), count, GetTimeout(client.GetDue()));
}

// What is on the wire; true: there is more.
bool Pump(XmppStream& stream)
{
    if (!stream.IsActive())
        return false;
    const bool isOpen = stream.IsOpen();
    const bool isMore = stream.Run(isOpen ? milliseconds(0) : kHandshakeTurn);
    return isMore || (!isOpen && stream.IsActive());
}

void RunNetwork(SignMail& mail)
{
    Teller teller(mail);
    XmppClient client({teller, *mail.store, mail.watch, mail.rule, mail.patience});
    bool isQuitting = false;
    while (true) {
        for (const SignMail::Order& order : mail.TakeOrders()) {
            teller.SetSession(order.session);
            order.command(client);
        }
        if (!isQuitting && mail.IsQuitting()) {
            isQuitting = true;
            client.SignOut();
        }
        client.Work();
        const bool isMore = !mail.IsFull() && Pump(client.GetStream());
        if (isQuitting && client.IsAtRest())
            return;
        if (!isMore)
            Wait(mail, client);
    }
}

} // namespace

std::thread StartXmppThread(std::shared_ptr<SignMail> mail)
{
    return std::thread([mail = std::move(mail)] {
        BlockSignals();
        RunNetwork(*mail);
        mail->End();
    });
}

} // namespace kivo::host
