#include "host/sign/XmppSignNetwork.h"

#include "host/sign/SignMail.h"
#include "host/sign/SignText.h"
#include "host/sign/XmppClient.h"
#include "host/sign/XmppThread.h"
#include "shell/contracts/common/Text.h"

#include <chrono>
#include <map>
#include <optional>
#include <utility>

namespace kivo::host {

namespace {

// What an orderly end may take; whoever quits waits no longer.
constexpr std::chrono::seconds kLongestEnd{3};

std::string ToBytes(const String& id)
{
    return common::CString_to_utf8(NormalizeSignId(id));
}

} // namespace

// What the network has told so far, told again to whoever listens next.
struct XmppSignNetwork::Impl final : SignMail::IReceiver, ISignNetworkListener {
    Impl(const String& name, std::shared_ptr<SignMail> shared)
        : localName(name)
        , mail(std::move(shared))
    {
        state.ownId = name;
        mail->SetReceiver(this);
    }

    void OnMail(const SignMail::Event& event, unsigned from) override
    {
        if (from == session)
            event(*this);
    }

    void OnState(const SignState& next) override;
    void OnContact(const SignContact& contact) override;
    void OnContactGone(const String& id) override;
    void OnContactAsks(const String& id) override;
    void OnRequestGone(const String& id) override;
    void OnSign(const String& id,
                const String& kind,
                const String& title,
                const Property& record) override;
    void OnSignGone(const String& id) override;

    void Send(SignMail::Command command) const;
    void Repeat() const;
    void ForgetContacts();
    void ShowOwnSign() const;
    void HideOwnSign() const;

    String localName;
    std::shared_ptr<SignMail> mail; // With the thread; see SignMail.
    std::thread thread;             // Runs from the first sign-in on.
    unsigned session = 0;
    ISignNetworkListener* listener = nullptr;

    SignState state;
    std::map<String, SignContact> contacts;
    std::map<String, Sign> signs;
    std::set<String> asking;
    std::optional<Sign> ownSign;
    bool publishes = false;
    bool withAddress = false;
};

void XmppSignNetwork::Impl::OnState(const SignState& next)
{
    // The sign stands under the own address, and moves with it.
    const bool isMoving = next.ownId != state.ownId && ownSign;
    if (isMoving)
        HideOwnSign();
    state = next;
    if (listener != nullptr)
        listener->OnState(state);
    if (isMoving)
        ShowOwnSign();
}

void XmppSignNetwork::Impl::OnContact(const SignContact& contact)
{
    contacts[contact.id] = contact;
    if (listener != nullptr)
        listener->OnContact(contact);
}

void XmppSignNetwork::Impl::OnContactGone(const String& id)
{
    contacts.erase(id);
    if (listener != nullptr)
        listener->OnContactGone(id);
}

void XmppSignNetwork::Impl::OnContactAsks(const String& id)
{
    asking.insert(id);
    if (listener != nullptr)
        listener->OnContactAsks(id);
}

void XmppSignNetwork::Impl::OnRequestGone(const String& id)
{
    asking.erase(id);
    if (listener != nullptr)
        listener->OnRequestGone(id);
}

void XmppSignNetwork::Impl::OnSign(const String& id,
                                   const String& kind,
                                   const String& title,
                                   const Property& record)
{
    signs[id] = {kind, title, record};
    if (listener != nullptr)
        listener->OnSign(id, kind, title, record);
}

void XmppSignNetwork::Impl::OnSignGone(const String& id)
{
    signs.erase(id);
    if (listener != nullptr)
        listener->OnSignGone(id);
}

void XmppSignNetwork::Impl::Send(SignMail::Command command) const
{
    if (thread.joinable())
        mail->Send(std::move(command), session);
}

void XmppSignNetwork::Impl::Repeat() const
{
    listener->OnState(state);
    for (const auto& [id, contact] : contacts)
        listener->OnContact(contact);
    for (const String& id : asking)
        listener->OnContactAsks(id);
    for (const auto& [id, sign] : signs)
        listener->OnSign(id, sign.kind, sign.title, sign.record);
    ShowOwnSign();
}

void XmppSignNetwork::Impl::ForgetContacts()
{
    while (!signs.empty())
        OnSignGone(String(signs.begin()->first));
    while (!contacts.empty())
        OnContactGone(String(contacts.begin()->first));
    while (!asking.empty())
        OnRequestGone(String(*asking.begin()));
}

void XmppSignNetwork::Impl::ShowOwnSign() const
{
    if (listener != nullptr && ownSign)
        listener->OnSign(state.ownId, ownSign->kind, ownSign->title, ownSign->record);
}

void XmppSignNetwork::Impl::HideOwnSign() const
{
    if (listener != nullptr)
        listener->OnSignGone(state.ownId);
}

XmppSignNetwork::XmppSignNetwork(const String& localName,
                                 std::unique_ptr<ISecretStore> store,
                                 SignAddressRule rule,
                                 const SignPatience& patience)
    : impl_(std::make_unique<Impl>(localName,
                                   std::make_shared<SignMail>(std::move(store), rule, patience)))
{
}

XmppSignNetwork::~XmppSignNetwork()
{
    SignMail& mail = *impl_->mail;
    mail.SetReceiver(nullptr);
    if (!impl_->thread.joinable())
        return;
    mail.watch.Limit(XmppStream::kCloseLimit);
    mail.Quit();
    if (mail.WaitForEnd(kLongestEnd))
        impl_->thread.join();
    else
        impl_->thread.detach(); // It ends by itself, on what it owns.
}

void XmppSignNetwork::SetListener(ISignNetworkListener* listener)
{
    impl_->listener = listener;
    if (listener != nullptr)
        impl_->Repeat();
}

void XmppSignNetwork::SignIn(const SignAccount& account)
{
    Impl& impl = *impl_;
    const bool isFirst = !impl.thread.joinable();
    if (isFirst)
        impl.thread = StartXmppThread(impl.mail);
    else
        impl.mail->watch.Limit(XmppStream::kCloseLimit);
    ++impl.session;
    impl.Send([account](XmppClient& client) { client.SignIn(account); });
    if (isFirst) {
        SetPublishing(impl.publishes, impl.withAddress);
        if (impl.ownSign)
            impl.Send([sign = *impl.ownSign](XmppClient& client) { client.SetSign(sign); });
    }
    impl.ForgetContacts();
    impl.OnState({SignConnection::Connecting, 0, String(), {}, NormalizeSignId(account.address)});
}

void XmppSignNetwork::SignOut()
{
    Impl& impl = *impl_;
    if (impl.state.connection == SignConnection::LocalOnly)
        return;
    impl.mail->watch.Limit(XmppStream::kCloseLimit);
    ++impl.session;
    impl.Send([](XmppClient& client) { client.SignOut(); });
    impl.ForgetContacts();
    impl.OnState({SignConnection::LocalOnly, 0, String(), {}, impl.localName});
}

void XmppSignNetwork::GivePassword(const std::string& password, bool keep)
{
    impl_->Send([password, keep](XmppClient& client) { client.GivePassword(password, keep); });
}

void XmppSignNetwork::TryNow()
{
    impl_->Send([](XmppClient& client) { client.TryNow(); });
}

void XmppSignNetwork::SetPublishing(bool publish, bool withAddress)
{
    impl_->publishes = publish;
    impl_->withAddress = withAddress;
    impl_->Send(
        [publish, withAddress](XmppClient& client) { client.SetPublishing(publish, withAddress); });
}

void XmppSignNetwork::SetSign(const String& kind, const String& title, const Property& sign)
{
    impl_->ownSign = Sign{kind, title, sign};
    impl_->Send([own = *impl_->ownSign](XmppClient& client) { client.SetSign(own); });
    impl_->ShowOwnSign();
}

void XmppSignNetwork::RemoveSign()
{
    if (!impl_->ownSign)
        return;
    impl_->ownSign.reset();
    impl_->Send([](XmppClient& client) { client.RemoveSign(); });
    impl_->HideOwnSign();
}

void XmppSignNetwork::AddContact(const String& id)
{
    impl_->Send([name = ToBytes(id)](XmppClient& client) { client.AddContact(name); });
}

void XmppSignNetwork::AnswerContact(const String& id, bool yes)
{
    impl_->asking.erase(id);
    impl_->Send([name = ToBytes(id), yes](XmppClient& client) { client.AnswerContact(name, yes); });
}

void XmppSignNetwork::RemoveContact(const String& id)
{
    impl_->Send([name = ToBytes(id)](XmppClient& client) { client.RemoveContact(name); });
}

void XmppSignNetwork::RenameContact(const String& id, const String& name)
{
    const std::string called = common::CString_to_utf8(CleanSignText(name, kLongestContactName));
    impl_->Send(
        [bare = ToBytes(id), called](XmppClient& client) { client.RenameContact(bare, called); });
}

void XmppSignNetwork::TrustCertificate(const std::string& fingerprint)
{
    impl_->Send([fingerprint](XmppClient& client) { client.TrustCertificate(fingerprint); });
}

String XmppSignNetwork::GetOwnId() const
{
    return impl_->state.ownId;
}

} // namespace kivo::host
