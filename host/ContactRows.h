#pragma once

#include "host/Contacts.h"
#include "shell/contracts/ui/SkinList.h"

#include <cstdint>
#include <functional>

namespace kivo::host {

// What the rows and the page of contacts ask of the program. Each is set.
struct ContactCommands {
    std::function<void(const String& id)> activateSign;
    std::function<void(const String& id)> answer; // Somebody who asks.
    std::function<void(const String& id)> remove;
    std::function<void(const String& id, const String& name)> rename;
    std::function<void()> addContact;
    std::function<void()> setUpAccount;
    std::function<void()> givePassword;
    std::function<void()> judgeCertificate;
    std::function<void()> tryNow;
    // The picture beside a sign of that kind, a path; empty: none.
    std::function<String(const String& kind)> getSignPicture;
    std::function<String()> getServer;    // Of the account.
    std::function<std::int64_t()> getNow; // Milliseconds; never goes back.
};

// A line between the rows: what follows, and how many. Thread: user interface.
class HeadingRow final : public ui::CSkinListItem {
public:
    HeadingRow(ui::CSkinList& list, const String& text); // `text` is the id too.

    void SetCount(std::size_t count);
    void BuildRow() override;
    void ReposControls() override;
    [[nodiscard]] int GetWantedHeight(int lineHeight) const override;
    int CanBeSelected() override { return 0; }
    ui::IMenu* GetRowMenu(const ui::MenuDelegate& delegate) override;
    void OnRowCommand(ui::IMenu* entry) override;

private:
    std::size_t count_ = 0;
};

// What rows with a face have in common: the face at the leading edge, two lines, and perhaps a
// button at the end. Thread: user interface.
class PersonRow : public ui::CSkinListItem {
public:
    PersonRow(ui::CSkinList& list, const String& id, const ContactCommands& commands);

    void ReposControls() override;
    [[nodiscard]] int GetWantedHeight(int lineHeight) const override;

protected:
    void AddFace(const String& name, bool hasPresence); // Presence sits in its corner.
    void AddText(const char16_t* cell, const char16_t* skinClass, const String& text);
    [[nodiscard]] const ContactCommands& GetCommands() const { return commands_; }

private:
    const ContactCommands& commands_;
};

// A contact: presence, name, and what plays or how they are. Thread: user interface.
class ContactRow final : public PersonRow {
public:
    // `commands` outlives the row.
    ContactRow(ui::CSkinList& list, const Contact& contact, const ContactCommands& commands);

    void SetContact(const Contact& contact); // Of the same id. Builds the row if it shows.
    [[nodiscard]] const Contact& GetContact() const { return contact_; }

    void BuildRow() override;
    [[nodiscard]] String GetSpokenText() override;
    [[nodiscard]] String GetButtonCell() const override;
    void OnButtonCell() override;
    void OnRenameKey() override;
    int CanBeEdited() override { return 1; }
    int OnListEvent(ui::CSkinList* list, int context, int event, const String& text) override;
    bool OnEditEnd(const String& oldText, const String& newText) override;
    ui::IMenu* GetRowMenu(const ui::MenuDelegate& delegate) override;
    void OnRowCommand(ui::IMenu* entry) override;

protected:
    String MakeTooltip(const String& cellId) override;

private:
    [[nodiscard]] bool IsPlayable() const; // Its sign has an address that can be reached from here.
    [[nodiscard]] String GetStateText() const;
    void Activate();

    Contact contact_;
};

// Somebody who asks to be let in. Thread: user interface.
class RequestRow final : public PersonRow {
public:
    RequestRow(ui::CSkinList& list, const String& id, const ContactCommands& commands);

    void BuildRow() override;
    [[nodiscard]] String GetSpokenText() override;
    int OnListEvent(ui::CSkinList* list, int context, int event, const String& text) override;
    ui::IMenu* GetRowMenu(const ui::MenuDelegate& delegate) override;
    void OnRowCommand(ui::IMenu* entry) override;
};

} // namespace kivo::host
