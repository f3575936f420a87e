#include "host/sign/XmppClient.h"

#include "host/sign/SignText.h"
#include "host/sign/XmppStanzas.h"
#include "shell/contracts/common/Text.h"

#include <algorithm>
#include <utility>

namespace kivo::host {

namespace {

using Clock = std::chrono::steady_clock;

// Strangers who ask, and requests of the user while offline; beyond that nobody reads them.
constexpr std::size_t kMaxAsking = 100;
constexpr std::size_t kMaxRequests = 100;
constexpr std::size_t kLongestReason = 200;
constexpr int kMaxUnsent = 1000; // Stanzas.

String ToText(const std::string& bytes)
{
    return common::utf8_to_CString(bytes);
}

} // namespace

XmppClient::XmppClient(const Parts& parts)
    : listener_(parts.listener)
    , store_(parts.store)
    , watch_(parts.watch)
    , rule_(parts.rule)
    , patience_(parts.patience)
    , stream_(*this, watch_, patience_.attempt)
    , roster_(listener_)
{
}

void XmppClient::SignIn(const SignAccount& account)
{
    // What the user gave for this account and server counts on: a password that no keyring keeps,
    // and requests that wait for the stream.
    const bool isSame = account_ && account_->address == account.address &&
                        account_->server == account.server && account_->port == account.port;
    std::string password = isSame ? password_ : std::string();
    auto requests = isSame ? requests_ : std::vector<Request>();
    SignOut();
    password_ = std::move(password);
    requests_ = std::move(requests);
    account_ = account;
    address_ = common::CString_to_utf8(NormalizeSignId(account.address));
    own_ = address_;
    delay_.Reset();
    if (phase_ == Phase::Idle)
        BeginSoon();
}

void XmppClient::SignOut()
{
    account_.reset();
    std::fill(password_.begin(), password_.end(), '\0');
    password_.clear();
    isPasswordGiven_ = false;
    losesPassword_ = false;
    roster_.Clear();
    asking_.clear();
    asked_.clear();
    requests_.clear();
    if (stream_.IsActive())
        Leave();
    else
        phase_ = Phase::Idle;
}

void XmppClient::GivePassword(const std::string& password, bool keep)
{
    if (!account_ || password.empty())
        return;
    password_ = password;
    isPasswordGiven_ = true;
    keepsPassword_ = keep;
    losesPassword_ = false;
    if (phase_ == Phase::PasswordNeeded || phase_ == Phase::Stopped)
        BeginSoon();
    else if (stream_.IsActive() && phase_ != Phase::Leaving)
        Leave(); // An attempt with another password is under way; the next one takes this.
}

void XmppClient::TrustCertificate(const std::string& fingerprint)
{
    if (!account_)
        return;
    account_->fingerprint = fingerprint;
    if (phase_ == Phase::Stopped)
        BeginSoon();
}

void XmppClient::TryNow()
{
    if (account_ && (phase_ == Phase::Waiting || phase_ == Phase::Stopped))
        BeginSoon();
}

void XmppClient::SetPublishing(bool publish, bool withAddress)
{
    publishes_ = publish;
    withAddress_ = withAddress;
    ReconsiderSign();
}

void XmppClient::SetSign(const Sign& sign)
{
    sign_ = sign;
    ReconsiderSign();
}

void XmppClient::RemoveSign()
{
    sign_.reset();
    ReconsiderSign();
}

void XmppClient::ReconsiderSign()
{
    const Time now = Clock::now();
    if (!publishes_)
        policy_.Withdraw(now);
    else
        policy_.Want(sign_ ? MakeTune(*sign_, withAddress_) : Tune(), now);
}

void XmppClient::AddContact(const std::string& id)
{
    Handle({Wish::Add, id, {}});
}

void XmppClient::AnswerContact(const std::string& id, bool yes)
{
    asking_.erase(id);
    Handle({yes ? Wish::Accept : Wish::Decline, id, {}});
}

void XmppClient::RemoveContact(const std::string& id)
{
    Handle({Wish::Remove, id, {}});
}

void XmppClient::RenameContact(const std::string& id, const std::string& name)
{
    Handle({Wish::Rename, id, name});
}

// Before the contact list is there they wait: it says what is left to ask for.
void XmppClient::Handle(Request request)
{
    if (!account_ || request.id.empty())
        return;
    if (stream_.IsOpen() && hasRoster_)
        Fulfil(request);
    else if (requests_.size() < kMaxRequests)
        requests_.push_back(std::move(request));
}

void XmppClient::Fulfil(const Request& request)
{
    const std::string& id = request.id;
    switch (request.wish) {
    case Wish::Add:
        asked_.insert(id);
        SendPresence("subscribe", id);
        break;
    case Wish::Accept:
        DropAsking(id);
        asked_.insert(id);
        SendPresence("subscribed", id);
        if (!roster_.IsSeen(id) && !roster_.IsAsked(id))
            SendPresence("subscribe", id); // Both see each other.
        break;
    case Wish::Decline:
        DropAsking(id);
        asked_.erase(id);
        SendPresence("unsubscribed", id);
        break;
    case Wish::Remove:
        asked_.erase(id);
        stream_.Send(MakeRosterRemoval(stream_.GetContext(), MakeId(), id));
        break;
    case Wish::Rename:
        if (const RosterItem* const known = roster_.GetItem(id)) {
            RosterItem item = *known;
            item.name = request.name;
            stream_.Send(MakeRosterChange(stream_.GetContext(), MakeId(), item));
        }
        break;
    }
}

void XmppClient::SendPresence(const char* type, const std::string& to)
{
    stream_.Send(MakePresence(stream_.GetContext(), type, to));
}

void XmppClient::BeginSoon()
{
    phase_ = Phase::Due;
    Tell({SignConnection::Connecting, 0, String(), {}, String()});
}

void XmppClient::Begin()
{
    if (password_.empty())
        password_ = store_.Read(ToText(address_)).value_or(std::string());
    if (password_.empty()) {
        phase_ = Phase::PasswordNeeded;
        Tell({SignConnection::PasswordNeeded, 0, String(), {}, String()});
        return;
    }
    phase_ = Phase::Connecting;
    hasEventing_.reset();
    hasRoster_ = false;
    askedAt_.reset();
    stream_.Open({address_,
                  password_,
                  common::CString_to_utf8(account_->server),
                  account_->port,
                  account_->fingerprint});
}

// The server hears that nothing plays any more before it hears the end.
void XmppClient::Leave()
{
    const bool isOut = stream_.IsOpen() && hasEventing_.value_or(false) && policy_.IsOut();
    if (isOut)
        stream_.Send(MakePublish(stream_.GetContext(), MakeId(), Tune()));
    phase_ = Phase::Leaving;
    stream_.Close();
}

void XmppClient::Wait()
{
    std::uniform_real_distribution<double> spread(0.0, 1.0);
    const auto delay = delay_.Next(spread(chance_));
    retryAt_ = Clock::now() + delay;
    phase_ = Phase::Waiting;
    const auto seconds = std::chrono::ceil<std::chrono::seconds>(delay).count();
    Tell({SignConnection::Waiting, static_cast<int>(seconds), String(), {}, String()});
}

void XmppClient::Work()
{
    const Time now = Clock::now();
    if (phase_ == Phase::Waiting && now >= retryAt_)
        BeginSoon();
    if (phase_ == Phase::Due)
        Begin();
    if (phase_ == Phase::Arriving || phase_ == Phase::Online)
        CheckServer();
    if (phase_ == Phase::Online) {
        KeepPassword();
        PublishDue();
    }
}

std::optional<XmppClient::Time> XmppClient::GetDue() const
{
    switch (phase_) {
    case Phase::Due: return Time();
    case Phase::Waiting: return retryAt_;
    case Phase::Arriving:
    case Phase::Online: {
        if (isPasswordGiven_ && phase_ == Phase::Online)
            return Time();
        Time word = askedAt_ ? *askedAt_ + patience_.answer : heardAt_ + patience_.silence;
        if (phase_ == Phase::Arriving)
            word = std::min(word, openedAt_ + patience_.arrival);
        const std::optional<Time> tune = phase_ == Phase::Online ? policy_.GetDue() : std::nullopt;
        return tune ? std::min(word, *tune) : word;
    }
    default: return std::nullopt;
    }
}

bool XmppClient::IsAtRest() const
{
    return phase_ == Phase::Idle && !stream_.IsActive();
}

// A server that has gone without a word.
void XmppClient::CheckServer()
{
    const Time now = Clock::now();
    if (phase_ == Phase::Arriving && now >= openedAt_ + patience_.arrival) {
        openedAt_ = now; // Once more as long, if the cut doesn't end it.
        hasEventing_ = hasEventing_.value_or(false);
        if (hasRoster_)
            CheckArrival();
        else
            watch_.Limit(std::chrono::milliseconds(0));
    } else if (askedAt_ && now >= *askedAt_ + patience_.answer) {
        askedAt_ = now;
        watch_.Limit(std::chrono::milliseconds(0));
    } else if (!askedAt_ && now >= heardAt_ + patience_.silence) {
        askedAt_ = now;
        stream_.Send(MakePing(stream_.GetContext(), MakeId()));
    }
}

void XmppClient::KeepPassword()
{
    if (!std::exchange(isPasswordGiven_, false))
        return;
    if (!keepsPassword_) {
        store_.Erase(ToText(address_)); // An older one would be tried at the next start.
    } else if (!store_.Write(ToText(address_), password_)) {
        losesPassword_ = true;
        TellOnline();
    }
}

void XmppClient::PublishDue()
{
    const std::optional<Tune> tune = policy_.Take(Clock::now());
    if (!tune)
        return;
    sent_ = *tune;
    isAccessMended_ = false;
    Publish();
}

void XmppClient::Publish()
{
    publishId_ = MakeId();
    stream_.Send(MakePublish(stream_.GetContext(), publishId_, sent_));
}

void XmppClient::OnStreamOpen(const std::string& boundAddress)
{
    phase_ = Phase::Arriving;
    const String bound = NormalizeSignId(ToText(GetBare(boundAddress)));
    own_ = bound.empty() ? address_ : common::CString_to_utf8(bound);
    openedAt_ = heardAt_ = Clock::now();
    rosterId_ = MakeId();
    infoId_ = MakeId();
    stream_.Send(MakeRosterRequest(stream_.GetContext(), rosterId_));
    stream_.Send(MakeInfoRequest(stream_.GetContext(), infoId_, own_));
}

void XmppClient::OnStreamEnd(const StreamResult& result)
{
    const Time now = Clock::now();
    roster_.GoOffline();
    if (phase_ == Phase::Leaving)
        policy_.OnOrderlyEnd();
    else
        policy_.OnStreamEnd(now);
    if (phase_ == Phase::Leaving) {
        phase_ = Phase::Idle;
        if (account_)
            BeginSoon();
        return;
    }
    const bool wasOpen = phase_ == Phase::Arriving || phase_ == Phase::Online;
    if (wasOpen && now - openedAt_ >= kSteady)
        delay_.Reset();
    if (wasOpen || result.end == StreamEnd::Lost) {
        Wait();
        return;
    }
    phase_ = Phase::Stopped;
    const bool isRefused = result.end == StreamEnd::Refused;
    Tell({isRefused ? SignConnection::Refused : SignConnection::UntrustedCertificate,
          0,
          CleanSignText(ToText(result.text), kLongestReason),
          result.fingerprint,
          String()});
}

void XmppClient::OnStanza(XmppElement stanza)
{
    heardAt_ = Clock::now();
    askedAt_.reset();
    if (phase_ == Phase::Leaving)
        return;
    if (stanza.Is("iq"))
        OnIq(stanza);
    else if (stanza.Is("presence"))
        OnPresence(stanza);
    else if (const std::optional<TuneEvent> event = ReadTuneEvent(stanza))
        roster_.OnTune(event->from, ReadTune(event->tune, rule_));
}

void XmppClient::OnIq(XmppElement iq)
{
    const std::string from = iq.Get("from");
    const std::string type = iq.Get("type");
    const bool isOwn = IsOwn(from);
    if (type == "result" || type == "error") {
        if (isOwn)
            OnAnswer(iq);
        return;
    }
    // A stranger gets the answer that he would get if nobody were there.
    const std::optional<std::vector<RosterItem>> changes = ReadRoster(iq);
    const bool isTrusted = isOwn || (!changes && roster_.SeesUser(GetBare(from)));
    if (isOwn && type == "set" && changes) {
        for (const RosterItem& item : *changes) {
            roster_.SetItem(item);
            if (roster_.SeesUser(item.id))
                DropAsking(item.id); // Another device of the user's has let him in.
        }
    }
    // Whoever asks faster than he takes the answers gets no more of them.
    if (stream_.CountUnsent() >= kMaxUnsent)
        return;
    if (const std::optional<XmppStanza> answer = MakeAnswer(stream_.GetContext(), iq, isTrusted))
        stream_.Send(*answer);
}

void XmppClient::OnAnswer(XmppElement iq)
{
    const std::string id = iq.Get("id");
    if (id.empty())
        return;
    if (id == rosterId_ && !hasRoster_) {
        hasRoster_ = true;
        DropAllAsking(); // The server repeats what is still to be answered.
        roster_.SetItems(ReadRoster(iq).value_or(std::vector<RosterItem>()));
        // From here on the server sends who is there, and what they play.
        stream_.Send(MakePresence(stream_.GetContext()));
        CheckArrival();
    } else if (id == infoId_ && !hasEventing_) {
        hasEventing_ = iq.Get("type") == "result" && HasEventing(iq);
        CheckArrival();
    } else if (id == ownTuneId_) {
        const Tune shown = ReadOwnTune(iq);
        policy_.OnOnline(/*isClear=*/!shown.isOurs || IsEmpty(shown));
    } else if (id == publishId_ || id == accessId_) {
        OnPublishAnswer(iq);
    }
}

void XmppClient::CheckArrival()
{
    if (!hasRoster_ || !hasEventing_)
        return;
    phase_ = Phase::Online;
    if (*hasEventing_)
        StartPublishing();
    TellOnline();
    for (const Request& request : std::exchange(requests_, {}))
        Fulfil(request);
}

// What a crash has left goes. Who publishes nothing from here clears no more than that: another
// device of the user's may be playing.
void XmppClient::StartPublishing()
{
    if (publishes_) {
        policy_.OnOnline();
        return;
    }
    ownTuneId_ = MakeId();
    stream_.Send(MakeOwnTuneRequest(stream_.GetContext(), ownTuneId_));
}

// Another client may have opened the node to everybody. The server takes nothing then, until the
// node is as it has to be.
void XmppClient::OnPublishAnswer(XmppElement iq)
{
    const bool isError = iq.Get("type") == "error";
    const bool isOfAccess = iq.Get("id") == accessId_;
    if (isOfAccess && !isError) {
        Publish();
    } else if (!isOfAccess && isError && IsConflict(iq) && !isAccessMended_) {
        isAccessMended_ = true;
        accessId_ = MakeId();
        stream_.Send(MakeAccessChange(stream_.GetContext(), accessId_));
    }
}

void XmppClient::OnPresence(XmppElement presence)
{
    const std::string from = presence.Get("from");
    const std::string type = presence.Get("type");
    const std::string id = GetBare(from);
    if (id.empty() || id == own_)
        return;
    if (type.empty())
        roster_.OnPresence(from, ReadPresence(presence), ReadPriority(presence));
    else if (type == "unavailable" || type == "error")
        roster_.OnPresence(from, std::nullopt, 0);
    else if (type == "subscribe")
        OnAsk(id);
    else if (type == "unsubscribe")
        DropAsking(id);
}

void XmppClient::OnAsk(const std::string& id)
{
    if (roster_.IsAsked(id) || asked_.count(id) > 0) {
        SendPresence("subscribed", id); // The user has asked first.
        return;
    }
    const String text = ToText(id);
    if (asking_.size() >= kMaxAsking || NormalizeSignId(text) != text)
        return;
    if (asking_.insert(id).second)
        listener_.OnContactAsks(text);
}

void XmppClient::DropAsking(const std::string& id)
{
    if (asking_.erase(id) > 0)
        listener_.OnRequestGone(ToText(id));
}

void XmppClient::DropAllAsking()
{
    while (!asking_.empty())
        DropAsking(std::string(*asking_.begin()));
}

bool XmppClient::IsOwn(const std::string& from) const
{
    return from.empty() || GetBare(from) == own_ || from == own_.substr(own_.find('@') + 1);
}

std::string XmppClient::MakeId()
{
    return "k" + std::to_string(++lastId_);
}

void XmppClient::Tell(SignState state)
{
    state.ownId = ToText(own_);
    listener_.OnState(state);
}

void XmppClient::TellOnline()
{
    const bool carriesTunes = hasEventing_.value_or(false);
    SignState state;
    state.connection =
        carriesTunes ? SignConnection::Online : SignConnection::ServerWithoutEventing;
    state.losesPassword = losesPassword_;
    Tell(state);
}

} // namespace kivo::host
