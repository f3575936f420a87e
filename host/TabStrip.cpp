#include "host/TabStrip.h"

#include "platform/ui/Peers.h"
#include "shell/contracts/ui/SkinButton.h"
#include "shell/contracts/ui/SkinManager.h"

#include <algorithm>
#include <memory>

namespace kivo::host {

namespace {

constexpr int kHeight = 36;
constexpr int kGap = 4;
constexpr int kLineHeight = 2;
constexpr int kChosenWeight = 600;
constexpr int kOtherWeight = 500;

} // namespace

TabStrip::TabStrip()
    : line_(std::make_unique<ui::CSkinPanel>().release())
{
    SetSkinName(u"strip");
    line_->SetSkinName(u"tabline");
    line_->SetVisible(0);
    RegisterControl(line_);
}

void TabStrip::AddTab(const void* key, const String& text, const String& picture)
{
    auto button = std::make_unique<ui::CSkinButton>();
    button->SetSkinName(u"tab");
    button->SetPicture(picture);
    button->SetAccessibleName(text);
    button->SetFont({1.0, kOtherWeight});
    if (showsTexts_)
        button->SetText(text);
    tabs_.push_back({key, button.get(), text});
    RegisterControl(button.release());
    if (GetPeer() != nullptr)
        tabs_.back().button->CreatePeer();
    RePositionSubControls();
}

void TabStrip::RemoveTab(const void* key)
{
    Tab* const tab = Find(key);
    if (tab == nullptr)
        return;
    ui::CSkinButton* const button = tab->button;
    std::erase_if(tabs_, [key](const Tab& one) { return one.key == key; });
    UnregisterControl(button);
    button->Release();
    RePositionSubControls();
}

void TabStrip::SetTabText(const void* key, const String& text)
{
    Tab* const tab = Find(key);
    if (tab == nullptr)
        return;
    tab->text = text;
    tab->button->SetAccessibleName(text);
    if (showsTexts_)
        tab->button->SetText(text);
    RePositionSubControls();
}

void TabStrip::SetTabPicture(const void* key, const String& picture)
{
    if (Tab* const tab = Find(key))
        tab->button->SetPicture(picture);
}

void TabStrip::Choose(const void* key)
{
    chosen_ = key;
    for (const Tab& tab : tabs_) {
        tab.button->SetFont({1.0, tab.key == key ? kChosenWeight : kOtherWeight});
        tab.button->SetChecked(tab.key == key ? 1 : 0);
    }
    RePositionSubControls();
}

const void* TabStrip::FindKey(const ui::CSkinObject* button) const
{
    const auto found = std::find_if(
        tabs_.begin(), tabs_.end(), [button](const Tab& tab) { return tab.button == button; });
    return found != tabs_.end() ? found->key : nullptr;
}

TabStrip::Tab* TabStrip::Find(const void* key)
{
    const auto found =
        std::find_if(tabs_.begin(), tabs_.end(), [key](const Tab& tab) { return tab.key == key; });
    return found != tabs_.end() ? &*found : nullptr;
}

bool TabStrip::CreatePeer()
{
    if (GetPeer() != nullptr)
        return true; // The children's create step asks for ours.
    const bool isMade = CSkinPanel::CreatePeer();
    if (isMade)
        line_->CreatePeer();
    return isMade;
}

// The tabs take what there is.
ui::Size TabStrip::GetWantedSize() const
{
    return {0, kHeight};
}

void TabStrip::CalculateBounds(const Rect& place)
{
    CSkinPanel::CalculateBounds(place);
    RePositionSubControls();
}

void TabStrip::RePositionSubControls()
{
    const int count = GetTabCount();
    if (count == 0)
        return;
    const Rect padding = GetPadding();
    const int width = GetWidth() - padding.left - padding.right + kGap;
    const int height = GetHeight();
    ShowTexts(/*show=*/true); // Only with the words can it be told whether they fit.
    ShowTexts(FitsInto(width / count - kGap));
    const Tab* const chosen = Find(chosen_);
    const bool isMirrored = ui::CSkinManager::GetInstance()->IsRightToLeft();
    line_->SetVisible(chosen != nullptr ? 1 : 0);
    for (int i = 0; i < count; ++i) {
        const int left = padding.left + width * i / count;
        const int share = padding.left + width * (i + 1) / count - left - kGap;
        const Tab& tab = tabs_[static_cast<std::size_t>(i)];
        const int place = isMirrored ? GetWidth() - left - share : left;
        tab.button->SetBounds(place, 0, share, height - kLineHeight);
        if (&tab == chosen)
            line_->SetBounds(place, height - kLineHeight, share, kLineHeight);
    }
}

bool TabStrip::FitsInto(int width) const
{
    return std::all_of(tabs_.begin(), tabs_.end(), [width](const Tab& tab) {
        const ui::IPeer* const peer = tab.button->GetPeer();
        return peer == nullptr || peer->GetPreferredSize().width <= width;
    });
}

void TabStrip::ShowTexts(bool show)
{
    if (show == showsTexts_)
        return;
    showsTexts_ = show;
    for (const Tab& tab : tabs_)
        tab.button->SetText(show ? tab.text : String());
}

} // namespace kivo::host
