#include "tests/host/sign/Person.h"

#include "shell/contracts/common/Text.h"
#include "tests/support/TestLoop.h"

#include <optional>
#include <utility>

namespace kivo::test {

namespace {

class Store final : public host::ISecretStore {
public:
    explicit Store(std::shared_ptr<Secrets> secrets)
        : secrets_(std::move(secrets))
    {
    }

    std::optional<std::string> Read(const String& address) override
    {
        const std::lock_guard lock(secrets_->mutex);
        const auto found = secrets_->passwords.find(address);
        return found != secrets_->passwords.end() ? std::optional(found->second) : std::nullopt;
    }
    bool Write(const String& address, const std::string& password) override
    {
        const std::lock_guard lock(secrets_->mutex);
        if (!secrets_->isLocked)
            secrets_->passwords[address] = password;
        return !secrets_->isLocked;
    }
    void Erase(const String& address) override
    {
        const std::lock_guard lock(secrets_->mutex);
        secrets_->passwords.erase(address);
        secrets_->erased.push_back(address);
    }

private:
    std::shared_ptr<Secrets> secrets_; // With the test, which looks into it.
};

} // namespace

std::unique_ptr<host::ISecretStore> MakeStore(std::shared_ptr<Secrets> secrets)
{
    return std::make_unique<Store>(std::move(secrets));
}

String ToText(const std::string& bytes)
{
    return common::utf8_to_CString(bytes);
}

Person::Person(const std::string& name,
               host::SignAddressRule rule,
               const host::SignPatience& patience)
    : name_(name)
    , network_(
          std::make_unique<host::XmppSignNetwork>(u"somebody", MakeStore(secrets), rule, patience))
{
    network_->SetListener(this);
    network_->SetPublishing(/*publish=*/true, /*withAddress=*/true);
}

Person::~Person()
{
    End();
}

bool Person::SignIn(const SignServer& server, int milliseconds)
{
    SetPassword(SignServer::GetPassword(name_));
    network_->SignIn(server.GetAccount(name_));
    return WaitForState(host::SignConnection::Online, milliseconds);
}

void Person::SetPassword(const std::string& password)
{
    const std::lock_guard lock(secrets->mutex);
    secrets->passwords[SignServer::GetId(name_)] = password;
}

void Person::Forget()
{
    network_->SetListener(nullptr);
    state = {};
    contacts.clear();
    signs.clear();
    asking.clear();
}

void Person::Listen()
{
    network_->SetListener(this);
}

void Person::End()
{
    network_.reset();
}

void Person::Play(const std::string& address, const std::string& title)
{
    Play("music", address, title);
}

void Person::Play(const std::string& kind, const std::string& address, const std::string& title)
{
    Property record;
    record.merge({
        {0, address},
        {1, title  }
    });
    network_->SetSign(ToText(kind), ToText(title), record);
}

bool Person::WaitForState(host::SignConnection wanted, int milliseconds) const
{
    return RunUntil([&] { return state.connection == wanted; }, milliseconds);
}

bool Person::WaitForTitle(const std::string& of, const std::string& title, int milliseconds)
{
    const String id = SignServer::GetId(of);
    return RunUntil([&] { return signs.contains(id) && signs[id].title == ToText(title); },
                    milliseconds);
}

bool Person::WaitForNoSign(const std::string& of, int milliseconds) const
{
    return RunUntil([&] { return !signs.contains(SignServer::GetId(of)); }, milliseconds);
}

bool Person::WaitForPresence(const std::string& of, host::SignPresence presence)
{
    const String id = SignServer::GetId(of);
    return RunUntil([&] { return contacts.contains(id) && contacts[id].presence == presence; },
                    20000);
}

std::string Person::GetAddress(const std::string& of) const
{
    const auto found = signs.find(SignServer::GetId(of));
    return found != signs.end() ? found->second.record.GetBytes(0) : std::string();
}

std::string Person::GetKept() const
{
    const std::lock_guard lock(secrets->mutex);
    const auto found = secrets->passwords.find(SignServer::GetId(name_));
    return found != secrets->passwords.end() ? found->second : std::string();
}

bool Person::HasErased() const
{
    const std::lock_guard lock(secrets->mutex);
    return !secrets->erased.empty();
}

void Person::OnState(const host::SignState& next)
{
    state = next;
    states.push_back(next.connection);
}

void Person::OnContact(const host::SignContact& contact)
{
    contacts[contact.id] = contact;
}

void Person::OnContactGone(const String& id)
{
    contacts.erase(id);
}

void Person::OnContactAsks(const String& id)
{
    asking.insert(id);
}

void Person::OnRequestGone(const String& id)
{
    asking.erase(id);
}

void Person::OnSign(const String& id, const String& kind, const String& title, const Property& sign)
{
    signs[id] = {kind, title, sign};
    if (id != state.ownId)
        titles.push_back(title);
}

void Person::OnSignGone(const String& id)
{
    signs.erase(id);
}

SignTest::SignTest()
{
    for (const char* const name : {"alice", "bob", "eve"})
        server.AddUser(name);
    server.Befriend("alice", "bob");
    server.Start();
}

} // namespace kivo::test
