#pragma once

#include "shell/contracts/framework/Windows.h"
#include "shell/contracts/ui/SkinObject.h"

namespace kivo::ui {

// Window styles as they come in create steps.
namespace wndstyle {
inline constexpr unsigned kChild = 0x40000000U;
inline constexpr unsigned kVisible = 0x10000000U;
inline constexpr unsigned kPopup = 0x80000000U;
inline constexpr unsigned kClipChildren = 0x02000000U;
inline constexpr unsigned kTabStop = 0x00010000U;
inline constexpr unsigned kExToolWindow = 128U;
} // namespace wndstyle

// Platform messages that the peers send to WindowProc.
namespace wndmessage {
inline constexpr unsigned kActivate = 6; // First parameter 1: it became active, 0: no longer.
inline constexpr unsigned kClose = 0x10; // The user wants it closed.
} // namespace wndmessage

// A control with a platform window of its own: a child of its skin parent, or a top level when it
// has the popup style. Its bounds are in the parent, those of a top level on the screen.
// Thread: user interface.
class KIVO_API CSkinWnd : public CWnd, public CSkinObject {
public:
    CSkinWnd();
    ~CSkinWnd() override;

    // The create step. `className` names the kind, `title` is a top level's caption; `bounds` is
    // left, top, right, bottom, all zero: its own choice; `parent` may be null. A window with the
    // child style is visible if it has the visible style too, a top level starts hidden.
    // 1: handle and peer stand. 0: they don't, or a window stands already.
    int Create(unsigned style,
               const String& className,
               const String& title,
               const Rect& bounds,
               CWnd* parent,
               int id);

    bool CreateHandle() override;  // With the peer; without one it fails.
    void DestroyWindow() override; // The peer goes too.
    [[nodiscard]] CSkinForm* GetOwnerForm() override;
    void ShowWindow(int command) override;
    void MoveWindow(const Rect& bounds) override;
    [[nodiscard]] bool IsWindowVisible() const override;
    [[nodiscard]] Rect GetWindowRect() const override; // On the screen.
    void SetVisible(int visible) override;

    [[nodiscard]] CWnd* GetParentWnd() const { return parentWnd_; } // As given to Create.
    [[nodiscard]] int GetControlId() const { return controlId_; }
    [[nodiscard]] unsigned GetStyle() const { return style_; }
    [[nodiscard]] bool IsTopLevel() const { return (style_ & wndstyle::kPopup) != 0; }
    void
    SetExStyle(unsigned style); // kExToolWindow makes a pop-up that closes at a press elsewhere.
    [[nodiscard]] unsigned GetExStyle() const { return exStyle_; }
    [[nodiscard]] const String& GetClassName() const { return className_; }
    [[nodiscard]] const String& GetTitle() const { return title_; }
    void SetTitle(const String& title);

    void CenterWindow(); // Over its parent, else on the screen; nothing where the desktop decides.
    int SetFormRgn();    // Nothing; windows have the desktop's shape. 1.
    void SetIcon(int icon, int isLarge); // By number; the skin knows the picture. 0: none.
    [[nodiscard]] int GetIcon() const { return icon_; }
    void SetCursor(int cursor); // 32512 the arrow, 32514 waiting; 0: the parent's.
    [[nodiscard]] int GetCursor() const { return cursor_; }

    // Asks for one OnMouseLeave when the pointer leaves the window. 1: will come.
    int TrackMouseLeave();
    [[nodiscard]] Point MapToParent(Point point) const; // From its own area to the skin parent's.

protected:
    std::unique_ptr<IPeer> MakePeer() override;

private:
    CWnd* parentWnd_ = nullptr;
    String className_;
    String title_;
    unsigned style_ = 0;
    unsigned exStyle_ = 0;
    int controlId_ = 0;
    int icon_ = 0;
    int cursor_ = 0;
};

} // namespace kivo::ui
