#pragma once

#include "host/sign/ISignNetwork.h"
#include "shell/contracts/base/LifeToken.h"
#include "shell/contracts/base/Property.h"

#include <memory>
#include <optional>
#include <vector>

namespace kivo::host {

// What somebody shows.
struct ShownSign {
    String kind;
    String title; // One plain line.
    Property sign;
};

// A contact as it is shown.
struct Contact {
    String id;
    String name; // One plain line, never empty.
    SignPresence presence = SignPresence::Offline;
    bool isAsked = false; // The user has asked to see the contact, who has not answered yet.
    std::optional<ShownSign> sign; // Nothing while the contact is offline.
};

// Follows the contacts. Thread: user interface.
class IContactsView {
public:
    virtual void OnConnection() = 0; // The state of the connection, or the own sign, is another.
    virtual void OnContacts() = 0;   // People, their signs or requests are others; comes deferred.

protected:
    ~IContactsView() = default;
};

// The people that the network tells of, cleaned for the screen: who they are, what they show, who
// asks. Changes of people reach the view once for all that came together.
// Thread: user interface.
class Contacts final : public ISignNetworkListener {
public:
    Contacts();
    Contacts(const Contacts&) = delete;
    Contacts& operator=(const Contacts&) = delete;
    ~Contacts();

    void SetView(IContactsView* view); // Borrowed; hears of all at once. Null: none.

    // An account is there: until the network has begun with it, it counts as connecting.
    void SetAccountOn(bool on);
    [[nodiscard]] SignConnection GetConnection() const;
    [[nodiscard]] const SignState& GetState() const { return state_; }

    // Those who are there first, then by name in the order of the user's language. The pointers
    // hold until the next call of the network.
    [[nodiscard]] std::vector<const Contact*> GetSorted() const;
    [[nodiscard]] const Contact* Find(const String& id) const; // Null: no contact.
    [[nodiscard]] const std::vector<String>& GetRequests() const { return requests_; } // Ids.
    [[nodiscard]] const std::optional<ShownSign>& GetOwnSign() const { return ownSign_; }

    void OnState(const SignState& state) override;
    void OnContact(const SignContact& contact) override;
    void OnContactGone(const String& id) override;
    void OnContactAsks(const String& id) override;
    void OnRequestGone(const String& id) override;
    void OnSign(const String& id,
                const String& kind,
                const String& title,
                const Property& sign) override;
    void OnSignGone(const String& id) override;

private:
    struct People;
    void PeopleChanged();
    void ShowPeople();

    std::unique_ptr<People> people_;
    std::vector<String> requests_;
    SignState state_;
    std::optional<ShownSign> ownSign_;
    IContactsView* view_ = nullptr;
    bool isAccountOn_ = false;
    bool isShowPosted_ = false;
    LifeToken life_;
};

} // namespace kivo::host
