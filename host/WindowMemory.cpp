#include "host/WindowMemory.h"

#include "host/HostSettings.h"
#include "shell/contracts/ui/SkinForm.h"
#include "shell/contracts/ui/SkinSplitter.h"

#include <QApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace kivo::host {

namespace {

constexpr char kWidthKey[] = "window.width";
constexpr char kHeightKey[] = "window.height";
constexpr char kLeftKey[] = "window.left";
constexpr char kTopKey[] = "window.top";
constexpr char kMaximizedKey[] = "window.maximized";
constexpr char kPaneKey[] = "window.pane";
constexpr int kUnknown = -100'000; // No desktop reaches so far.
constexpr int kTallest = 10'000;
constexpr int kHandWidth = 80; // So much of the frame's top has to lie on a screen.
constexpr int kHandHeight = 24;

// Null: it isn't on any screen.
QWidget* FindWidget(const ui::CSkinForm& form)
{
    const Rect bounds = form.GetBoundsRect();
    const QRect place(QPoint(bounds.left, bounds.top), QPoint(bounds.right - 1, bounds.bottom - 1));
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget->windowType() == Qt::Window &&
            widget->geometry() == place)
            return widget;
    }
    return nullptr;
}

// The display server tells nobody where a window is.
bool IsPlaceUnknown()
{
    return QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
}

bool IsInReach(const QRect& window)
{
    const QRect top(window.topLeft(), QSize(window.width(), kHandHeight));
    const QList<QScreen*> screens = QGuiApplication::screens();
    return std::any_of(screens.begin(), screens.end(), [&top](const QScreen* screen) {
        const QRect seen = screen->availableGeometry().intersected(top);
        return seen.width() >= kHandWidth && seen.height() == kHandHeight;
    });
}

} // namespace

WindowMemory::WindowMemory(HostSettings& settings)
    : settings_(settings)
{
}

ui::Size WindowMemory::GetSize() const
{
    return {settings_.GetNumber(kWidthKey, 0), settings_.GetNumber(kHeightKey, 0)};
}

std::optional<Point> WindowMemory::GetPlace() const
{
    const Point place{settings_.GetNumber(kLeftKey, kUnknown),
                      settings_.GetNumber(kTopKey, kUnknown)};
    const ui::Size size = GetSize();
    if (IsPlaceUnknown() || place.x <= kUnknown || place.y <= kUnknown ||
        !IsInReach(QRect(place.x, place.y, size.width, size.height)))
        return std::nullopt;
    return place;
}

void WindowMemory::RestorePane(ui::CSkinForm& form) const
{
    auto* const splitter =
        dynamic_cast<ui::CSkinSplitter*>(form.FindControlRecusive(u"SplitterCtrl"));
    const int height = settings_.GetNumber(kPaneKey, 0);
    if (splitter != nullptr && height > 0 && height <= kTallest)
        splitter->SetFixedPaneSize(height);
}

void WindowMemory::RestoreMaximized(const ui::CSkinForm& form) const
{
    QWidget* const widget = FindWidget(form);
    if (widget != nullptr && settings_.GetNumber(kMaximizedKey, 0) != 0)
        widget->showMaximized();
}

void WindowMemory::Keep(const ui::CSkinForm& form)
{
    if (const auto* const splitter =
            dynamic_cast<ui::CSkinSplitter*>(form.FindControlRecusive(u"SplitterCtrl")))
        settings_.SetNumber(kPaneKey, splitter->GetFixedPaneSize());
    const QWidget* const widget = FindWidget(form);
    if (widget == nullptr)
        return; // It was never shown, and keeps what is known.
    // What the window has when it fills the screen isn't its own.
    const bool isMaximized = widget->isMaximized() || widget->isFullScreen();
    settings_.SetNumber(kMaximizedKey, isMaximized ? 1 : 0);
    const QRect own = isMaximized ? widget->normalGeometry() : widget->geometry();
    if (own.isEmpty())
        return;
    settings_.SetNumber(kWidthKey, own.width());
    settings_.SetNumber(kHeightKey, own.height());
    if (IsPlaceUnknown())
        return;
    settings_.SetNumber(kLeftKey, own.left());
    settings_.SetNumber(kTopKey, own.top());
}

} // namespace kivo::host
