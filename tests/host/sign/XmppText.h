#pragma once

#include "host/sign/XmppStanza.h"

#include <memory>
#include <string>

namespace kivo::test {

// Elements out of text, as the wire would bring them. Thread: one at a time.
class XmppText {
public:
    XmppText()
        : context_(xmpp_ctx_new(nullptr, nullptr), &xmpp_ctx_free)
    {
    }

    // Lives until the next one is read. Null element: it can't be read.
    [[nodiscard]] host::XmppElement Read(const std::string& text)
    {
        stanza_ = {xmpp_stanza_new_from_string(context_.get(), text.c_str()), &Release};
        return host::XmppElement(stanza_.get());
    }
    [[nodiscard]] xmpp_ctx_t* GetContext() const { return context_.get(); }

private:
    static void Release(xmpp_stanza_t* stanza)
    {
        if (stanza != nullptr)
            xmpp_stanza_release(stanza);
    }

    std::unique_ptr<xmpp_ctx_t, decltype(&xmpp_ctx_free)> context_;
    std::unique_ptr<xmpp_stanza_t, decltype(&Release)> stanza_{nullptr, &Release};
};

} // namespace kivo::test
