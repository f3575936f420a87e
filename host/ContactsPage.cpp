#include "host/ContactsPage.h"

#include "host/ContactList.h"
#include "host/Texts.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SkinPhoto.h"

#include <algorithm>
#include <utility>

namespace kivo::host {

namespace {

constexpr int kEdge = 24; // Of the invitation's texts, and
constexpr int kAboveButton = 20;
constexpr int kLeastForPicture = 420; // Pixels of height; below it the texts need the room.
constexpr int kSecondMs = 1000;

// Whose seconds are counted down; there is one page in a program.
ContactsPage* countingPage = nullptr;

void Show(ui::CSkinObject& parent, const char16_t* id, bool isShown)
{
    if (ui::CSkinObject* const control = parent.FindControlRecusive(id))
        control->SetVisible(isShown ? 1 : 0);
}

void SayIn(ui::CSkinObject& parent, const char16_t* id, const String& text)
{
    if (ui::CSkinObject* const control = parent.FindControlRecusive(id))
        control->SetText(text);
}

} // namespace

ContactsPage::ContactsPage(const Contacts& contacts, ContactCommands commands)
    : contacts_(contacts)
    , commands_(std::move(commands))
{
    SetObjectID(u"ContactsPage");
    SetSkinName(u"contacts");
    SetAnchorStyle(ui::anchor::kFill);
    ListenEvent(ui::kControlEvent, ui::EventDelegate(this, &ContactsPage::OnControl));
}

ContactsPage::~ContactsPage()
{
    if (timer_ == 0)
        return;
    KillTimer(0, timer_);
    countingPage = nullptr;
}

void ContactsPage::Build(CWnd* window)
{
    BuildFromXML(ui::CSkinManager::GetInstance()->GetBuildNode(u"KIVO ContactsPage"));
    CSkinObject* const place = FindControlRecusive(u"ContactsListPlace");
    if (place == nullptr)
        return;
    list_ = std::make_unique<ContactList>(commands_).release();
    list_->SetAnchorStyle(ui::anchor::kFill);
    place->RegisterControl(list_);
    list_->Create(window);
    ShowPeople();
    ShowConnection();
}

void ContactsPage::ShowConnection()
{
    nextTry_ = commands_.getNow() + std::int64_t{contacts_.GetState().seconds} * kSecondMs;
    CountDown();
    ShowContent();
    ShowNotice();
}

void ContactsPage::ShowPeople()
{
    if (list_ == nullptr)
        return;
    list_->Show(contacts_);
    ShowContent();
}

ContactsPage::Content ContactsPage::GetContent() const
{
    const SignConnection connection = contacts_.GetConnection();
    if (connection == SignConnection::LocalOnly)
        return Content::Invitation;
    const bool isEmpty = contacts_.GetSorted().empty() && contacts_.GetRequests().empty();
    const bool isOnline =
        connection == SignConnection::Online || connection == SignConnection::ServerWithoutEventing;
    return isEmpty && isOnline ? Content::NobodyYet : Content::People;
}

void ContactsPage::ShowContent()
{
    const Content content = GetContent();
    const bool isInvitation = content == Content::Invitation;
    Show(*this, u"ContactsInvitation", content != Content::People);
    Show(*this, u"ContactsSignInBtn", isInvitation);
    Show(*this, u"ContactsListPlace", content == Content::People);
    Show(*this, u"ContactsStrip", !isInvitation);
    SayIn(*this,
          u"ContactsHeadline",
          host::GetText(isInvitation ? u"STRID_KIVO_NOCONTACTS_TITLE"
                                     : u"STRID_KIVO_NOBODYYET_TITLE"));
    SayIn(*this,
          u"ContactsSentence",
          host::GetText(isInvitation ? u"STRID_KIVO_LOCAL_TEXT" : u"STRID_KIVO_NOBODYYET_TEXT"));
    CalculateBounds(GetBoundsRect());
}

void ContactsPage::ShowNotice()
{
    notice_ = MakeNotice(
        contacts_.GetState(), contacts_.GetConnection(), commands_.getServer(), GetSecondsLeft());
    Show(*this, u"ContactsNotice", !notice_.text.empty());
    Show(*this, u"ContactsNoticeBtn", !notice_.button.empty());
    SayIn(*this, u"ContactsNoticeText", notice_.text);
    SayIn(*this, u"ContactsNoticeBtn", notice_.button);
    CalculateBounds(GetBoundsRect());
}

void ContactsPage::CalculateBounds(const Rect& place)
{
    Show(*this, u"ContactsPicture", ui::HeightOf(place) >= kLeastForPicture);
    if (CSkinObject* const button = FindControlRecusive(u"ContactsSignInBtn")) {
        const int beside = ui::WidthOf(place) / 2 - kEdge - button->GetWantedSize().width / 2;
        button->SetMargin({std::max(0, beside), kAboveButton, std::max(0, beside), 0});
    }
    CSkinPanel::CalculateBounds(place);
    // Once more: how high a sentence is, it knows from the width that it has just got.
    CSkinPanel::CalculateBounds(place);
}

void ContactsPage::SetVisible(int visible)
{
    CSkinPanel::SetVisible(visible);
    CountDown();
    ShowNotice();
}

int ContactsPage::GetSecondsLeft() const
{
    const std::int64_t left = nextTry_ - commands_.getNow();
    return static_cast<int>(std::max<std::int64_t>(0, (left + kSecondMs - 1) / kSecondMs));
}

// Nobody is woken to count where nobody looks.
void ContactsPage::CountDown()
{
    const bool counts = contacts_.GetConnection() == SignConnection::Waiting && IsSetVisible();
    if (counts == (timer_ != 0))
        return;
    if (!counts) {
        KillTimer(0, std::exchange(timer_, 0));
        countingPage = nullptr;
        return;
    }
    countingPage = this;
    timer_ = SetTimer(0, 0, kSecondMs, &ContactsPage::OnTick);
}

void ContactsPage::OnTick(HWND /*window*/,
                          unsigned /*message*/,
                          TimerId /*timer*/,
                          std::uint32_t /*time*/)
{
    if (countingPage != nullptr)
        countingPage->ShowNotice();
}

void ContactsPage::OnControl(CSkinObject* sender, void* /*data*/)
{
    const String& id = sender->GetObjectID();
    if (id == u"ContactsSignInBtn")
        commands_.setUpAccount();
    else if (id == u"ContactsAddBtn")
        commands_.addContact();
    else if (id == u"ContactsNoticeBtn")
        DoDeed(notice_.deed);
}

void ContactsPage::DoDeed(NoticeDeed deed) const
{
    switch (deed) {
    case NoticeDeed::None: break;
    case NoticeDeed::SetUpAccount: commands_.setUpAccount(); break;
    case NoticeDeed::GivePassword: commands_.givePassword(); break;
    case NoticeDeed::JudgeCertificate: commands_.judgeCertificate(); break;
    case NoticeDeed::TryNow: commands_.tryNow(); break;
    }
}

} // namespace kivo::host
