#pragma once

#include "host/Pages.h"
#include "host/sign/ISignNetwork.h"
#include "shell/contracts/ui/SkinForm.h"

#include <functional>
#include <memory>

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
class MainForm final : public ui::CSkinForm, public IPageView, public ISignNetworkListener {
public:
    // What the window asks of the program.
    struct Commands {
        std::function<void()> quit;               // It was closed, or "Quit" was chosen.
        std::function<void(IPluginWindow*)> show; // A tab was pressed; null: the contacts.
        std::function<void(bool)> showSigns;      // The user's switch for signs.
        std::function<bool()> areSignsShown;
        std::function<void()> goToOwnSign;
        std::function<bool()> hasCabinet;
        std::function<void()> openCabinet;
        // The picture beside a sign of that kind, a path; empty: none.
        std::function<String(const String& kind)> getSignPicture;
    };

    explicit MainForm(Commands commands);
    ~MainForm() override;

    // The create step; the window is hidden still. False: there is none. Sizes that no window can
    // have give the usual one; the desktop finds the place.
    bool Open(int width, int height);

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

    void OnState(const SignState& state) override;
    void OnContact(const SignContact& contact) override;
    void OnContactGone(const String& id) override;
    void OnContactAsks(const String& id) override;
    void OnSign(const String& id,
                const String& kind,
                const String& title,
                const Property& sign) override;
    void OnSignGone(const String& id) override;

protected:
    int BuildForm() override;

private:
    void OnControl(ui::CSkinObject* sender, void* data);
    void OnMenuCommand(ui::IMenu* entry);
    void PopUpMenu();
    void ShowState(); // The sign if one is out, else the connection.
    void ShowInFront(IPluginWindow* page);

    Commands commands_;
    SignState state_;
    String signKind_; // Empty: no sign is out.
    String signTitle_;
    IPluginWindow* front_ = nullptr; // Null: the contacts.
    ui::CSkinPanel* pageArea_ = nullptr;
    TabStrip* tabs_ = nullptr;
    ContactsPage* contacts_ = nullptr;
    LifeToken life_;
};

} // namespace kivo::host
