#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"
#include "shell/contracts/framework/Arrays.h"

#include <functional>

namespace kivo {

class CWnd;

// What only a desktop can do. The calls of the contracts check what they are given and then ask
// these; an empty function does nothing and chooses nothing. Thread: user interface.
struct DesktopHooks {
    std::function<void(const String& url)> openWeb;       // http or https, checked.
    std::function<void(const String& folder)> showFolder; // An existing folder, checked.

    // Modal pickers, over `parent` if it isn't null. The filter is that of CFileDialog.
    std::function<CStringArray(CWnd* parent, const String& filter, const String& directory)>
        chooseFiles;
    std::function<String(CWnd* parent, const String& title)> chooseFolder;
};

KIVO_API void SetDesktopHooks(DesktopHooks hooks);

} // namespace kivo
