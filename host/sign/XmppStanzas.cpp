#include "host/sign/XmppStanzas.h"

#include "shell/contracts/common/Text.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <string_view>

namespace kivo::host {

namespace {

constexpr char kTune[] = "http://jabber.org/protocol/tune";
constexpr char kSign[] = "urn:x-kivo:sign:0";
constexpr char kPubSub[] = "http://jabber.org/protocol/pubsub";
constexpr char kPubSubOwner[] = "http://jabber.org/protocol/pubsub#owner";
constexpr char kPubSubEvent[] = "http://jabber.org/protocol/pubsub#event";
constexpr char kPublishOptions[] = "http://jabber.org/protocol/pubsub#publish-options";
constexpr char kNodeConfig[] = "http://jabber.org/protocol/pubsub#node_config";
constexpr char kPubSubErrors[] = "http://jabber.org/protocol/pubsub#errors";
constexpr char kForm[] = "jabber:x:data";
constexpr char kCaps[] = "http://jabber.org/protocol/caps";
constexpr char kPing[] = "urn:xmpp:ping";
constexpr char kClient[] = "urn:x-kivo";
constexpr char kItem[] = "current";
constexpr char kLowPriority[] = "-1";
constexpr std::size_t kMaxGroups = 50; // Of one contact.

// What this client understands, sorted by bytes: the hash of its abilities is made of them in this
// order.
constexpr const char* kFeatures[] = {
    kCaps,
    XMPP_NS_DISCO_INFO,
    kTune,
    "http://jabber.org/protocol/tune+notify",
    kPing,
};

XmppStanza MakeIq(xmpp_ctx_t* context, const char* type, const std::string& id)
{
    XmppStanza iq(context, "iq");
    iq.Set("type", type).Set("id", id);
    return iq;
}

XmppStanza MakeField(xmpp_ctx_t* context,
                     const std::string& name,
                     const std::string& value,
                     const std::string& type = {})
{
    XmppStanza field(context, "field");
    field.Set("var", name).Set("type", type).AddText("value", value);
    return field;
}

// Only contacts, and nothing of it is kept longer than it holds.
XmppStanza MakeAccessForm(xmpp_ctx_t* context, const char* formType)
{
    XmppStanza form(context, "x", kForm);
    form.Set("type", "submit");
    form.Add(MakeField(context, "FORM_TYPE", formType, "hidden"));
    form.Add(MakeField(context, "pubsub#access_model", "presence"));
    return form;
}

XmppStanza MakeTuneElement(xmpp_ctx_t* context, const Tune& tune)
{
    XmppStanza element(context, "tune", kTune);
    element.AddText("artist", tune.artist);
    element.AddText("source", tune.source);
    element.AddText("title", tune.title);
    element.AddText("track", tune.track);
    element.AddText("uri", tune.uri);
    if (tune.isOurs) {
        XmppStanza marker(context, "sign", kSign);
        marker.Set("kind", tune.kind).Set("local", tune.isLocal ? "true" : "");
        element.Add(marker);
    }
    return element;
}

XmppStanza MakeAbilities(xmpp_ctx_t* context)
{
    XmppStanza query(context, "query", XMPP_NS_DISCO_INFO);
    XmppStanza identity(context, "identity");
    query.Add(identity.Set("category", "client").Set("type", "pc").Set("name", "kivo"));
    for (const char* const name : kFeatures) {
        XmppStanza feature(context, "feature");
        query.Add(feature.Set("var", name));
    }
    return query;
}

// By which others know the abilities without asking each time.
std::string MakeAbilitiesHash(xmpp_ctx_t* context)
{
    std::string text = "client/pc//kivo<";
    for (const char* const name : kFeatures)
        text.append(name).append("<");
    unsigned char digest[XMPP_SHA1_DIGEST_SIZE];
    xmpp_sha1_digest(
        reinterpret_cast<const unsigned char*>(text.data()), text.size(), std::data(digest));
    char* const hash = xmpp_base64_encode(context, std::data(digest), std::size(digest));
    std::string copy = hash != nullptr ? hash : "";
    xmpp_free(context, hash);
    return copy;
}

XmppStanza MakeFailure(xmpp_ctx_t* context)
{
    XmppStanza error(context, "error");
    error.Set("type", "cancel");
    error.Add(XmppStanza(context, "service-unavailable", XMPP_NS_STANZAS_IETF));
    return error;
}

// The tune in the items of an event; an item that was taken away is an empty one.
std::optional<Tune> FindTune(XmppElement items)
{
    std::optional<Tune> found;
    for (XmppElement child = items.GetFirst(); child; child = child.GetNext()) {
        if (child.Is("retract"))
            found = Tune();
        if (!child.Is("item"))
            continue;
        if (const XmppElement tune = child.Find("tune", kTune))
            found = ReadTuneElement(tune);
    }
    return found;
}

RosterItem::Subscription ReadSubscription(std::string_view text)
{
    using Subscription = RosterItem::Subscription;
    struct Row {
        std::string_view text;
        Subscription subscription;
    };
    constexpr Row kRows[] = {
        {"to",     Subscription::To    },
        {"from",   Subscription::From  },
        {"both",   Subscription::Both  },
        {"remove", Subscription::Remove},
    };
    for (const Row& row : kRows) {
        if (row.text == text)
            return row.subscription;
    }
    return Subscription::None;
}

} // namespace

XmppStanza MakePublish(xmpp_ctx_t* context, const std::string& id, const Tune& tune)
{
    XmppStanza item(context, "item");
    item.Set("id", kItem).Add(MakeTuneElement(context, tune));
    XmppStanza publish(context, "publish");
    publish.Set("node", kTune).Add(item);
    XmppStanza options(context, "publish-options");
    options.Add(MakeAccessForm(context, kPublishOptions));
    XmppStanza pubsub(context, "pubsub", kPubSub);
    pubsub.Add(publish).Add(options);
    XmppStanza iq = MakeIq(context, "set", id);
    iq.Add(pubsub);
    return iq;
}

XmppStanza MakeOwnTuneRequest(xmpp_ctx_t* context, const std::string& id)
{
    XmppStanza items(context, "items");
    items.Set("node", kTune);
    XmppStanza pubsub(context, "pubsub", kPubSub);
    pubsub.Add(items);
    XmppStanza iq = MakeIq(context, "get", id);
    iq.Add(pubsub);
    return iq;
}

XmppStanza MakeAccessChange(xmpp_ctx_t* context, const std::string& id)
{
    XmppStanza configure(context, "configure");
    configure.Set("node", kTune).Add(MakeAccessForm(context, kNodeConfig));
    XmppStanza pubsub(context, "pubsub", kPubSubOwner);
    pubsub.Add(configure);
    XmppStanza iq = MakeIq(context, "set", id);
    iq.Add(pubsub);
    return iq;
}

XmppStanza MakePresence(xmpp_ctx_t* context)
{
    XmppStanza caps(context, "c", kCaps);
    caps.Set("hash", "sha-1").Set("node", kClient).Set("ver", MakeAbilitiesHash(context));
    XmppStanza presence(context, "presence");
    presence.AddText("priority", kLowPriority).Add(caps);
    return presence;
}

XmppStanza MakePresence(xmpp_ctx_t* context, const std::string& type, const std::string& to)
{
    XmppStanza presence(context, "presence");
    presence.Set("type", type).Set("to", to);
    return presence;
}

XmppStanza MakeRosterRequest(xmpp_ctx_t* context, const std::string& id)
{
    XmppStanza iq = MakeIq(context, "get", id);
    iq.Add(XmppStanza(context, "query", XMPP_NS_ROSTER));
    return iq;
}

XmppStanza MakeRosterRemoval(xmpp_ctx_t* context, const std::string& id, const std::string& contact)
{
    XmppStanza item(context, "item");
    item.Set("jid", contact).Set("subscription", "remove");
    XmppStanza query(context, "query", XMPP_NS_ROSTER);
    query.Add(item);
    XmppStanza iq = MakeIq(context, "set", id);
    iq.Add(query);
    return iq;
}

XmppStanza MakeRosterChange(xmpp_ctx_t* context, const std::string& id, const RosterItem& item)
{
    XmppStanza entry(context, "item");
    entry.Set("jid", item.id).Set("name", item.name);
    for (const std::string& group : item.groups)
        entry.AddText("group", group);
    XmppStanza query(context, "query", XMPP_NS_ROSTER);
    query.Add(entry);
    XmppStanza iq = MakeIq(context, "set", id);
    iq.Add(query);
    return iq;
}

XmppStanza MakeInfoRequest(xmpp_ctx_t* context, const std::string& id, const std::string& to)
{
    XmppStanza iq = MakeIq(context, "get", id);
    iq.Set("to", to).Add(XmppStanza(context, "query", XMPP_NS_DISCO_INFO));
    return iq;
}

XmppStanza MakePing(xmpp_ctx_t* context, const std::string& id)
{
    XmppStanza iq = MakeIq(context, "get", id);
    iq.Add(XmppStanza(context, "ping", kPing));
    return iq;
}

std::optional<XmppStanza> MakeAnswer(xmpp_ctx_t* context, XmppElement request, bool isTrusted)
{
    const std::string type = request.Get("type");
    if (!request.Is("iq") || (type != "get" && type != "set"))
        return std::nullopt;
    const bool isInfo = type == "get" && request.Find("query", XMPP_NS_DISCO_INFO);
    const bool isPing = type == "get" && request.Find("ping", kPing);
    const bool isListChange = type == "set" && request.Find("query", XMPP_NS_ROSTER);
    const bool isKnown = isTrusted && (isInfo || isPing || isListChange);
    XmppStanza answer = MakeIq(context, isKnown ? "result" : "error", request.Get("id"));
    answer.Set("to", request.Get("from"));
    if (!isKnown)
        answer.Add(MakeFailure(context));
    else if (isInfo)
        answer.Add(MakeAbilities(context).Set(
            "node", request.Find("query", XMPP_NS_DISCO_INFO).Get("node")));
    return answer;
}

std::optional<TuneEvent> ReadTuneEvent(XmppElement message)
{
    if (!message.Is("message") || message.Get("type") == "error")
        return std::nullopt;
    const XmppElement event = message.Find("event", kPubSubEvent);
    for (XmppElement child = event.GetFirst(); child; child = child.GetNext()) {
        if (child.Get("node") != kTune)
            continue;
        std::optional<Tune> tune = child.Is("items") ? FindTune(child) : std::nullopt;
        if (child.Is("purge") || child.Is("delete"))
            tune = Tune();
        if (tune)
            return TuneEvent{message.Get("from"), *tune};
    }
    return std::nullopt;
}

Tune ReadOwnTune(XmppElement answer)
{
    return FindTune(answer.Find("pubsub", kPubSub).Find("items")).value_or(Tune());
}

Tune ReadTuneElement(XmppElement element)
{
    Tune tune;
    tune.artist = element.GetText("artist");
    tune.source = element.GetText("source");
    tune.title = element.GetText("title");
    tune.track = element.GetText("track");
    tune.uri = element.GetText("uri");
    if (const XmppElement marker = element.Find("sign", kSign)) {
        tune.isOurs = true;
        tune.isLocal = marker.Get("local") == "true";
        tune.kind = marker.Get("kind");
    }
    return tune;
}

std::optional<std::vector<RosterItem>> ReadRoster(XmppElement iq)
{
    const XmppElement query = iq.Find("query", XMPP_NS_ROSTER);
    if (!query)
        return std::nullopt;
    std::vector<RosterItem> items;
    for (XmppElement child = query.GetFirst(); child; child = child.GetNext()) {
        if (!child.Is("item"))
            continue;
        RosterItem item;
        item.id = GetBare(child.Get("jid"));
        item.name = child.Get("name");
        item.subscription = ReadSubscription(child.Get("subscription"));
        item.isAsked = child.Get("ask") == "subscribe";
        for (XmppElement group = child.GetFirst(); group; group = group.GetNext()) {
            if (group.Is("group") && item.groups.size() < kMaxGroups)
                item.groups.push_back(group.GetText());
        }
        items.push_back(std::move(item));
    }
    return items;
}

SignPresence ReadPresence(XmppElement presence)
{
    const std::string show = presence.GetText("show");
    if (show == "away" || show == "xa")
        return SignPresence::Away;
    return show == "dnd" ? SignPresence::Busy : SignPresence::Online;
}

int ReadPriority(XmppElement presence)
{
    return std::clamp(common::BytesToInt(presence.GetText("priority")), -128, 127);
}

bool HasEventing(XmppElement infoAnswer)
{
    const XmppElement query = infoAnswer.Find("query", XMPP_NS_DISCO_INFO);
    bool hasNodes = false;
    bool knowsOptions = false; // Without them a tune might go to a node that everybody reads.
    for (XmppElement child = query.GetFirst(); child; child = child.GetNext()) {
        hasNodes = hasNodes || (child.Is("identity") && child.Get("category") == "pubsub" &&
                                child.Get("type") == "pep");
        knowsOptions = knowsOptions || (child.Is("feature") && child.Get("var") == kPublishOptions);
    }
    return hasNodes && knowsOptions;
}

bool IsConflict(XmppElement errorAnswer)
{
    const XmppElement error = errorAnswer.Find("error");
    return error.Find("conflict", XMPP_NS_STANZAS_IETF) ||
           error.Find("precondition-not-met", kPubSubErrors);
}

} // namespace kivo::host
