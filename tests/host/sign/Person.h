#pragma once

#include "host/sign/XmppSignNetwork.h"
#include "shell/contracts/base/Property.h"
#include "tests/host/sign/SignServer.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace kivo::test {

// What the store of a test holds; it outlives the network that owns the store.
struct Secrets {
    std::mutex mutex;
    std::map<String, std::string> passwords; // These are guarded by mutex.
    std::vector<String> erased;
    bool isLocked = false; // Nothing can be written.
};

[[nodiscard]] std::unique_ptr<host::ISecretStore> MakeStore(std::shared_ptr<Secrets> secrets);

// Somebody on the network, with a page that remembers what it was told. Thread: the test's, whose
// loop RunUntil turns.
class Person final : private host::ISignNetworkListener {
public:
    struct Shown {
        String kind;
        String title;
        Property record;
    };

    explicit Person(const std::string& name,
                    host::SignAddressRule rule = host::SignAddressRule::Any,
                    const host::SignPatience& patience = {});
    Person(const Person&) = delete;
    Person& operator=(const Person&) = delete;
    ~Person();

    // With the right password in the store; true: online within that time.
    bool SignIn(const SignServer& server, int milliseconds = 20000);
    void SetPassword(const std::string& password); // In the store.
    void Forget();                                 // What was told; nobody listens.
    void Listen();
    void End(); // As the program does when it quits.

    void Play(const std::string& address, const std::string& title);
    void Play(const std::string& kind, const std::string& address, const std::string& title);

    bool WaitForState(host::SignConnection wanted, int milliseconds = 20000) const;
    bool WaitForTitle(const std::string& of, const std::string& title, int milliseconds = 20000);
    bool WaitForNoSign(const std::string& of, int milliseconds = 20000) const;
    bool WaitForPresence(const std::string& of, host::SignPresence presence);

    [[nodiscard]] std::string GetAddress(const std::string& of) const; // Of the sign; key 0.
    [[nodiscard]] std::string GetKept() const; // The password in the store; empty: none.
    [[nodiscard]] bool HasErased() const;      // The password in the store.
    [[nodiscard]] host::ISignNetwork& Get() { return *network_; }

    std::shared_ptr<Secrets> secrets = std::make_shared<Secrets>();
    host::SignState state;
    std::vector<host::SignConnection> states; // All that were told.
    std::map<String, host::SignContact> contacts;
    std::map<String, Shown> signs;
    std::vector<String> titles; // Of others, all that were told.
    std::set<String> asking;

private:
    void OnState(const host::SignState& next) override;
    void OnContact(const host::SignContact& contact) override;
    void OnContactGone(const String& id) override;
    void OnContactAsks(const String& id) override;
    void OnRequestGone(const String& id) override;
    void OnSign(const String& id,
                const String& kind,
                const String& title,
                const Property& sign) override;
    void OnSignGone(const String& id) override;

    std::string name_;
    std::unique_ptr<host::ISignNetwork> network_;
};

[[nodiscard]] String ToText(const std::string& bytes);

// A server that runs, with alice and bob, who are friends, and eve, a stranger to both.
struct SignTest : testing::Test {
    SignTest();

    SignServer server;
};

} // namespace kivo::test
