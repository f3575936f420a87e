#include "shell/contracts/ui/SkinPanel.h"

#include "platform/ui/Layout.h"
#include "platform/ui/Peers.h"
#include "shell/contracts/ui/TabLayoutPage.h"

#include <algorithm>

namespace kivo::ui {

CSkinPanel::CSkinPanel() = default;

CSkinPanel::~CSkinPanel() = default;

Size CSkinPanel::GetWantedSize() const
{
    Size size = GetSetSize();
    if (size.width <= 0 || size.height <= 0) {
        const Size need = MeasureControls(*this);
        size.width = size.width > 0 ? size.width : need.width;
        size.height = size.height > 0 ? size.height : need.height;
    }
    const Size minimum = GetMinimumSize();
    return {std::max(size.width, minimum.width), std::max(size.height, minimum.height)};
}

std::unique_ptr<IPeer> CSkinPanel::MakePeer()
{
    return GetPeerFactory().MakePanel(*this);
}

ITabLayoutPage::ITabLayoutPage() = default;

ITabLayoutPage::~ITabLayoutPage() = default;

std::unique_ptr<IPeer> ITabLayoutPage::MakePeer()
{
    return GetPeerFactory().MakePanel(*this);
}

} // namespace kivo::ui
