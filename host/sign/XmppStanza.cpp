#include "host/sign/XmppStanza.h"

#include <cstring>
#include <memory>

namespace kivo::host {

namespace {

struct FreeText {
    xmpp_ctx_t* context;
    void operator()(char* text) const { xmpp_free(context, text); }
};

bool IsEqual(const char* a, const char* b)
{
    return a != nullptr && b != nullptr && std::strcmp(a, b) == 0;
}

} // namespace

XmppStanza::XmppStanza(xmpp_ctx_t* context, const char* name, const char* space)
    : stanza_(xmpp_stanza_new(context))
{
    xmpp_stanza_set_name(stanza_, name);
    if (space != nullptr)
        xmpp_stanza_set_ns(stanza_, space);
}

XmppStanza::~XmppStanza()
{
    if (stanza_ != nullptr)
        xmpp_stanza_release(stanza_);
}

XmppStanza& XmppStanza::Set(const char* name, const std::string& value)
{
    if (!value.empty())
        xmpp_stanza_set_attribute(stanza_, name, value.c_str());
    return *this;
}

XmppStanza& XmppStanza::Add(const XmppStanza& child)
{
    xmpp_stanza_add_child(stanza_, child.stanza_);
    return *this;
}

XmppStanza& XmppStanza::AddText(const char* name, const std::string& text)
{
    if (text.empty())
        return *this;
    xmpp_ctx_t* const context = xmpp_stanza_get_context(stanza_);
    XmppStanza child(context, name);
    xmpp_stanza_t* const content = xmpp_stanza_new(context);
    xmpp_stanza_set_text_with_size(content, text.data(), text.size());
    xmpp_stanza_add_child_ex(child.stanza_, content, /*do_clone=*/0);
    return Add(child);
}

std::string XmppStanza::ToText() const
{
    return XmppElement(stanza_).ToText();
}

bool XmppElement::Is(const char* name, const char* space) const
{
    return Is(name) && IsEqual(xmpp_stanza_get_ns(stanza_), space);
}

bool XmppElement::Is(const char* name) const
{
    return stanza_ != nullptr && IsEqual(xmpp_stanza_get_name(stanza_), name);
}

std::string XmppElement::Get(const char* attribute) const
{
    const char* const value =
        stanza_ != nullptr ? xmpp_stanza_get_attribute(stanza_, attribute) : nullptr;
    return value != nullptr ? value : "";
}

std::string XmppElement::GetText() const
{
    if (stanza_ == nullptr)
        return {};
    const std::unique_ptr<char, FreeText> text(xmpp_stanza_get_text(stanza_),
                                               {xmpp_stanza_get_context(stanza_)});
    return text ? text.get() : "";
}

std::string XmppElement::GetText(const char* child) const
{
    return Find(child).GetText();
}

XmppElement XmppElement::Find(const char* child) const
{
    return XmppElement(stanza_ != nullptr ? xmpp_stanza_get_child_by_name(stanza_, child)
                                          : nullptr);
}

XmppElement XmppElement::Find(const char* child, const char* space) const
{
    for (XmppElement element = GetFirst(); element; element = element.GetNext()) {
        if (element.Is(child, space))
            return element;
    }
    return XmppElement(nullptr);
}

XmppElement XmppElement::GetFirst() const
{
    return XmppElement(stanza_ != nullptr ? xmpp_stanza_get_children(stanza_) : nullptr);
}

XmppElement XmppElement::GetNext() const
{
    return XmppElement(stanza_ != nullptr ? xmpp_stanza_get_next(stanza_) : nullptr);
}

std::string XmppElement::ToText() const
{
    char* buffer = nullptr;
    std::size_t size = 0;
    if (stanza_ == nullptr || xmpp_stanza_to_text(stanza_, &buffer, &size) != XMPP_EOK)
        return {};
    const std::unique_ptr<char, FreeText> owned(buffer, {xmpp_stanza_get_context(stanza_)});
    return {buffer, size};
}

} // namespace kivo::host
