#include "shell/contracts/ui/Menu.h"

#include "platform/ui/Peers.h"

#include <utility>

namespace kivo::ui {

namespace {

constexpr std::size_t kMaxNameUnits = 60;

bool IsHighSurrogate(char16_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

} // namespace

IMenu::IMenu() = default;

IMenu::IMenu(const String& text, int id, int disabled, int checked, const String& /*extra*/)
    : text_(text)
    , id_(id)
    , disabled_(disabled != 0)
    , checked_(checked != 0)
{
}

IMenu::~IMenu() = default;

void IMenu::Release()
{
    delete this;
}

void IMenu::AddMenu(const String& text,
                    int id,
                    int disabled,
                    int checked,
                    const MenuDelegate& delegate,
                    const void* /*image*/,
                    const String& extra)
{
    Released<IMenu> entry(new IMenu(text, id, disabled, checked, extra));
    entry->delegate_ = delegate;
    entries_.push_back(std::move(entry));
}

void IMenu::AddMenu(IMenu* subMenu)
{
    if (subMenu == nullptr || subMenu == this)
        return;
    subMenu->subMenu_ = true;
    entries_.emplace_back(subMenu);
}

void IMenu::SetLastKeys(const String& keys)
{
    if (!entries_.empty())
        entries_.back()->keys_ = keys;
}

void IMenu::PopupMenu(
    CSkinForm* form, IMenu* menu, int x, int y, int /*reserved*/, const String& /*extra*/)
{
    const Released<IMenu> owned(menu);
    if (!owned || owned->entries_.empty())
        return;
    IMenu* chosen = GetPeerFactory().RunMenu(form, *owned, x, y);
    if (chosen == nullptr || chosen->disabled_ || chosen->subMenu_)
        return;
    const MenuDelegate delegate = chosen->delegate_;
    delegate(chosen);
}

String IMenu::GetDisplayText() const
{
    String text = text_;
    if (text.size() > kMaxNameUnits) {
        text.resize(IsHighSurrogate(text[kMaxNameUnits - 2]) ? kMaxNameUnits - 2
                                                             : kMaxNameUnits - 1);
        text += u'\u2026';
    }
    for (char16_t& unit : text)
        if (unit < u' ' || (unit >= 0x7F && unit <= 0x9F) || unit == 0x2028 || unit == 0x2029)
            unit = u' ';
    return text;
}

IMenu* IMenu::FindEntry(int id) const
{
    for (const Released<IMenu>& entry : entries_) {
        if (!entry->subMenu_ && !entry->IsSeparator() && entry->id_ == id)
            return entry.get();
        if (IMenu* found = entry->FindEntry(id))
            return found;
    }
    return nullptr;
}

} // namespace kivo::ui
