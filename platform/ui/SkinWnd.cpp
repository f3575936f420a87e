#include "shell/contracts/ui/SkinWnd.h"

#include "platform/ui/Peers.h"

namespace kivo::ui {

namespace {

// The peers of what derives from CSkinWnd are all window peers.
IWindowPeer* WindowPeerOf(const CSkinWnd& window)
{
    return static_cast<IWindowPeer*>(window.GetPeer());
}

} // namespace

CSkinWnd::CSkinWnd() = default;

CSkinWnd::~CSkinWnd()
{
    EndLife();
    ReleaseControls();
    DestroyPeer();
}

int CSkinWnd::Create(unsigned style,
                     const String& className,
                     const String& title,
                     const Rect& bounds,
                     CWnd* parent,
                     int id)
{
    if (IsWindow())
        return 0;
    style_ = style;
    className_ = className;
    title_ = title;
    parentWnd_ = parent;
    controlId_ = id;
    if (bounds != Rect{})
        SetBounds(bounds.left, bounds.top, WidthOf(bounds), HeightOf(bounds));
    if (IsTopLevel() || (style & wndstyle::kVisible) == 0)
        SetVisible(0);
    return CreateHandle() ? 1 : 0;
}

bool CSkinWnd::CreateHandle()
{
    if (!CWnd::CreateHandle())
        return false;
    if (CreatePeer())
        return true;
    CWnd::DestroyWindow();
    return false;
}

void CSkinWnd::DestroyWindow()
{
    DestroyPeer();
    CWnd::DestroyWindow();
}

void CSkinWnd::ShowWindow(int command)
{
    SetVisible(command != 0 ? 1 : 0);
}

void CSkinWnd::MoveWindow(const Rect& bounds)
{
    SetBounds(bounds.left, bounds.top, WidthOf(bounds), HeightOf(bounds));
    RePositionSubControls();
}

bool CSkinWnd::IsWindowVisible() const
{
    return IsWindow() && (IsTopLevel() ? IsSetVisible() : IsVisible());
}

Rect CSkinWnd::GetWindowRect() const
{
    const IWindowPeer* peer = WindowPeerOf(*this);
    return peer != nullptr ? peer->GetWindowRect() : GetBoundsRect();
}

void CSkinWnd::SetVisible(int visible)
{
    CSkinObject::SetVisible(visible);
}

CSkinForm* CSkinWnd::GetOwnerForm()
{
    if (CSkinForm* form = CSkinObject::GetOwnerForm())
        return form;
    auto* parent = dynamic_cast<CSkinObject*>(parentWnd_);
    return parent != nullptr ? parent->GetOwnerForm() : nullptr;
}

void CSkinWnd::SetExStyle(unsigned style)
{
    exStyle_ = style;
    Tell(Change::Style);
}

void CSkinWnd::SetTitle(const String& title)
{
    title_ = title;
    Tell(Change::Title);
}

void CSkinWnd::CenterWindow()
{
    if (IWindowPeer* peer = WindowPeerOf(*this))
        peer->Center(parentWnd_);
}

int CSkinWnd::SetFormRgn()
{
    return 1;
}

void CSkinWnd::SetIcon(int icon, int /*isLarge*/)
{
    icon_ = icon;
    Tell(Change::Title);
}

void CSkinWnd::SetCursor(int cursor)
{
    cursor_ = cursor;
    Tell(Change::Cursor);
}

// NOLINTNEXTLINE(readability-make-member-function-const): the window is asked for a report.
int CSkinWnd::TrackMouseLeave()
{
    IWindowPeer* peer = WindowPeerOf(*this);
    return peer != nullptr && peer->TrackMouseLeave() ? 1 : 0;
}

Point CSkinWnd::MapToParent(Point point) const
{
    const Rect bounds = GetBoundsRect();
    return {point.x + bounds.left, point.y + bounds.top};
}

std::unique_ptr<IPeer> CSkinWnd::MakePeer()
{
    return GetPeerFactory().MakeWindow(*this);
}

} // namespace kivo::ui
