#pragma once

#include "host/ContactRows.h"
#include "host/Pages.h"
#include "shell/contracts/ui/SkinForm.h"

#include <functional>
#include <memory>
#include <optional>

namespace kivo::ui {
class CSkinLabel;
class CSkinPanel;
class CSkinPhoto;
class IMenu;
} // namespace kivo::ui

namespace kivo::host {

class ContactsPage;
class TabStrip;

// The program's window: the user's face, name and state line, the tabs, and below them the page in
// front, the contacts or one of a plug-in. Thread: user interface.
class MainForm final : public ui::CSkinForm, public IPageView, public IContactsView {
public:
    // What the window asks of the program.
    struct Commands {
        std::function<void()> quit;               // It was closed, or "Quit" was chosen.
        std::function<void(IPluginWindow*)> show; // A tab was pressed; null: the contacts.
        std::function<void(bool)> showSigns;      // The user's switch for signs.
        std::function<bool()> areSignsShown;
        std::function<String()> getOwnName; // By which the user goes now.
        std::function<bool()> isAccountOn;
        std::function<void(bool)> setTitleOnly; // Signs go without their addresses.
        std::function<bool()> isTitleOnly;
        std::function<void()> signOut;
        std::function<void()> goToOwnSign;
        std::function<bool()> hasCabinet;
        std::function<void()> openCabinet;
    };

    // `contacts` is borrowed; the form becomes its view when it opens.
    MainForm(Contacts& contacts, Commands commands, ContactCommands contactCommands);
    ~MainForm() override;

    // The create step; the window is hidden still. False: there is none. A size that no window can
    // have gives the usual one; without a place the desktop finds one.
    bool Open(ui::Size size, std::optional<Point> place);

    void SetOwnName(const String& name);
    void SetPagePicture(IPluginWindow* page, const String& picture); // On its tab.
    void EndEdits(); // Open editors of rows are committed.

    // Its own size, whatever the pages would like: a long title is cut, not a reason to grow.
    [[nodiscard]] ui::Size GetWantedSize() const override;
    int OnQueryCloseForm() override;

    void OnPageAdded(IPluginWindow* page) override;
    void OnPageRemoved(IPluginWindow* page) override;
    void OnPageShown(IPluginWindow* page) override;
    void OnPageChanged(IPluginWindow* page) override;

    void OnConnection() override;
    void OnContacts() override;

protected:
    int BuildForm() override;

private:
    void OnControl(ui::CSkinObject* sender, void* data);
    void OnMenuCommand(ui::IMenu* entry);
    void PopUpMenu();
    void AddSignEntries(ui::IMenu& menu, const ui::MenuDelegate& chosen) const;
    void ShowState(); // The sign if one is out, else the connection.
    void ShowInFront(IPluginWindow* page);

    Contacts& model_;
    Commands commands_;
    ContactCommands contactCommands_;
    IPluginWindow* front_ = nullptr; // Null: the contacts.
    ui::CSkinPanel* pageArea_ = nullptr;
    TabStrip* tabs_ = nullptr;
    ContactsPage* contacts_ = nullptr;
};

} // namespace kivo::host
