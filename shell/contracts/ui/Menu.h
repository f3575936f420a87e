#pragma once

#include "shell/contracts/base/Delegate.h"
#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/base/String.h"

#include <vector>

namespace kivo::ui {

class CSkinForm;
class CSkinObject;
class IMenu;

// Gets the chosen entry, whose GetID tells which it is.
using MenuDelegate = FastDelegate1<IMenu*>;

// A menu or an entry of one: an entry with entries of its own is a sub-menu, an entry without a
// text a separator. Menus are data until they pop up. Thread: user interface.
class KIVO_API IMenu {
public:
    IMenu(); // A menu's root.
    // A sub-menu: its text, id -1, 1 for a disabled one, 0, and an empty text.
    IMenu(const String& text, int id, int disabled, int checked, const String& extra);
    IMenu(const IMenu&) = delete;
    IMenu& operator=(const IMenu&) = delete;
    virtual ~IMenu();
    virtual void Release(); // Frees it with all below it.

    // Appends an entry. `image` is null, `extra` empty.
    void AddMenu(const String& text,
                 int id,
                 int disabled,
                 int checked,
                 const MenuDelegate& delegate,
                 const void* image,
                 const String& extra);
    void AddMenu(IMenu* subMenu); // The menu owns it from here on.

    // The keys that do the same as the entry that was appended last, shown at its far end: "Del",
    // "Ctrl+Right". They are named in the user's language; the menu itself doesn't listen to them.
    void SetLastKeys(const String& keys);

    // Shows `menu` and, once it has closed, runs the delegate of the chosen entry; then the menu is
    // freed. (x, y) is a place on the screen; (-1, -1): at the pointer, or, when a key asked for
    // it, below what has the keyboard. `form` may be null. The last two are 0 and empty.
    static void
    PopupMenu(CSkinForm* form, IMenu* menu, int x, int y, int reserved, const String& extra);

    [[nodiscard]] int GetID() const { return id_; }
    [[nodiscard]] const String& GetText() const { return text_; } // In full.
    [[nodiscard]] String GetDisplayText() const;                  // At most 60 units, on one line.
    [[nodiscard]] const String& GetKeys() const { return keys_; } // Empty: none.
    [[nodiscard]] bool IsDisabled() const { return disabled_; }
    [[nodiscard]] bool IsChecked() const { return checked_; }
    [[nodiscard]] bool IsSubMenu() const { return subMenu_; }
    [[nodiscard]] bool IsSeparator() const { return !subMenu_ && text_.empty(); }
    [[nodiscard]] const std::vector<Released<IMenu>>& GetEntries() const { return entries_; }
    [[nodiscard]] const MenuDelegate& GetDelegate() const { return delegate_; }
    [[nodiscard]] IMenu* FindEntry(int id) const; // The first of that id at any depth; null: none.

private:
    String text_;
    String keys_;
    MenuDelegate delegate_;
    std::vector<Released<IMenu>> entries_;
    int id_ = 0;
    bool disabled_ = false;
    bool checked_ = false;
    bool subMenu_ = false;
};

} // namespace kivo::ui
