#include "forms/AddURLForm.h"

#include "mediares/GroupIds.h"
#include "mediares/IMediaResGroup.h"
#include "mediares/IMediaResManager.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/common/Language.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/ui/SkinCombox.h"
#include "shell/contracts/ui/SWColorEdit.h"

#include <algorithm>
#include <set>

namespace kivo::tunehive {

namespace {

constexpr int kFormIcon = 7003;
constexpr unsigned kComboStyle = 4;
constexpr unsigned kEditStyle =
    ui::wndstyle::kChild | ui::wndstyle::kVisible | ui::wndstyle::kTabStop;

constexpr StringView kSchemes[] = {u"http://", u"mms://", u"rtsp://"};
constexpr StringView kNewerSchemes[] = {u"https://"}; // Beyond alone; the same rules.

bool PassesScheme(const String& url, StringView scheme)
{
    return StringView(url).starts_with(scheme);
}

bool IsBareScheme(const String& url, StringView scheme)
{
    return common::ToLowerAscii(url) == scheme;
}

} // namespace

bool IsAddressValid(const String& url)
{
    const auto passes = [&](StringView scheme) { return PassesScheme(url, scheme); };
    const auto isBare = [&](StringView scheme) { return IsBareScheme(url, scheme); };
    const bool isNewer =
        IsBeyond() && std::any_of(std::begin(kNewerSchemes), std::end(kNewerSchemes), passes);
    const bool hasScheme = isNewer || std::any_of(std::begin(kSchemes), std::end(kSchemes), passes);
    return hasScheme && url.find(u' ') == String::npos &&
           std::none_of(std::begin(kSchemes), std::end(kSchemes), isBare) &&
           std::none_of(std::begin(kNewerSchemes), std::end(kNewerSchemes), isBare);
}

CAddURLForm::CAddURLForm(const String& group, const String& url, const String& name)
    : group_(group)
    , url_(url)
    , name_(name)
{
    SetObjectID(u"AddURLForm");
}

int CAddURLForm::Create(CWnd* parent)
{
    const String title =
        common::CMutiLanSupport::GetInstance()->GetStringViaID(u"STRID_TUNEHIVE_ADDURLFORM_TITLE");
    if (CSkinWnd::Create(ui::wndstyle::kPopup, u"KivoMediaAddURLForm", title, Rect(), parent, 0) ==
        0) {
        return 0;
    }
    SetIcon(kFormIcon, 1);
    SetIcon(kFormIcon, 0);
    ListenEvent(ui::kControlEvent, ui::EventDelegate(this, &CAddURLForm::OnControlEvent));
    return 1;
}

bool CAddURLForm::FillGroups()
{
    combo_ = dynamic_cast<ui::CSkinCombox*>(FindControlRecusive(u"SelCombox"));
    if (combo_ == nullptr)
        return false;
    combo_->Create(kComboStyle, {0, 0, 10, 100}, this);
    combo_->SetFont(ui::GetDefaultLOGFONT());
    int selected = 0;
    int count = 0;
    if (IMediaResManager* manager = FindMediaResManager()) {
        std::set<String> ids;
        manager->GetGroupIDs(ids);
        for (const String& id : ids) {
            IMediaResGroup* group = id != kHotGroup ? manager->GetGroup(id) : nullptr;
            if (group == nullptr)
                continue;
            ids_[combo_->AddString(group->GetName())] = group->GetID();
            if (group->GetID() == group_)
                selected = count;
            ++count;
        }
    }
    combo_->SetCurSel(selected);
    return true;
}

// Null: the skin lacks it.
ui::CSWColorEdit* CAddURLForm::FindEdit(const String& id, const String& text)
{
    auto* edit = dynamic_cast<ui::CSWColorEdit*>(FindControlRecusive(id));
    if (edit == nullptr)
        return nullptr;
    edit->Create(kEditStyle, Rect(), this, 0);
    edit->SetFont(ui::GetDefaultLOGFONT());
    edit->SetText(text);
    return edit;
}

int CAddURLForm::OnBuildControlAfter()
{
    if (!FillGroups())
        return 0;
    urlInput_ = FindEdit(u"URLInput", String(kSchemes[0]));
    if (urlInput_ == nullptr)
        return 0;
    nameInput_ = FindEdit(u"URLNameInput", String());
    if (nameInput_ == nullptr)
        return 0;
    errorLabel_ = FindControlRecusive(u"URLErrorLabel");
    if (errorLabel_ != nullptr)
        errorLabel_->SetVisible(0);
    okButton_ = FindControlRecusive(u"BtnOK");
    cancelButton_ = FindControlRecusive(u"BtnCancel");
    if (okButton_ == nullptr || cancelButton_ == nullptr)
        return 0;
    SetDefaultOKButton(okButton_);
    if (!name_.empty())
        nameInput_->SetText(name_);
    if (!url_.empty())
        urlInput_->SetText(url_);
    FocusObject(nameInput_);
    return 1;
}

void CAddURLForm::OnControlEvent(ui::CSkinObject* sender, void* /*data*/)
{
    if (sender == nullptr)
        return;
    if (sender == okButton_)
        Confirm();
    else if (sender == cancelButton_)
        DoCancelWndModal(0);
}

void CAddURLForm::Confirm()
{
    const String url = common::Trim(urlInput_->GetText());
    if (!IsAddressValid(url)) {
        if (errorLabel_ != nullptr) {
            errorLabel_->SetVisible(1);
            errorLabel_->Refresh();
            RePositionSubControls();
        }
        return;
    }
    DoCancelWndModal(1);
    const auto found = ids_.find(combo_->GetCurSel());
    if (found != ids_.end())
        group_ = found->second;
    url_ = url;
    name_ = nameInput_->GetText();
}

} // namespace kivo::tunehive
