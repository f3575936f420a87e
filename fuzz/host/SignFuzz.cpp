#include "fuzz/Fuzz.h"
#include "host/sign/SignText.h"
#include "host/sign/XmppStanzas.h"
#include "shell/contracts/base/PackError.h"
#include "shell/contracts/base/Unpack.h"

#include <memory>

namespace kivo::host {

namespace {

using fuzz::Require;

std::optional<Sign> Travel(const Tune& tune)
{
    const std::unique_ptr<xmpp_ctx_t, decltype(&xmpp_ctx_free)> context(
        xmpp_ctx_new(nullptr, nullptr), &xmpp_ctx_free);
    const std::string wire = MakePublish(context.get(), "1", tune).ToText();
    xmpp_stanza_t* const stanza = xmpp_stanza_new_from_string(context.get(), wire.c_str());
    Require(stanza != nullptr); // A server that can't read it ends the stream.
    const XmppElement item =
        XmppElement(stanza).Find("pubsub").Find("publish").Find("item").Find("tune");
    std::optional<Sign> sign = ReadTune(ReadTuneElement(item), SignAddressRule::Any);
    xmpp_stanza_release(stanza);
    return sign;
}

} // namespace

// A record as a plug-in hands it over: what leaves can be read, holds no path, and comes back.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    Sign sign;
    Unpack unpack(bytes, count);
    try {
        sign.record.unmarshal(unpack);
    } catch (UnpackError* error) {
        const std::unique_ptr<UnpackError> owned(error);
    }
    sign.kind = sign.record.GetText(2);
    sign.title = sign.record.GetText(3);
    for (const bool withAddress : {true, false}) {
        const Tune tune = MakeTune(sign, withAddress);
        Require(tune.uri.empty() ||
                (withAddress && tune.uri == sign.record.GetBytes(0) && IsSignAddress(tune.uri)));
        Require(tune.artist.empty() && tune.source.empty() && tune.track.empty());
        const std::optional<Sign> back = Travel(tune);
        Require(back.has_value() == !IsEmpty(tune));
        if (!back || tune.title.empty())
            continue;
        const String title = sign.record.GetText(1);
        Require(back->title == CleanSignText(title.empty() ? sign.title : title));
        Require(tune.uri.empty() || back->record.GetBytes(0) == tune.uri);
    }
    return 0;
}

} // namespace kivo::host
