#pragma once

#include <strophe.h>

#include <string>
#include <utility>

namespace kivo::host {

// An element that is being built. What it holds must be valid UTF-8 without controls: the library
// escapes it and checks nothing. Thread: the context's.
class XmppStanza {
public:
    XmppStanza(xmpp_ctx_t* context, const char* name, const char* space = nullptr);
    XmppStanza(XmppStanza&& other) noexcept
        : stanza_(std::exchange(other.stanza_, nullptr))
    {
    }
    XmppStanza(const XmppStanza&) = delete;
    XmppStanza& operator=(const XmppStanza&) = delete;
    XmppStanza& operator=(XmppStanza&&) = delete;
    ~XmppStanza();

    XmppStanza& Set(const char* name, const std::string& value); // An empty value: nothing is set.
    XmppStanza& Add(const XmppStanza& child);
    XmppStanza& AddText(const char* name, const std::string& text); // Empty: nothing is added.

    [[nodiscard]] xmpp_stanza_t* Get() const { return stanza_; }
    [[nodiscard]] std::string ToText() const;

private:
    xmpp_stanza_t* stanza_;
};

// What a received element says; an absent one and an absent attribute or text read as empty.
// Thread: the context's.
class XmppElement {
public:
    explicit XmppElement(xmpp_stanza_t* stanza) // Borrowed; may be null.
        : stanza_(stanza)
    {
    }

    [[nodiscard]] explicit operator bool() const { return stanza_ != nullptr; }
    [[nodiscard]] bool Is(const char* name, const char* space) const;
    [[nodiscard]] bool Is(const char* name) const;
    [[nodiscard]] std::string Get(const char* attribute) const;
    [[nodiscard]] std::string GetText() const;
    [[nodiscard]] std::string GetText(const char* child) const;
    [[nodiscard]] XmppElement Find(const char* child) const;
    [[nodiscard]] XmppElement Find(const char* child, const char* space) const;
    [[nodiscard]] XmppElement GetFirst() const;
    [[nodiscard]] XmppElement GetNext() const;
    [[nodiscard]] std::string ToText() const;

private:
    xmpp_stanza_t* stanza_;
};

} // namespace kivo::host
