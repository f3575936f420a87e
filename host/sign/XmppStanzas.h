#pragma once

#include "host/sign/TuneMapping.h"
#include "host/sign/XmppRoster.h"
#include "host/sign/XmppStanza.h"

#include <optional>
#include <string>
#include <vector>

// The stanzas of the network: what is sent is built here, what comes is read here, whoever wrote
// it. Thread: the context's.
namespace kivo::host {

[[nodiscard]] XmppStanza MakePublish(xmpp_ctx_t* context, const std::string& id, const Tune& tune);

// Makes the node of tunes one that only contacts may read, whatever another client made of it.
[[nodiscard]] XmppStanza MakeAccessChange(xmpp_ctx_t* context, const std::string& id);

// What the server shows of the user.
[[nodiscard]] XmppStanza MakeOwnTuneRequest(xmpp_ctx_t* context, const std::string& id);

// There, able to take tunes, and below every client that shows messages: those go elsewhere.
[[nodiscard]] XmppStanza MakePresence(xmpp_ctx_t* context);
[[nodiscard]] XmppStanza
MakePresence(xmpp_ctx_t* context, const std::string& type, const std::string& to);

[[nodiscard]] XmppStanza MakeRosterRequest(xmpp_ctx_t* context, const std::string& id);
[[nodiscard]] XmppStanza
MakeRosterRemoval(xmpp_ctx_t* context, const std::string& id, const std::string& contact);
// Gives the contact the item's name, and leaves it in the item's groups.
[[nodiscard]] XmppStanza
MakeRosterChange(xmpp_ctx_t* context, const std::string& id, const RosterItem& item);
[[nodiscard]] XmppStanza
MakeInfoRequest(xmpp_ctx_t* context, const std::string& id, const std::string& to);
[[nodiscard]] XmppStanza MakePing(xmpp_ctx_t* context, const std::string& id);

// The answer to a request of others. A request without `from` is the own server's, and its answer
// has no `to`. Nothing: it isn't a request.
[[nodiscard]] std::optional<XmppStanza>
MakeAnswer(xmpp_ctx_t* context, XmppElement request, bool isTrusted);

// A tune that was published, and by whom; nothing: the message holds none. Any tune in it that
// shows nothing comes as an empty one.
struct TuneEvent {
    std::string from;
    Tune tune;
};
[[nodiscard]] std::optional<TuneEvent> ReadTuneEvent(XmppElement message);

[[nodiscard]] Tune ReadOwnTune(XmppElement answer); // Empty: it shows none.
[[nodiscard]] Tune ReadTuneElement(XmppElement element);

// The contact list in an answer or a change of it; nothing: there is none in it.
[[nodiscard]] std::optional<std::vector<RosterItem>> ReadRoster(XmppElement iq);

[[nodiscard]] SignPresence ReadPresence(XmppElement presence); // Of one that is there.
[[nodiscard]] int ReadPriority(XmppElement presence);

// Whether the server carries tunes, and lets nobody but contacts read them.
[[nodiscard]] bool HasEventing(XmppElement infoAnswer);
[[nodiscard]] bool IsConflict(XmppElement errorAnswer); // The node isn't as the publisher wants it.

} // namespace kivo::host
