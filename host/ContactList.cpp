#include "host/ContactList.h"

#include "host/Texts.h"

#include <set>
#include <utility>

namespace kivo::host {

namespace {

constexpr int kAddFriend = 100;   // Beyond the entries of the rows.
constexpr int kLongestName = 100; // Units of an edited name.

} // namespace

// All rows there are; those that show are the list's to free as well as ours to find.
struct ContactList::Rows {
    explicit Rows(ContactList& list)
        : asking(std::make_unique<HeadingRow>(list, u"STRID_KIVO_ASKING"))
        , there(std::make_unique<HeadingRow>(list, u"STRID_KIVO_ONLINE"))
        , away(std::make_unique<HeadingRow>(list, u"STRID_KIVO_OFFLINE"))
    {
    }

    std::unique_ptr<HeadingRow> asking;
    std::unique_ptr<HeadingRow> there;
    std::unique_ptr<HeadingRow> away;
    std::map<String, std::unique_ptr<ContactRow>> people;
    std::map<String, std::unique_ptr<RequestRow>> requests;
};

ContactList::ContactList(const ContactCommands& commands)
    : commands_(commands)
    , rows_(std::make_unique<Rows>(*this))
{
    SetObjectID(u"ContactList");
    SetSkinName(u"contacts");
    SetAccessibleName(host::GetText(u"STRID_KIVO_CONTACTS"));
    SetUniformRows(0);
    SetSingleSelection(1);
    SetEditLimitText(kLongestName);
}

ContactList::~ContactList()
{
    while (GetRowCount() > 0)
        RemoveItem(GetRowCount() - 1);
}

void ContactList::Show(const Contacts& contacts)
{
    Rows& rows = *rows_;
    BeginUpdate();
    while (GetRowCount() > 0)
        RemoveItem(GetRowCount() - 1);
    const std::vector<const Contact*> people = contacts.GetSorted();
    std::set<String> wanted;
    std::size_t there = 0;
    for (const Contact* const contact : people) {
        wanted.insert(contact->id);
        there += contact->presence != SignPresence::Offline ? 1 : 0;
    }
    const std::set<String> asking(contacts.GetRequests().begin(), contacts.GetRequests().end());
    std::erase_if(rows.people, [&](const auto& entry) { return !wanted.contains(entry.first); });
    std::erase_if(rows.requests, [&](const auto& entry) { return !asking.contains(entry.first); });

    const auto addHeading = [this](HeadingRow& heading, std::size_t count) {
        heading.SetCount(count);
        if (count > 0)
            InsertListItem(&heading, -1);
    };
    addHeading(*rows.asking, asking.size());
    for (const String& id : contacts.GetRequests()) {
        std::unique_ptr<RequestRow>& row = rows.requests[id];
        if (!row)
            row = std::make_unique<RequestRow>(*this, id, commands_);
        InsertListItem(row.get(), -1);
    }
    addHeading(*rows.there, there);
    for (std::size_t place = 0; place < people.size(); ++place) {
        if (place == there)
            addHeading(*rows.away, people.size() - there);
        std::unique_ptr<ContactRow>& row = rows.people[people[place]->id];
        if (row)
            row->SetContact(*people[place]);
        else
            row = std::make_unique<ContactRow>(*this, *people[place], commands_);
        InsertListItem(row.get(), -1);
    }
    EndUpdate(1);
}

ui::IMenu* ContactList::GetBlankAreaMenu()
{
    Released<ui::IMenu> menu(new ui::IMenu);
    menu->AddMenu(host::GetText(u"STRID_KIVO_ADDFRIEND"),
                  kAddFriend,
                  /*disabled=*/0,
                  /*checked=*/0,
                  GetMenuDelegate(),
                  nullptr,
                  {});
    return menu.release();
}

void ContactList::DoMenuCommand(ui::IMenu* entry)
{
    if (entry != nullptr && entry->GetID() == kAddFriend)
        commands_.addContact();
    else
        CSkinList::DoMenuCommand(entry);
}

} // namespace kivo::host
