#pragma once

#include "shell/contracts/base/Export.h"

#include <memory>
#include <optional>

namespace kivo::ui::qt {

// What a test or an option sets in place of the desktop's own wish; unset: the desktop's.
struct DesktopOptions {
    std::optional<bool> dark;
    std::optional<bool> highContrast;
    std::optional<bool> rightToLeft; // Else the direction of the program's language.
    bool nativePickers = true;       // False: Qt's own file dialogs.
};

// Puts Qt Widgets behind the toolkit for as long as it lives: the peers of controls, menus and
// video surfaces, the pickers, style, palette, input hooks; it follows the desktop's wish for dark
// colours and high contrast, asking without waiting. One at a time; it needs the application
// object, and goes before it, after the last control. Thread: user interface.
class KIVO_API QtDesktop {
public:
    explicit QtDesktop(const DesktopOptions& options = {});
    QtDesktop(const QtDesktop&) = delete;
    QtDesktop& operator=(const QtDesktop&) = delete;
    ~QtDesktop();

    // The skin or the language has just been read: palette, direction, pictures and all forms
    // follow.
    void ApplySkin();

    // Closes menus, message boxes and pickers, so that the loops that wait for them return. Modal
    // forms of the toolkit are CSkinWndManager's to end.
    void CloseDialogs();

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace kivo::ui::qt
