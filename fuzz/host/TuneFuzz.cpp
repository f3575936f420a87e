#include "fuzz/Fuzz.h"
#include "host/sign/SignText.h"
#include "host/sign/XmppStanzas.h"
#include "shell/contracts/common/Text.h"

#include <memory>

namespace kivo::host {

namespace {

// Whatever a contact says: one clean line, and an address that may be played or none.
void CheckTune(const Tune& tune)
{
    const std::optional<Sign> sign = ReadTune(tune, SignAddressRule::NotThisMachine);
    if (!sign)
        return;
    using fuzz::Require;
    Require(!sign->title.empty() && sign->title.size() <= kLongestSignText);
    Require(CleanSignText(sign->title) == sign->title);
    Require(sign->kind == u"music" || sign->kind == u"video");
    Require(sign->record.GetText(1) == sign->title);
    const std::string address = sign->record.GetBytes(0);
    Require(sign->record.GetText(0) == u"/" + sign->title ||
            IsPlayable(address, SignAddressRule::NotThisMachine));
}

} // namespace

// A stanza as the network brings it, in all the places where one is read.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    const std::string text(fuzz::AsText(bytes, count));
    const std::unique_ptr<xmpp_ctx_t, decltype(&xmpp_ctx_free)> context(
        xmpp_ctx_new(nullptr, nullptr), &xmpp_ctx_free);
    xmpp_stanza_t* const stanza = xmpp_stanza_new_from_string(context.get(), text.c_str());
    if (stanza == nullptr)
        return 0;
    const XmppElement element(stanza);
    CheckTune(ReadTuneElement(element));
    if (const auto event = ReadTuneEvent(element))
        CheckTune(event->tune);
    static_cast<void>(ReadRoster(element));
    static_cast<void>(ReadPresence(element));
    static_cast<void>(ReadPriority(element));
    static_cast<void>(HasEventing(element));
    static_cast<void>(IsConflict(element));
    for (const bool isTrusted : {true, false}) {
        if (const auto answer = MakeAnswer(context.get(), element, isTrusted))
            fuzz::Require(!answer->ToText().empty());
    }
    xmpp_stanza_release(stanza);
    return 0;
}

} // namespace kivo::host
