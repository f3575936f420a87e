#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"
#include "shell/contracts/framework/Arrays.h"

namespace kivo {

class CWnd;

// The desktop's picker of files to open. Thread: user interface; modal.
class KIVO_API CFileDialog {
public:
    // `filter`: "Name|*.mp3;*.wma|Name|*.*||". Several files may be chosen.
    CFileDialog(CWnd* parent, const String& filter);

    void SetInitialDirectory(const String& folder); // Empty: the desktop's own choice.
    [[nodiscard]] bool DoModal();                   // True: at least one path was chosen.
    [[nodiscard]] const CStringArray& GetPaths() const { return paths_; } // In the dialog's order.

private:
    CWnd* parent_;
    String filter_;
    String directory_;
    CStringArray paths_;
};

// The desktop's picker of one existing folder; empty when cancelled. Thread: user interface; modal.
[[nodiscard]] KIVO_API String SHBrowseForFolderW(CWnd* owner, const String& title);

} // namespace kivo
