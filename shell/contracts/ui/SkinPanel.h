#pragma once

#include "shell/contracts/ui/SkinObject.h"

namespace kivo::ui {

// A strip or an area that holds other controls. Its wanted size is its bounds' or, where nobody has
// set one, what its children need. Thread: user interface.
class KIVO_API CSkinPanel : public CSkinObject {
public:
    CSkinPanel();
    ~CSkinPanel() override;

    [[nodiscard]] Size GetWantedSize() const override;

protected:
    std::unique_ptr<IPeer> MakePeer() override;
};

} // namespace kivo::ui
