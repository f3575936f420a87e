#include "host/sign/XmppRoster.h"

#include "host/sign/SignText.h"
#include "shell/contracts/common/Text.h"

#include <algorithm>
#include <set>

namespace kivo::host {

namespace {

using Subscription = RosterItem::Subscription;

// Beyond what people have; a server that sends more wants to fill the memory, or to keep the window
// busy, which shows the whole list anew with each change.
constexpr std::size_t kMaxContacts = 3000;
constexpr std::size_t kMaxDevices = 32;

bool IsSeenBy(Subscription subscription)
{
    return subscription == Subscription::To || subscription == Subscription::Both;
}

String ToId(const std::string& id)
{
    return common::utf8_to_CString(id);
}

// The contact's face is that of the device with the highest priority.
SignPresence GetShown(const auto& devices)
{
    if (devices.empty())
        return SignPresence::Offline;
    const auto best =
        std::max_element(devices.begin(), devices.end(), [](const auto& a, const auto& b) {
            return a.second.priority < b.second.priority;
        });
    return best->second.presence;
}

} // namespace

std::string GetBare(const std::string& address)
{
    return address.substr(0, address.find('/'));
}

XmppRoster::XmppRoster(ISignNetworkListener& listener)
    : listener_(listener)
{
}

void XmppRoster::SetItems(const std::vector<RosterItem>& items)
{
    std::set<std::string> stay;
    for (const RosterItem& item : items)
        stay.insert(item.id);
    for (auto contact = contacts_.begin(); contact != contacts_.end();) {
        const auto next = std::next(contact);
        if (!stay.contains(contact->first))
            Forget(contact->first, contact->second);
        contact = next;
    }
    for (const RosterItem& item : items)
        SetItem(item);
}

void XmppRoster::SetItem(const RosterItem& item)
{
    const auto known = contacts_.find(item.id);
    if (item.subscription == Subscription::Remove) {
        if (known != contacts_.end())
            Forget(known->first, known->second);
        return;
    }
    // An address that can't be shown as it is can't be chosen either.
    if (NormalizeSignId(ToId(item.id)) != ToId(item.id))
        return;
    if (known == contacts_.end() && contacts_.size() >= kMaxContacts)
        return;
    Contact& contact = contacts_[item.id];
    contact.item = item;
    if (!IsSeenBy(item.subscription)) {
        HideSign(contact);
        contact.sign.reset();
        contact.devices.clear();
    }
    Tell(contact);
}

void XmppRoster::OnPresence(const std::string& from,
                            std::optional<SignPresence> presence,
                            int priority)
{
    Contact* const contact = FindSeen(from);
    if (contact == nullptr)
        return;
    const std::size_t slash = from.find('/');
    const std::string resource = slash == std::string::npos ? "" : from.substr(slash + 1);
    const SignPresence before = GetShown(contact->devices);
    if (presence && (contact->devices.size() < kMaxDevices || contact->devices.contains(resource)))
        contact->devices[resource] = {*presence, priority};
    else if (!presence && resource.empty())
        contact->devices.clear(); // Of the contact as a whole.
    else if (!presence)
        contact->devices.erase(resource);
    if (contact->devices.empty())
        HideSign(*contact);
    if (GetShown(contact->devices) != before)
        Tell(*contact);
    if (!contact->devices.empty() && !contact->isSignShown)
        ShowSign(*contact);
}

void XmppRoster::OnTune(const std::string& from, const std::optional<Sign>& sign)
{
    // Only the contact as a whole speaks for what it plays.
    Contact* const contact = from.find('/') == std::string::npos ? FindSeen(from) : nullptr;
    if (contact == nullptr)
        return;
    contact->sign = sign;
    if (!sign)
        HideSign(*contact);
    else if (!contact->devices.empty())
        ShowSign(*contact);
}

void XmppRoster::GoOffline()
{
    for (auto& [id, contact] : contacts_) {
        HideSign(contact);
        contact.sign.reset();
        const bool wasThere = !contact.devices.empty();
        contact.devices.clear();
        if (wasThere)
            Tell(contact);
    }
}

void XmppRoster::Clear()
{
    while (!contacts_.empty())
        Forget(contacts_.begin()->first, contacts_.begin()->second);
}

const RosterItem* XmppRoster::GetItem(const std::string& id) const
{
    const Contact* const contact = Find(id);
    return contact != nullptr ? &contact->item : nullptr;
}

bool XmppRoster::IsSeen(const std::string& id) const
{
    const Contact* const contact = Find(id);
    return contact != nullptr && IsSeenBy(contact->item.subscription);
}

bool XmppRoster::IsAsked(const std::string& id) const
{
    const Contact* const contact = Find(id);
    return contact != nullptr && contact->item.isAsked;
}

bool XmppRoster::SeesUser(const std::string& id) const
{
    const Contact* const contact = Find(id);
    return contact != nullptr && (contact->item.subscription == Subscription::From ||
                                  contact->item.subscription == Subscription::Both);
}

XmppRoster::Contact* XmppRoster::FindSeen(const std::string& from)
{
    const auto found = contacts_.find(GetBare(from));
    const bool isSeen = found != contacts_.end() && IsSeenBy(found->second.item.subscription);
    return isSeen ? &found->second : nullptr;
}

const XmppRoster::Contact* XmppRoster::Find(const std::string& id) const
{
    const auto found = contacts_.find(id);
    return found != contacts_.end() ? &found->second : nullptr;
}

void XmppRoster::Forget(const std::string& id, Contact& contact)
{
    HideSign(contact);
    const String gone = ToId(id);
    contacts_.erase(id);
    listener_.OnContactGone(gone);
}

void XmppRoster::Tell(const Contact& contact)
{
    const String name =
        CleanSignText(common::utf8_to_CString(contact.item.name), kLongestContactName);
    listener_.OnContact(
        {ToId(contact.item.id), name, GetShown(contact.devices), contact.item.isAsked});
}

void XmppRoster::ShowSign(Contact& contact)
{
    if (!contact.sign)
        return;
    contact.isSignShown = true;
    const Sign& sign = *contact.sign;
    listener_.OnSign(ToId(contact.item.id), sign.kind, sign.title, sign.record);
}

void XmppRoster::HideSign(Contact& contact)
{
    if (!contact.isSignShown)
        return;
    contact.isSignShown = false;
    listener_.OnSignGone(ToId(contact.item.id));
}

} // namespace kivo::host
