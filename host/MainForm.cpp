#include "host/MainForm.h"

#include "host/ContactsPage.h"
#include "host/OwnLine.h"
#include "host/TabStrip.h"
#include "host/Texts.h"
#include "shell/contracts/base/IPluginWindow.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/ui/Menu.h"
#include "shell/contracts/ui/SkinLabel.h"
#include "shell/contracts/ui/SkinList.h"
#include "shell/contracts/ui/SkinPhoto.h"
#include "shell/contracts/ui/SkinWndManager.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kivo::host {

namespace {

enum MenuId : int { kShowSigns = 1, kCabinet = 2, kQuit = 3, kOwnSign = 4 };

constexpr int kUsualWidth = 340;
constexpr int kUsualHeight = 680;
constexpr int kLeastWidth = 280;
constexpr int kLeastHeight = 400;
constexpr int kMostSide = 10000;

struct ConnectionWord {
    SignConnection connection;
    const char16_t* text;
};
constexpr std::array kConnectionWords{
    ConnectionWord{SignConnection::Connecting, u"STRID_KIVO_CONNECTING"},
    ConnectionWord{SignConnection::Online,     u"STRID_KIVO_ONLINE"    },
};

const char16_t* GetConnectionText(SignConnection connection)
{
    for (const auto& [known, text] : kConnectionWords) {
        if (known == connection)
            return text;
    }
    return u"STRID_KIVO_NOTSIGNEDIN";
}

void EndEditsBelow(const ui::CSkinObject& object)
{
    for (ui::CSkinObject* const control : object.GetControls()) {
        if (auto* const list = dynamic_cast<ui::CSkinList*>(control))
            list->EndEdit();
        else if (control != nullptr)
            EndEditsBelow(*control);
    }
}

} // namespace

MainForm::MainForm(Commands commands)
    : commands_(std::move(commands))
{
    SetObjectID(u"KivoMainForm");
    SetSkinName(u"form");
    ListenEvent(ui::kControlEvent, ui::EventDelegate(this, &MainForm::OnControl));
}

MainForm::~MainForm()
{
    // Pages belong to their plug-ins.
    if (pageArea_ != nullptr) {
        const std::vector<ui::CSkinObject*> pages = pageArea_->GetControls();
        for (ui::CSkinObject* const page : pages) {
            if (page != contacts_)
                pageArea_->UnregisterControl(page);
        }
    }
}

bool MainForm::Open(int width, int height)
{
    const bool isUsable =
        width >= kLeastWidth && height >= kLeastHeight && width <= kMostSide && height <= kMostSide;
    ui::CSkinWndManager::GetInstance()->SetMainForm(this);
    SetBounds(0, 0, isUsable ? width : kUsualWidth, isUsable ? height : kUsualHeight);
    return Create(ui::wndstyle::kPopup,
                  u"KivoMainForm",
                  host::GetText(u"STRID_KIVO_TITLE"),
                  Rect{},
                  /*parent=*/nullptr,
                  /*id=*/0) != 0;
}

int MainForm::BuildForm()
{
    if (CSkinForm::BuildForm() == 0)
        return 0;
    pageArea_ = dynamic_cast<ui::CSkinPanel*>(FindControlRecusive(u"PageArea"));
    CSkinObject* const tabPlace = FindControlRecusive(u"TabPlace");
    if (pageArea_ == nullptr || tabPlace == nullptr)
        return 0;
    tabs_ = std::make_unique<TabStrip>().release();
    tabs_->SetAnchorStyle(ui::anchor::kFill);
    tabs_->SetPadding({12, 0, 12, 0});
    tabPlace->RegisterControl(tabs_);
    tabs_->CreatePeer();
    contacts_ = std::make_unique<ContactsPage>().release();
    pageArea_->RegisterControl(contacts_);
    contacts_->Build();
    tabs_->AddTab(contacts_, host::GetText(u"STRID_KIVO_CONTACTS"), u"public\\contacts.png");
    ShowInFront(nullptr);
    ShowState();
    return 1;
}

void MainForm::SetOwnName(const String& name)
{
    if (CSkinObject* const label = FindControlRecusive(u"OwnName"))
        label->SetText(name);
    if (CSkinObject* const letters = FindControlRecusive(u"FaceLetters"))
        letters->SetText(GetInitials(name));
}

void MainForm::SetPagePicture(IPluginWindow* page, const String& picture)
{
    if (tabs_ != nullptr)
        tabs_->SetTabPicture(page, picture);
}

void MainForm::EndEdits()
{
    EndEditsBelow(*this);
}

ui::Size MainForm::GetWantedSize() const
{
    return {std::max(GetWidth(), kLeastWidth), std::max(GetHeight(), kLeastHeight)};
}

int MainForm::OnQueryCloseForm()
{
    if (commands_.quit)
        commands_.quit();
    return 1;
}

void MainForm::OnPageAdded(IPluginWindow* page)
{
    if (pageArea_ == nullptr)
        return;
    page->SetAnchorStyle(ui::anchor::kFill);
    page->CSkinObject::SetVisible(0); // Until it is in front.
    pageArea_->RegisterControl(page);
    page->CreatePeer();
    tabs_->AddTab(page, page->GetPageTip(), String());
}

void MainForm::OnPageRemoved(IPluginWindow* page)
{
    if (pageArea_ == nullptr)
        return;
    if (front_ == page)
        ShowInFront(nullptr);
    tabs_->RemoveTab(page);
    pageArea_->UnregisterControl(page);
}

void MainForm::OnPageShown(IPluginWindow* page)
{
    ShowInFront(page);
}

void MainForm::OnPageChanged(IPluginWindow* page)
{
    if (tabs_ != nullptr)
        tabs_->SetTabText(page, page->GetPageTip());
}

void MainForm::ShowInFront(IPluginWindow* page)
{
    front_ = page;
    if (contacts_ == nullptr)
        return;
    contacts_->SetVisible(page == nullptr ? 1 : 0);
    tabs_->Choose(page == nullptr ? static_cast<const void*>(contacts_) : page);
    RePositionSubControls();
}

void MainForm::OnControl(ui::CSkinObject* sender, void* /*data*/)
{
    if (sender->GetObjectID() == u"MenuBtn") {
        PopUpMenu();
        return;
    }
    const void* const key = tabs_ != nullptr ? tabs_->FindKey(sender) : nullptr;
    if (key == nullptr || !commands_.show)
        return;
    for (ui::CSkinObject* const page : pageArea_->GetControls()) {
        if (page != contacts_ && static_cast<IPluginWindow*>(page) == key) {
            commands_.show(static_cast<IPluginWindow*>(page));
            return;
        }
    }
    commands_.show(nullptr);
}

void MainForm::PopUpMenu()
{
    const ui::MenuDelegate chosen(this, &MainForm::OnMenuCommand);
    Released<ui::IMenu> menu(new ui::IMenu);
    const bool areSignsShown = commands_.areSignsShown && commands_.areSignsShown();
    const auto add = [&](const char16_t* id, int number, bool isChecked) {
        menu->AddMenu(
            host::GetText(id), number, /*disabled=*/0, isChecked ? 1 : 0, chosen, nullptr, {});
    };
    if (!signKind_.empty()) {
        const String text = common::FormatText(host::GetText(u"STRID_KIVO_OWNSIGN"), {signTitle_});
        menu->AddMenu(text, kOwnSign, /*disabled=*/0, /*checked=*/0, chosen, nullptr, {});
    }
    add(u"STRID_KIVO_SHOWSIGN", kShowSigns, areSignsShown);
    if (commands_.hasCabinet && commands_.hasCabinet())
        add(u"STRID_KIVO_CABINET", kCabinet, false);
    menu->AddMenu(String(), 0, /*disabled=*/0, /*checked=*/0, chosen, nullptr, {});
    add(u"STRID_KIVO_QUIT", kQuit, false);
    ui::IMenu::PopupMenu(this, menu.release(), -1, -1, 0, {});
}

void MainForm::OnMenuCommand(ui::IMenu* entry)
{
    switch (entry->GetID()) {
    case kShowSigns:
        if (commands_.showSigns && commands_.areSignsShown)
            commands_.showSigns(!commands_.areSignsShown());
        break;
    case kCabinet:
        if (commands_.openCabinet)
            commands_.openCabinet();
        break;
    case kOwnSign:
        if (commands_.goToOwnSign)
            commands_.goToOwnSign();
        break;
    case kQuit: OnQueryCloseForm(); break;
    default: break;
    }
}

void MainForm::OnState(const SignState& state)
{
    state_ = state;
    ShowState();
}

// The contacts of a network appear with the network that has some; the local one has none.
void MainForm::OnContact(const SignContact& /*contact*/) {}
void MainForm::OnContactGone(const String& /*id*/) {}
void MainForm::OnContactAsks(const String& /*id*/) {}

void MainForm::OnSign(const String& id,
                      const String& kind,
                      const String& title,
                      const Property& /*sign*/)
{
    if (id != state_.ownId)
        return;
    signKind_ = kind;
    signTitle_ = title;
    ShowState();
}

void MainForm::OnSignGone(const String& id)
{
    if (id != state_.ownId)
        return;
    signKind_.clear();
    signTitle_.clear();
    ShowState();
}

void MainForm::ShowState()
{
    CSkinObject* const line = FindControlRecusive(u"OwnLine");
    CSkinObject* const text = FindControlRecusive(u"OwnState");
    auto* const picture = dynamic_cast<ui::CSkinPhoto*>(FindControlRecusive(u"SignPicture"));
    if (line == nullptr || text == nullptr || picture == nullptr)
        return;
    const String file = !signKind_.empty() && commands_.getSignPicture
                            ? commands_.getSignPicture(signKind_)
                            : String();
    picture->SetPhotoFile(file, {}, 0);
    picture->SetVisible(file.empty() ? 0 : 1);
    text->SetText(signKind_.empty() ? host::GetText(GetConnectionText(state_.connection))
                                    : signTitle_);
    text->SetTooltip(signTitle_);
    line->RePositionSubControls();
}

} // namespace kivo::host
