#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/ui/SkinList.h"
#include "shell/contracts/ui/Types.h"

#include <memory>

namespace kivo {
class CWnd;
}

// What a window system gives the plain controls. A peer is made by the create step of its control,
// which owns it, and draws from the control: it reads everything there and keeps nothing that the
// control could tell. It reports the user's input by the control's "reports of the peer". Rules:
// - The control is written first, then Apply lets the peer know. What the widget says back during
//   Apply is an echo and must not be reported.
// - A report may destroy the control and with it the peer: touch nothing of either afterwards
//   unless CSkinObject::Watch, taken before, says that it lives; delete widgets later, not at once.
// - A child's peer is made after its parent's, whose widget holds the child's. Bounds are relative
//   to the parent; a window of the popup style is a top level, and its bounds are on the screen.
// - Bounds, of cells too, are mirrored already in right-to-left windows. Inside a slider the peer
//   mirrors points and picture itself.
// Thread: user interface.
namespace kivo::ui {

class CSkinButton;
class CSkinCombox;
class CSkinForm;
class CSkinLabel;
class CSkinPhoto;
class CSkinSlider;
class CSkinSplitter;
class CSkinTree;
class CSkinWebBrowser;
class CSkinWnd;
class CSWColorEdit;
class IMenu;

// What of the control is another now.
enum class Change {
    Parent, // Another skin parent, or none.
    Bounds,
    Visible, // Its own flag.
    Enabled,
    Text,
    Tooltip,
    Name, // The accessible one.
    Font,
    Picture,
    Look,  // Alignment, lines, label flag, checked, password, limit, text colour, skin class.
    Items, // Of a combo box.
    Selection,
    Range, // Of a slider; Thumb is its position, thumb, hover, drag, lock.
    Thumb,
    Bar,   // Of a splitter: where it stands, whether it shows.
    Title, // And icon.
    Style, // Extended style of a window.
    Cursor,
    DefaultButton,
    Rows,    // Settings of a list: drag, drop, tooltip width.
    Skin,    // Everything that comes from the skin: fetch it anew.
    Repaint, // Nothing that can be named: paint soon.
};

class IPeer {
public:
    virtual ~IPeer() = default;
    virtual void Apply(Change change) = 0;
    [[nodiscard]] virtual Size GetPreferredSize() const = 0; // By text, font and picture.
    virtual void SetFocus() = 0;
    [[nodiscard]] virtual bool HasFocus() const = 0; // Itself or a widget inside it.
    [[nodiscard]] virtual Point MapToScreen(Point point) const = 0;
};

// Of a CSkinWnd and what derives from it.
class IWindowPeer : public IPeer {
public:
    [[nodiscard]] virtual Rect GetWindowRect() const = 0; // On the screen.
    virtual void Center(CWnd* parent) = 0; // Over the parent, else on the screen; null is allowed.
    virtual bool TrackMouseLeave() = 0;    // One CSkinSlider::OnMouseLeave will come.
};

// Of a CSkinForm. Reports: WindowProc with wndmessage::kActivate and kClose; the user's move and
// resize by CSkinObject::CalculateBounds with the new bounds on the screen.
class IFormPeer : public IWindowPeer {
public:
    // Shows the form and runs the event loop until EndModal; gives its number, 0 when the window
    // was closed in any other way. An end before the call is the form's matter.
    virtual int RunModal() = 0;
    virtual void EndModal(int result) = 0;
    virtual void BringToTop() = 0;
};

// Of a CSkinList or CSkinTree. Reports: see CSkinList and CSkinTree.
class IListPeer : public IWindowPeer {
public:
    // The rows have changed; see RowChanges. Selection and current row are read from the rows.
    virtual void Sync(const RowChanges& changes) = 0;
    // The row is being destroyed: never touch it again. Its children went before. `parent` is where
    // the view last saw it; null when it was in no tree.
    virtual void OnRowGone(CSkinListItem* row, CSkinTreeItem* parent) = 0;
    virtual void OnRootGone() = 0; // Of a tree: all rows are about to go; forget them.
    virtual bool OpenEditor(CSkinListItem* row, const String& cellId) = 0; // False: it can't.
    virtual void CloseEditor(bool commit) = 0; // Reports OnEditFinished if one is open.
    virtual void ScrollTo(CSkinListItem* row) = 0;
    [[nodiscard]] virtual CSkinListItem* HitTest(Point point) const = 0; // Null: no row there.
};

// Of a CSkinWebBrowser.
class IBrowserPeer : public IWindowPeer {
public:
    virtual void Navigate(const String& url) = 0;
};

// Makes peers. The control is borrowed and outlives its peer. Null: it can't be made, and the
// create step fails.
class IPeerFactory {
public:
    virtual ~IPeerFactory() = default;
    virtual std::unique_ptr<IPeer> MakePanel(CSkinObject& panel) = 0; // Pages too.
    virtual std::unique_ptr<IPeer> MakeLabel(CSkinLabel& label) = 0;
    virtual std::unique_ptr<IPeer> MakeButton(CSkinButton& button) = 0;
    virtual std::unique_ptr<IPeer> MakePhoto(CSkinPhoto& photo) = 0;
    virtual std::unique_ptr<IPeer> MakeSplitter(CSkinSplitter& splitter) = 0;
    virtual std::unique_ptr<IWindowPeer> MakeEdit(CSWColorEdit& edit) = 0;
    virtual std::unique_ptr<IWindowPeer> MakeCombox(CSkinCombox& combox) = 0;
    virtual std::unique_ptr<IWindowPeer> MakeSlider(CSkinSlider& slider) = 0;
    virtual std::unique_ptr<IWindowPeer> MakeWindow(CSkinWnd& window) = 0;
    virtual std::unique_ptr<IFormPeer> MakeForm(CSkinForm& form) = 0;
    virtual std::unique_ptr<IListPeer> MakeList(CSkinList& list) = 0;
    virtual std::unique_ptr<IListPeer> MakeTree(CSkinTree& tree) = 0;
    virtual std::unique_ptr<IBrowserPeer> MakeBrowser(CSkinWebBrowser& browser) = 0;

    // Shows a menu and waits; see IMenu::PopupMenu. The chosen entry, null when none was. `form`
    // may be null.
    virtual IMenu* RunMenu(CSkinForm* form, IMenu& menu, int x, int y) = 0;
};

// Installs the factory, borrowed; null restores the null factory. Controls that have a peer keep
// it.
KIVO_API void SetPeerFactory(IPeerFactory* factory);
[[nodiscard]] KIVO_API IPeerFactory& GetPeerFactory();

} // namespace kivo::ui
