#pragma once

#include "host/sign/ISignNetwork.h"
#include "host/sign/TuneMapping.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kivo::host {

// An entry of the contact list that the server keeps.
struct RosterItem {
    enum class Subscription { None, To, From, Both, Remove };

    std::string id; // Bare address.
    std::string name;
    Subscription subscription = Subscription::None;
    bool isAsked = false;            // The user has asked to see the contact and waits.
    std::vector<std::string> groups; // Of other clients; they stay.
};

// The contacts, who of them is there and what they play, out of what the server sends in any order.
// It tells the listener what a user would see change, and takes presence and tunes only of contacts
// that the user may see by the contact list. Thread: one at a time.
class XmppRoster {
public:
    explicit XmppRoster(ISignNetworkListener& listener); // Borrowed.

    void SetItems(const std::vector<RosterItem>& items); // The whole list.
    void SetItem(const RosterItem& item);                // A change of it.

    // Of one device of a contact; nothing: that device has gone.
    void OnPresence(const std::string& from, std::optional<SignPresence> presence, int priority);

    // Last tunes come before presence, and of contacts who aren't there: such a one is kept, and
    // shown while the contact is there. Nothing: the contact plays nothing.
    void OnTune(const std::string& from, const std::optional<Sign>& sign);

    void GoOffline(); // All contacts are; what they play is forgotten.
    void Clear();     // They are gone.

    [[nodiscard]] const RosterItem* GetItem(const std::string& id) const; // Null: no contact.
    [[nodiscard]] bool IsSeen(const std::string& id) const;   // The user may see the contact.
    [[nodiscard]] bool IsAsked(const std::string& id) const;  // The user has asked to.
    [[nodiscard]] bool SeesUser(const std::string& id) const; // The contact may see the user.

private:
    struct Device {
        SignPresence presence;
        int priority;
    };
    struct Contact {
        RosterItem item;
        std::map<std::string, Device> devices; // By resource.
        std::optional<Sign> sign;
        bool isSignShown = false;
    };

    [[nodiscard]] Contact* FindSeen(const std::string& from);
    [[nodiscard]] const Contact* Find(const std::string& id) const;
    void Forget(const std::string& id, Contact& contact);
    void Tell(const Contact& contact);
    void ShowSign(Contact& contact);
    void HideSign(Contact& contact);

    ISignNetworkListener& listener_;
    std::map<std::string, Contact> contacts_; // By bare address.
};

// "name@server" of "name@server/device".
[[nodiscard]] std::string GetBare(const std::string& address);

} // namespace kivo::host
