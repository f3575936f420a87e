#pragma once

#include "tree/ITrackPickers.h"

namespace kivo::tunehive {

// The dialogs themselves. Thread: user interface.
class TrackPickers final : public ITrackPickers {
public:
    int ShowAddFileForm(CWnd* parent, String& group) override;
    int ShowAddURLForm(CWnd* parent, String& group, String& url, String& name) override;
    int PickMediaFiles(CWnd* parent, CStringArray& paths) override;
    int PickFolder(CWnd* parent, String& folder) override;
};

} // namespace kivo::tunehive
