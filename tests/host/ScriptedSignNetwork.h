#pragma once

#include "host/sign/ISignNetwork.h"
#include "shell/contracts/base/Property.h"
#include "shell/contracts/common/Text.h"

#include <utility>

namespace kivo::host {

// A network without a network: it writes down what it is asked, and tells what the test says.
class ScriptedSignNetwork final : public ISignNetwork {
public:
    void SetListener(ISignNetworkListener* to) override
    {
        listener = to;
        if (listener != nullptr)
            SetState(SignConnection::LocalOnly);
    }
    void SignIn(const SignAccount& account) override
    {
        log += u"in:" + account.address + u"@" + account.server + u":" +
               common::ToText(account.port) + u" ";
        SetState(SignConnection::Connecting);
    }
    void SignOut() override
    {
        log += u"out ";
        SetState(SignConnection::LocalOnly);
    }
    void GivePassword(const std::string& password, bool keep) override
    {
        log += u"password:" + common::utf8_to_CString(password) + (keep ? u"+keep " : u" ");
    }
    void TryNow() override { log += u"again "; }
    void SetPublishing(bool publish, bool withAddress) override
    {
        log += publish ? (withAddress ? u"publish " : u"publish:title ") : u"hide ";
    }
    void SetSign(const String& kind, const String& title, const Property& sign) override
    {
        log += u"sign:" + title + u" ";
        listener->OnSign(ownId, kind, title, sign);
    }
    void RemoveSign() override
    {
        log += u"unsign ";
        if (listener != nullptr)
            listener->OnSignGone(ownId);
    }
    void AddContact(const String& id) override { log += u"add:" + id + u" "; }
    void AnswerContact(const String& id, bool yes) override
    {
        log += (yes ? u"allow:" : u"decline:") + id + u" ";
    }
    void RemoveContact(const String& id) override { log += u"remove:" + id + u" "; }
    void RenameContact(const String& id, const String& name) override
    {
        log += u"rename:" + id + u"=" + name + u" ";
    }
    void TrustCertificate(const std::string& trusted) override
    {
        log += u"trust:" + common::utf8_to_CString(trusted) + u" ";
    }
    [[nodiscard]] String GetOwnId() const override { return ownId; }

    void SetState(SignConnection connection, int seconds = 0, const String& reason = {}) const
    {
        SignState state;
        state.connection = connection;
        state.seconds = seconds;
        state.reason = reason;
        state.ownId = ownId;
        if (connection == SignConnection::UntrustedCertificate)
            state.fingerprint = fingerprint;
        listener->OnState(state);
    }
    void
    SetSignOf(const String& id, const String& kind, const String& title, const String& url) const
    {
        Property sign;
        sign.SetText(0, url);
        sign.SetText(1, title);
        listener->OnSign(id, kind, title, sign);
    }
    [[nodiscard]] String TakeLog() { return std::exchange(log, String()); }

    ISignNetworkListener* listener = nullptr;
    String ownId = u"me";
    std::string fingerprint = "0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef";
    String log;
};

} // namespace kivo::host
