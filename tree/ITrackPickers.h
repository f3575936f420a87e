#pragma once

#include "shell/contracts/base/String.h"
#include "shell/contracts/framework/Arrays.h"

namespace kivo {
class CWnd;
}

namespace kivo::tunehive {

// The dialogs by which tracks enter. Each is modal and returns when it has been answered: 1 with
// the out values set, or 0 with them as they were. `parent` may be null. Thread: user interface.
class ITrackPickers {
public:
    virtual int ShowAddFileForm(CWnd* parent, String& group) = 0;
    virtual int ShowAddURLForm(CWnd* parent, String& group, String& url, String& name) = 0;
    virtual int PickMediaFiles(CWnd* parent, CStringArray& paths) = 0;
    virtual int PickFolder(CWnd* parent, String& folder) = 0;

protected:
    ~ITrackPickers() = default;
};

} // namespace kivo::tunehive
