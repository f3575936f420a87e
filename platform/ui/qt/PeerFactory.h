#pragma once

#include "platform/ui/Peers.h"

#include <memory>

namespace kivo::ui::qt {

// Makes the peers on Qt Widgets. Thread: user interface.
class PeerFactory final : public IPeerFactory {
public:
    std::unique_ptr<IPeer> MakePanel(CSkinObject& panel) override;
    std::unique_ptr<IPeer> MakeLabel(CSkinLabel& label) override;
    std::unique_ptr<IPeer> MakeButton(CSkinButton& button) override;
    std::unique_ptr<IPeer> MakePhoto(CSkinPhoto& photo) override;
    std::unique_ptr<IPeer> MakeSplitter(CSkinSplitter& splitter) override;
    std::unique_ptr<IWindowPeer> MakeEdit(CSWColorEdit& edit) override;
    std::unique_ptr<IWindowPeer> MakeCombox(CSkinCombox& combox) override;
    std::unique_ptr<IWindowPeer> MakeSlider(CSkinSlider& slider) override;
    std::unique_ptr<IWindowPeer> MakeWindow(CSkinWnd& window) override;
    std::unique_ptr<IFormPeer> MakeForm(CSkinForm& form) override;
    std::unique_ptr<IListPeer> MakeList(CSkinList& list) override;
    std::unique_ptr<IListPeer> MakeTree(CSkinTree& tree) override;
    std::unique_ptr<IBrowserPeer> MakeBrowser(CSkinWebBrowser& browser) override;
    IMenu* RunMenu(CSkinForm* form, IMenu& menu, int x, int y) override;
};

} // namespace kivo::ui::qt
