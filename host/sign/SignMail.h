#pragma once

#include "host/sign/ISecretStore.h"
#include "host/sign/ISignNetwork.h"
#include "host/sign/SignAddress.h"
#include "host/sign/SignPatience.h"
#include "host/sign/SocketWatch.h"

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace kivo::host {

class XmppClient;

// What the user-interface thread and the network thread of one network share, and that lives as
// long as the longer of them: a thread that hangs in the system's look-up of a name is left alone.
class SignMail : public std::enable_shared_from_this<SignMail> {
public:
    using Command = std::function<void(XmppClient&)>;
    using Event = std::function<void(ISignNetworkListener&)>;

    // Takes what the network tells. Thread: user interface.
    class IReceiver {
    public:
        virtual void OnMail(const Event& event, unsigned session) = 0;

    protected:
        ~IReceiver() = default;
    };

    SignMail(std::unique_ptr<ISecretStore> passwords,
             SignAddressRule addresses,
             const SignPatience& longest);
    SignMail(const SignMail&) = delete;
    SignMail& operator=(const SignMail&) = delete;
    ~SignMail();

    struct Order {
        Command command;
        unsigned session;
    };

    // To the network. `session` counts sign-ins; it comes back with each event that follows, so
    // that what is late can be told. Thread: user interface.
    void Send(Command command, unsigned session);
    void Quit();                                        // After what was sent.
    bool WaitForEnd(std::chrono::milliseconds longest); // False: the thread hasn't ended yet.

    // From it, in order. Thread: the network's; the receiver hears it on the user-interface
    // thread.
    void Tell(Event event, unsigned session);

    // Borrowed; null: nobody listens any more. Thread: user interface.
    void SetReceiver(IReceiver* receiver) { receiver_ = receiver; }
    void Deliver(); // A part of what has come; the rest has been posted again.

    // Of the network thread.
    [[nodiscard]] bool IsFull(); // So much waits that no more should be told for now.
    [[nodiscard]] std::deque<Order> TakeOrders(); // What has been sent.
    [[nodiscard]] bool IsQuitting();
    [[nodiscard]] int GetWakeDescriptor() const { return wake_; } // Readable: something was sent.
    void End();                                                   // The last thing that it does.

    SocketWatch watch;                         // Thread: any.
    const std::unique_ptr<ISecretStore> store; // Thread: the network's.
    const SignAddressRule rule;
    const SignPatience patience;

private:
    struct Letter {
        Event event;
        unsigned session;
    };
    void Wake() const;

    int wake_;
    IReceiver* receiver_ = nullptr;
    std::mutex mutex_;
    std::condition_variable ended_;
    std::deque<Order> orders_; // These four are guarded by mutex_.
    std::deque<Letter> letters_;
    bool isQuitting_ = false;
    bool isEnded_ = false;
};

} // namespace kivo::host
