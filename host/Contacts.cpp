#include "host/Contacts.h"

#include "host/CallLater.h"
#include "host/PlainLine.h"
#include "host/QtText.h"
#include "shell/contracts/common/Language.h"

#include <QCollator>

#include <algorithm>
#include <map>
#include <utility>

namespace kivo::host {

namespace {

constexpr std::size_t kMostRequests = 100; // Strangers ask; more than that nobody answers.

QCollator MakeCollator()
{
    QCollator collator(
        QLocale(ToQString(common::CMutiLanSupport::GetInstance()->GetLangSetting())));
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    collator.setNumericMode(true);
    return collator;
}

String GetShownName(const SignContact& contact)
{
    String name = ToPlainLine(contact.name);
    if (name.empty())
        name = ToPlainLine(contact.id);
    return name.empty() ? String(u"?") : name;
}

} // namespace

// One contact with what sorts it. A sign may come before its owner, and waits for presence.
struct Contacts::People {
    struct Person {
        Contact contact;
        std::optional<QCollatorSortKey> key;
    };

    std::optional<QCollator> collator; // Made with the first contact: then the language is known.
    std::map<String, Person> byId;
    std::map<String, ShownSign> signs;

    void PutSign(Contact& contact) const
    {
        const auto found = signs.find(contact.id);
        const bool isShown = found != signs.end() && contact.presence != SignPresence::Offline;
        contact.sign = isShown ? std::optional(found->second) : std::nullopt;
    }
    static bool IsBefore(const Person* a, const Person* b)
    {
        const bool isThereA = a->contact.presence != SignPresence::Offline;
        const bool isThereB = b->contact.presence != SignPresence::Offline;
        if (isThereA != isThereB)
            return isThereA;
        const int order = a->key->compare(*b->key);
        return order != 0 ? order < 0 : a->contact.id < b->contact.id;
    }
};

Contacts::Contacts()
    : people_(std::make_unique<People>())
{
}

Contacts::~Contacts() = default;

void Contacts::SetView(IContactsView* view)
{
    view_ = view;
    if (view_ == nullptr)
        return;
    view_->OnConnection();
    view_->OnContacts();
}

void Contacts::SetAccountOn(bool on)
{
    isAccountOn_ = on;
    if (view_ != nullptr)
        view_->OnConnection();
}

SignConnection Contacts::GetConnection() const
{
    const bool isToCome = isAccountOn_ && state_.connection == SignConnection::LocalOnly;
    return isToCome ? SignConnection::Connecting : state_.connection;
}

std::vector<const Contact*> Contacts::GetSorted() const
{
    std::vector<const People::Person*> persons;
    persons.reserve(people_->byId.size());
    for (const auto& [id, person] : people_->byId)
        persons.push_back(&person);
    std::sort(persons.begin(), persons.end(), People::IsBefore);
    std::vector<const Contact*> sorted;
    sorted.reserve(persons.size());
    for (const People::Person* const person : persons)
        sorted.push_back(&person->contact);
    return sorted;
}

const Contact* Contacts::Find(const String& id) const
{
    const auto found = people_->byId.find(id);
    return found != people_->byId.end() ? &found->second.contact : nullptr;
}

void Contacts::OnState(const SignState& state)
{
    state_ = state;
    // Nobody's contacts are nobody's business.
    if (state.connection == SignConnection::LocalOnly) {
        people_->byId.clear();
        people_->signs.clear();
        requests_.clear();
        PeopleChanged();
    }
    if (view_ != nullptr)
        view_->OnConnection();
}

void Contacts::OnContact(const SignContact& contact)
{
    People::Person& person = people_->byId[contact.id];
    const String name = GetShownName(contact);
    if (!people_->collator)
        people_->collator = MakeCollator();
    if (!person.key || name != person.contact.name)
        person.key = people_->collator->sortKey(ToQString(name));
    person.contact.id = contact.id;
    person.contact.name = name;
    person.contact.presence = contact.presence;
    person.contact.isAsked = contact.isAsked;
    people_->PutSign(person.contact);
    PeopleChanged();
}

void Contacts::OnContactGone(const String& id)
{
    people_->byId.erase(id);
    people_->signs.erase(id);
    PeopleChanged();
}

void Contacts::OnContactAsks(const String& id)
{
    const bool isKnown = std::find(requests_.begin(), requests_.end(), id) != requests_.end();
    if (isKnown || requests_.size() >= kMostRequests)
        return;
    requests_.push_back(id);
    PeopleChanged();
}

void Contacts::OnRequestGone(const String& id)
{
    if (std::erase(requests_, id) > 0)
        PeopleChanged();
}

void Contacts::OnSign(const String& id,
                      const String& kind,
                      const String& title,
                      const Property& sign)
{
    ShownSign shown{kind, ToPlainLine(title), sign};
    if (id == state_.ownId) {
        ownSign_ = std::move(shown);
        if (view_ != nullptr)
            view_->OnConnection();
        return;
    }
    people_->signs[id] = std::move(shown);
    const auto found = people_->byId.find(id);
    if (found == people_->byId.end())
        return;
    people_->PutSign(found->second.contact);
    PeopleChanged();
}

void Contacts::OnSignGone(const String& id)
{
    if (id == state_.ownId) {
        ownSign_.reset();
        if (view_ != nullptr)
            view_->OnConnection();
        return;
    }
    people_->signs.erase(id);
    const auto found = people_->byId.find(id);
    if (found == people_->byId.end())
        return;
    found->second.contact.sign.reset();
    PeopleChanged();
}

// A sign-in brings all contacts in one go; they are sorted and shown once.
void Contacts::PeopleChanged()
{
    if (std::exchange(isShowPosted_, true))
        return;
    CallLater(life_.Watch(), [this] { ShowPeople(); });
}

void Contacts::ShowPeople()
{
    isShowPosted_ = false;
    if (view_ != nullptr)
        view_->OnContacts();
}

} // namespace kivo::host
