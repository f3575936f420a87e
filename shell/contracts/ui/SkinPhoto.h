#pragma once

#include "shell/contracts/ui/SkinObject.h"

namespace kivo::ui {

// A picture, centred in its bounds when it is smaller and scaled down to them when it is larger.
// Thread: user interface.
class KIVO_API CSkinPhoto : public CSkinObject {
public:
    CSkinPhoto();
    ~CSkinPhoto() override;

    // A path or a name below "skin"; `reserved` is 0. A file that isn't there shows nothing.
    void SetPhotoFile(const String& path, const PictureRect& source, int reserved);
    [[nodiscard]] const PictureRect& GetSource() const { return source_; }

protected:
    std::unique_ptr<IPeer> MakePeer() override;

private:
    PictureRect source_;
};

} // namespace kivo::ui
