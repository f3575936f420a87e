#include "host/MainForm.h"

#include "host/ContactNotice.h"
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

enum MenuId : int {
    kShowSigns = 1,
    kCabinet = 2,
    kQuit = 3,
    kOwnSign = 4,
    kTitleOnly = 5,
    kAccount = 6,
    kSignOut = 7,
};

constexpr int kUsualWidth = 340;
constexpr int kUsualHeight = 680;
constexpr int kLeastWidth = 280;
constexpr int kLeastHeight = 400;
constexpr int kMostSide = 10000;

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

MainForm::MainForm(Contacts& contacts, Commands commands, ContactCommands contactCommands)
    : model_(contacts)
    , commands_(std::move(commands))
    , contactCommands_(std::move(contactCommands))
{
    SetObjectID(u"KivoMainForm");
    SetSkinName(u"form");
    ListenEvent(ui::kControlEvent, ui::EventDelegate(this, &MainForm::OnControl));
}

MainForm::~MainForm()
{
    model_.SetView(nullptr);
    // Pages belong to their plug-ins.
    if (pageArea_ != nullptr) {
        const std::vector<ui::CSkinObject*> pages = pageArea_->GetControls();
        for (ui::CSkinObject* const page : pages) {
            if (page != contacts_)
                pageArea_->UnregisterControl(page);
        }
    }
}

bool MainForm::Open(ui::Size size, std::optional<Point> place)
{
    const bool isUsable = size.width >= kLeastWidth && size.height >= kLeastHeight &&
                          size.width <= kMostSide && size.height <= kMostSide;
    const Point corner = isUsable ? place.value_or(Point()) : Point();
    ui::CSkinWndManager::GetInstance()->SetMainForm(this);
    SetBounds(corner.x,
              corner.y,
              isUsable ? size.width : kUsualWidth,
              isUsable ? size.height : kUsualHeight);
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
    contacts_ = std::make_unique<ContactsPage>(model_, contactCommands_).release();
    pageArea_->RegisterControl(contacts_);
    contacts_->Build(this);
    tabs_->AddTab(contacts_, host::GetText(u"STRID_KIVO_CONTACTS"), u"public\\contacts.png");
    ShowInFront(nullptr);
    model_.SetView(this);
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
    const auto add = [&](const char16_t* id, int number) {
        menu->AddMenu(
            host::GetText(id), number, /*disabled=*/0, /*checked=*/0, chosen, nullptr, {});
    };
    AddSignEntries(*menu, chosen);
    if (commands_.hasCabinet && commands_.hasCabinet())
        add(u"STRID_KIVO_CABINET", kCabinet);
    menu->AddMenu(String(), 0, /*disabled=*/0, /*checked=*/0, chosen, nullptr, {});
    add(u"STRID_KIVO_QUIT", kQuit);
    ui::IMenu::PopupMenu(this, menu.release(), -1, -1, 0, {});
}

// What the user shows and to whom.
void MainForm::AddSignEntries(ui::IMenu& menu, const ui::MenuDelegate& chosen) const
{
    const auto add = [&](const String& text, int number, bool isEnabled, bool isChecked) {
        menu.AddMenu(text, number, isEnabled ? 0 : 1, isChecked ? 1 : 0, chosen, nullptr, {});
    };
    const bool isShown = commands_.areSignsShown && commands_.areSignsShown();
    const bool isAccountOn = commands_.isAccountOn && commands_.isAccountOn();
    const std::optional<ShownSign>& own = model_.GetOwnSign();
    if (own) {
        add(common::FormatText(host::GetText(u"STRID_KIVO_OWNSIGN"), {own->title}),
            kOwnSign,
            /*isEnabled=*/true,
            /*isChecked=*/false);
    }
    add(host::GetText(u"STRID_KIVO_SHOWSIGN"), kShowSigns, /*isEnabled=*/true, isShown);
    if (isAccountOn) {
        const bool isTitleOnly = commands_.isTitleOnly && commands_.isTitleOnly();
        add(host::GetText(u"STRID_KIVO_TITLEONLY"), kTitleOnly, isShown, isTitleOnly);
    }
    menu.AddMenu(String(), 0, /*disabled=*/0, /*checked=*/0, chosen, nullptr, {});
    add(host::GetText(isAccountOn ? u"STRID_KIVO_DO_ACCOUNT" : u"STRID_KIVO_DO_SIGNIN"),
        kAccount,
        /*isEnabled=*/true,
        /*isChecked=*/false);
    if (isAccountOn)
        add(host::GetText(u"STRID_KIVO_SIGNOUT"),
            kSignOut,
            /*isEnabled=*/true,
            /*isChecked=*/false);
}

void MainForm::OnMenuCommand(ui::IMenu* entry)
{
    switch (entry->GetID()) {
    case kShowSigns:
        if (commands_.showSigns && commands_.areSignsShown)
            commands_.showSigns(!commands_.areSignsShown());
        break;
    case kTitleOnly:
        if (commands_.setTitleOnly && commands_.isTitleOnly)
            commands_.setTitleOnly(!commands_.isTitleOnly());
        break;
    case kAccount: contactCommands_.setUpAccount(); break;
    case kSignOut:
        if (commands_.signOut)
            commands_.signOut();
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

void MainForm::OnConnection()
{
    if (commands_.getOwnName)
        SetOwnName(commands_.getOwnName());
    ShowState();
    if (contacts_ != nullptr)
        contacts_->ShowConnection();
}

// Whoever asks to be let in is told of on the tab, since another page may be in front.
void MainForm::OnContacts()
{
    if (contacts_ == nullptr)
        return;
    contacts_->ShowPeople();
    const std::size_t asking = model_.GetRequests().size();
    String text = host::GetText(u"STRID_KIVO_CONTACTS");
    if (asking > 0)
        text += u" (" + common::ToText(static_cast<int>(asking)) + u")";
    tabs_->SetTabText(contacts_, text);
}

void MainForm::ShowState()
{
    CSkinObject* const line = FindControlRecusive(u"OwnLine");
    CSkinObject* const text = FindControlRecusive(u"OwnState");
    CSkinObject* const presence = FindControlRecusive(u"FacePresence");
    auto* const picture = dynamic_cast<ui::CSkinPhoto*>(FindControlRecusive(u"SignPicture"));
    if (line == nullptr || text == nullptr || presence == nullptr || picture == nullptr)
        return;
    const SignConnection connection = model_.GetConnection();
    const bool isOnline =
        connection == SignConnection::Online || connection == SignConnection::ServerWithoutEventing;
    const String word = GetConnectionWord(connection);
    const std::optional<ShownSign>& own = model_.GetOwnSign();
    const String file = own ? contactCommands_.getSignPicture(own->kind) : String();
    picture->SetPhotoFile(file, {}, 0);
    picture->SetVisible(file.empty() ? 0 : 1);
    text->SetText(own ? own->title : word);
    text->SetTooltip(own ? own->title + u"\n" + word : word);
    presence->SetPicture(isOnline ? u"public\\presence_online.png"
                                  : u"public\\presence_offline.png");
    presence->SetAccessibleName(word);
    line->RePositionSubControls();
}

} // namespace kivo::host
