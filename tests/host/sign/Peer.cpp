#include "tests/host/sign/Peer.h"

#include "host/sign/XmppStanzas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>

namespace kivo::test {

Peer::Peer(const SignServer& server, const std::string& name)
    : stream_(*this, watch_, host::SignPatience().attempt)
{
    stream_.Open({name + "@" + SignServer::kDomain,
                  SignServer::GetPassword(name),
                  "127.0.0.1",
                  server.GetPort(),
                  server.GetFingerprint()});
    EXPECT_TRUE(RunUntil([this] { return IsOnline(); }, 20000)) << server.ReadLog();
}

Peer::~Peer() = default;

void Peer::Say(const std::string& xml)
{
    xmpp_stanza_t* const stanza = xmpp_stanza_new_from_string(stream_.GetContext(), xml.c_str());
    ASSERT_NE(stanza, nullptr) << xml;
    stream_.Send(stanza);
    xmpp_stanza_release(stanza);
    stream_.Run(std::chrono::milliseconds(0));
}

void Peer::SayPresence()
{
    stream_.Send(host::MakePresence(stream_.GetContext()));
    stream_.Run(std::chrono::milliseconds(0));
}

void Peer::SayTune(const std::string& children)
{
    Say("<iq type='set' id='tune'><pubsub xmlns='http://jabber.org/protocol/pubsub'>"
        "<publish node='http://jabber.org/protocol/tune'><item id='current'>"
        "<tune xmlns='http://jabber.org/protocol/tune'>" +
        children + "</tune></item></publish></pubsub></iq>");
    EXPECT_NE(WaitFor("id=\"tune\""), "");
}

std::string Peer::WaitFor(const std::string& text, int milliseconds)
{
    const auto find = [&] {
        return std::find_if(received_.begin(), received_.end(), [&](const std::string& stanza) {
            return stanza.find(text) != std::string::npos;
        });
    };
    RunUntil([&] { return find() != received_.end(); }, milliseconds);
    return find() != received_.end() ? *find() : std::string();
}

std::string Peer::Ask(const std::string& xml)
{
    const std::string id = "ask" + std::to_string(++lastId_);
    std::string request = xml;
    request.replace(request.find("ID"), 2, id);
    Say(request);
    return WaitFor("id=\"" + id + "\"");
}

void Peer::OnStreamOpen(const std::string& boundAddress)
{
    address_ = boundAddress;
}

void Peer::OnStanza(host::XmppElement stanza)
{
    if (stanza.Is("iq") && stanza.Get("type") != "result" && stanza.Get("type") != "error") {
        if (const auto answer = host::MakeAnswer(stream_.GetContext(), stanza, /*isTrusted=*/true))
            stream_.Send(*answer);
    }
    received_.push_back(stanza.ToText());
}

void Peer::OnStreamEnd(const host::StreamResult& /*result*/)
{
    address_.clear();
}

bool Peer::RunUntil(const std::function<bool()>& isDone, int milliseconds)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    while (!isDone() && std::chrono::steady_clock::now() < end)
        stream_.Run(std::chrono::milliseconds(20));
    return isDone();
}

} // namespace kivo::test
