#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"
#include "shell/contracts/framework/Arrays.h"

#include <QStringList>

namespace kivo {
class CWnd;
}

namespace kivo::ui::qt {

// "Name|*.mp3;*.wma|…||" as what Qt's dialog takes: "Name (*.mp3 *.wma)", ….
[[nodiscard]] QStringList ReadFilter(const String& filter);

// The desktop's pickers. `native` false: Qt's own dialogs, for tests. Thread: user interface;
// modal.
[[nodiscard]] CStringArray
ChooseFiles(CWnd* parent, const String& filter, const String& directory, bool native);
[[nodiscard]] String ChooseFolder(CWnd* parent, const String& title, bool native);

// Opens an address or shows a folder in the desktop's own program.
void OpenAddress(const String& url);
void ShowFolder(const String& folder);

} // namespace kivo::ui::qt
