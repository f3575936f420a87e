#include "host/ContactRows.h"

#include "host/OwnLine.h"
#include "host/PlainLine.h"
#include "host/Texts.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Paths.h"

#include <algorithm>

namespace kivo::host {

namespace {

// The ids of the cells.
constexpr char16_t kFace[] = u"face";
constexpr char16_t kFaceSelected[] = u"face_selected";
constexpr char16_t kLetters[] = u"letters";
constexpr char16_t kPresence[] = u"presence";
constexpr char16_t kName[] = u"text"; // What type-ahead looks for and F2 edits.
constexpr char16_t kLinePicture[] = u"line_picture";
constexpr char16_t kLine[] = u"line";
constexpr char16_t kPlay[] = u"play";

// Pixels.
constexpr int kEdge = 12;
constexpr int kFaceSide = 32;
constexpr int kPresenceSide = 10;
constexpr int kPresenceLeft = kEdge + 23;
constexpr int kTextLeft = 54;
constexpr int kTextInset = 6; // Above and below the two lines.
constexpr int kPictureSide = 14;
constexpr int kPictureGap = 5;
constexpr int kButtonSide = 32;
constexpr int kButtonEdge = 12; // Beside the scroll bar's thumb.
constexpr int kHeadingHeight = 30;
constexpr int kPersonHeight = 48;

enum MenuId : int { kPlayHere = 1, kRename = 2, kRemove = 3, kAnswer = 4 };

struct PresenceLook {
    SignPresence presence;
    const char16_t* text;
    const char16_t* picture;
};
constexpr PresenceLook kPresences[] = {
    {SignPresence::Offline, u"STRID_KIVO_OFFLINE", u"public\\presence_offline.png"},
    {SignPresence::Online,  u"STRID_KIVO_ONLINE",  u"public\\presence_online.png" },
    {SignPresence::Away,    u"STRID_KIVO_AWAY",    u"public\\presence_away.png"   },
    {SignPresence::Busy,    u"STRID_KIVO_BUSY",    u"public\\presence_busy.png"   },
};

const PresenceLook& GetLook(SignPresence presence)
{
    const auto* const found =
        std::find_if(std::begin(kPresences), std::end(kPresences), [&](const PresenceLook& look) {
            return look.presence == presence;
        });
    return found != std::end(kPresences) ? *found : kPresences[0];
}

bool IsEvent(int event, ui::RowEvent wanted)
{
    return event == static_cast<int>(wanted);
}

void AddEntry(
    ui::IMenu& menu, const char16_t* text, int id, bool isEnabled, const ui::MenuDelegate& delegate)
{
    menu.AddMenu(host::GetText(text), id, isEnabled ? 0 : 1, /*checked=*/0, delegate, nullptr, {});
}

// A place of its own in the row, hidden where it has no width.
void Place(ui::CSkinCell* cell, int left, int top, int width, int height)
{
    if (cell == nullptr)
        return;
    cell->SetAnchorStyle(ui::anchor::kNone);
    cell->SetBounds(left, top, width, height);
    cell->SetMultiLine(0);
    cell->GetSkinConfig()->labelFlag = 1;
}

} // namespace

HeadingRow::HeadingRow(ui::CSkinList& list, const String& text)
    : CSkinListItem(&list, text)
{
}

void HeadingRow::SetCount(std::size_t count)
{
    if (count_ == count)
        return;
    count_ = count;
    HeadingRow::BuildRow();
}

void HeadingRow::BuildRow()
{
    const String text =
        host::GetText(GetID().c_str()) + u" · " + common::ToText(static_cast<int>(count_));
    Clear();
    AddLabel(-1, kName, u"caption", text, {}, ui::GetDefaultLOGFONT(), 0, 0, 0);
}

void HeadingRow::ReposControls()
{
    SetMargins(0, 0, 0, 0);
    Place(GetObjectW(kName), kEdge, 0, GetWidth() - 2 * kEdge, GetHeight());
}

int HeadingRow::GetWantedHeight(int lineHeight) const
{
    return std::max(kHeadingHeight, lineHeight + 14);
}

ui::IMenu* HeadingRow::GetRowMenu(const ui::MenuDelegate& /*delegate*/)
{
    return nullptr;
}

void HeadingRow::OnRowCommand(ui::IMenu* /*entry*/) {}

PersonRow::PersonRow(ui::CSkinList& list, const String& id, const ContactCommands& commands)
    : CSkinListItem(&list, id)
    , commands_(commands)
{
}

void PersonRow::AddFace(const String& name, bool hasPresence)
{
    const String face = hasPresence ? u"public\\contact_face" : u"public\\contact_face_whole";
    AddPhoto(-1, kFace, {}, face + u".png", {}, {}, 0);
    AddPhoto(-1, kFaceSelected, {}, face + u"_selected.png", {}, {}, 0);
    AddText(kLetters, u"letters", GetInitials(name));
}

void PersonRow::AddText(const char16_t* cell, const char16_t* skinClass, const String& text)
{
    AddLabel(-1, cell, skinClass, text, {}, ui::GetDefaultLOGFONT(), 0, 0, 0);
}

int PersonRow::GetWantedHeight(int lineHeight) const
{
    return std::max(kPersonHeight, 2 * (lineHeight + kTextInset));
}

void PersonRow::ReposControls()
{
    SetMargins(0, 0, 0, 0);
    const int width = GetWidth();
    const int height = GetHeight();
    const int faceTop = (height - kFaceSide) / 2;
    Place(GetObjectW(kFace), kEdge, faceTop, IsSelected() ? 0 : kFaceSide, kFaceSide);
    Place(GetObjectW(kFaceSelected), kEdge, faceTop, IsSelected() ? kFaceSide : 0, kFaceSide);
    Place(GetObjectW(kPresence), kPresenceLeft, faceTop + 22, kPresenceSide, kPresenceSide);
    ui::CSkinCell* const letters = GetObjectW(kLetters);
    Place(letters, kEdge, faceTop, kFaceSide, kFaceSide);
    if (letters != nullptr)
        letters->SetAlignmentHor(ui::align::kCentre);

    const bool hasButton = GetObjectW(kPlay) != nullptr;
    const int end = width - (hasButton ? kButtonEdge + kButtonSide + 4 : kEdge);
    const bool hasLine = GetObjectW(kLine) != nullptr;
    const int middle = height / 2;
    const int textTop = hasLine ? kTextInset : 0;
    Place(GetObjectW(kName),
          kTextLeft,
          textTop,
          std::max(0, end - kTextLeft),
          (hasLine ? middle : height) - textTop);
    Place(GetObjectW(kLinePicture), kTextLeft, middle, kPictureSide, height - kTextInset - middle);
    const bool hasPicture = GetObjectW(kLinePicture) != nullptr;
    const int lineLeft = kTextLeft + (hasPicture ? kPictureSide + kPictureGap : 0);
    Place(GetObjectW(kLine),
          lineLeft,
          middle,
          std::max(0, end - lineLeft),
          height - kTextInset - middle);
    Place(GetObjectW(kPlay),
          width - kButtonEdge - kButtonSide,
          (height - kButtonSide) / 2,
          kButtonSide,
          kButtonSide);
}

ContactRow::ContactRow(ui::CSkinList& list, const Contact& contact, const ContactCommands& commands)
    : PersonRow(list, contact.id, commands)
    , contact_(contact)
{
    ContactRow::BuildRow();
}

void ContactRow::SetContact(const Contact& contact)
{
    const auto getTitle = [](const Contact& of) { return of.sign ? of.sign->title : String(); };
    const auto getKind = [](const Contact& of) { return of.sign ? of.sign->kind : String(); };
    const bool wasPlayable = IsPlayable();
    const bool isSame = contact.name == contact_.name && contact.presence == contact_.presence &&
                        getTitle(contact) == getTitle(contact_) &&
                        getKind(contact) == getKind(contact_);
    contact_ = contact;
    if (!isSame || wasPlayable != IsPlayable())
        ContactRow::BuildRow();
}

bool ContactRow::IsPlayable() const
{
    return contact_.sign && UrlIsW(contact_.sign->sign.GetText(0));
}

String ContactRow::GetStateText() const
{
    if (contact_.sign && !contact_.sign->title.empty())
        return contact_.sign->title;
    if (contact_.isAsked)
        return host::GetText(u"STRID_KIVO_ASKED");
    return host::GetText(GetLook(contact_.presence).text);
}

void ContactRow::BuildRow()
{
    const bool isThere = contact_.presence != SignPresence::Offline;
    Clear();
    AddFace(contact_.name, /*hasPresence=*/true);
    AddPhoto(-1, kPresence, {}, GetLook(contact_.presence).picture, {}, {}, 0);
    AddText(kName, isThere ? u"contact_name" : u"contact_away", contact_.name);
    if (!isThere && !contact_.isAsked)
        return;
    if (contact_.sign) {
        const String picture = GetCommands().getSignPicture(contact_.sign->kind);
        if (!picture.empty())
            AddPhoto(-1, kLinePicture, {}, picture, {}, {}, 0);
    }
    AddText(kLine, u"small", GetStateText());
    if (IsPlayable())
        AddPhoto(-1, kPlay, {}, u"public\\sign_play.png", {}, {}, 0);
}

String ContactRow::GetSpokenText()
{
    String spoken = contact_.name + u", " + host::GetText(GetLook(contact_.presence).text);
    if (contact_.isAsked)
        spoken += u", " + host::GetText(u"STRID_KIVO_ASKED");
    if (contact_.sign)
        spoken += u", " + common::FormatText(host::GetText(u"STRID_KIVO_PLAYS"), {GetStateText()});
    return spoken;
}

String ContactRow::GetButtonCell() const
{
    return kPlay;
}

void ContactRow::OnButtonCell()
{
    Activate();
}

String ContactRow::MakeTooltip(const String& cellId)
{
    if (cellId == kPlay)
        return host::GetText(u"STRID_KIVO_PLAYHERE");
    String tip = contact_.name;
    const String id = ToPlainLine(contact_.id);
    if (id != contact_.name)
        tip += u"\n" + id;
    if (contact_.sign && !contact_.sign->title.empty())
        tip += u"\n" + contact_.sign->title;
    if (contact_.sign && !IsPlayable())
        tip += u"\n" + host::GetText(u"STRID_KIVO_ONTHEIRDISK");
    return tip;
}

void ContactRow::Activate()
{
    if (contact_.sign)
        GetCommands().activateSign(String(GetID()));
}

int ContactRow::OnListEvent(ui::CSkinList* list, int context, int event, const String& text)
{
    if (IsEvent(event, ui::RowEvent::DoubleClick) || IsEvent(event, ui::RowEvent::Activate))
        Activate();
    else if (IsEvent(event, ui::RowEvent::Delete))
        GetCommands().remove(String(GetID()));
    else
        return PersonRow::OnListEvent(list, context, event, text);
    return 0;
}

void ContactRow::OnRenameKey()
{
    ui::CSkinList& list = *GetList();
    list.Edit(list.LocateRow(this), kName, /*select=*/1);
}

bool ContactRow::OnEditEnd(const String& /*oldText*/, const String& newText)
{
    GetCommands().rename(String(GetID()), ToPlainLine(newText));
    return true;
}

ui::IMenu* ContactRow::GetRowMenu(const ui::MenuDelegate& delegate)
{
    Released<ui::IMenu> menu(new ui::IMenu);
    AddEntry(*menu, u"STRID_KIVO_PLAYHERE", kPlayHere, IsPlayable(), delegate);
    menu->AddMenu(String(), 0, /*disabled=*/0, /*checked=*/0, delegate, nullptr, {});
    AddEntry(*menu, u"STRID_KIVO_RENAME", kRename, /*isEnabled=*/true, delegate);
    AddEntry(*menu, u"STRID_KIVO_REMOVEFRIEND", kRemove, /*isEnabled=*/true, delegate);
    return menu.release();
}

void ContactRow::OnRowCommand(ui::IMenu* entry)
{
    switch (entry->GetID()) {
    case kPlayHere: Activate(); break;
    case kRename: OnRenameKey(); break;
    case kRemove: GetCommands().remove(String(GetID())); break;
    default: break;
    }
}

RequestRow::RequestRow(ui::CSkinList& list, const String& id, const ContactCommands& commands)
    : PersonRow(list, id, commands)
{
    RequestRow::BuildRow();
}

void RequestRow::BuildRow()
{
    const String name = ToPlainLine(GetID());
    Clear();
    AddFace(name, /*hasPresence=*/false);
    AddText(kName, u"contact_name", name);
    AddText(kLine, u"small", host::GetText(u"STRID_KIVO_REQUEST_LINE"));
}

String RequestRow::GetSpokenText()
{
    return GetViewText(kName) + u", " + GetViewText(kLine);
}

int RequestRow::OnListEvent(ui::CSkinList* list, int context, int event, const String& text)
{
    const bool isAnswer = IsEvent(event, ui::RowEvent::DoubleClick) ||
                          IsEvent(event, ui::RowEvent::Activate) ||
                          IsEvent(event, ui::RowEvent::Delete);
    if (!isAnswer)
        return PersonRow::OnListEvent(list, context, event, text);
    GetCommands().answer(String(GetID()));
    return 0;
}

ui::IMenu* RequestRow::GetRowMenu(const ui::MenuDelegate& delegate)
{
    Released<ui::IMenu> menu(new ui::IMenu);
    AddEntry(*menu, u"STRID_KIVO_ANSWER", kAnswer, /*isEnabled=*/true, delegate);
    return menu.release();
}

void RequestRow::OnRowCommand(ui::IMenu* entry)
{
    if (entry->GetID() == kAnswer)
        GetCommands().answer(String(GetID()));
}

} // namespace kivo::host
