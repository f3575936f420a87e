#include "platform/ui/qt/PeerFactory.h"

#include "platform/ui/qt/BrowserPeer.h"
#include "platform/ui/qt/ControlPeers.h"
#include "platform/ui/qt/FormPeer.h"
#include "platform/ui/qt/ListPeer.h"
#include "platform/ui/qt/PanelPeer.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "shell/contracts/ui/SkinTree.h"
#include "shell/contracts/ui/SkinWebBrowser.h"

namespace kivo::ui::qt {

std::unique_ptr<IPeer> PeerFactory::MakePanel(CSkinObject& panel)
{
    return MakePanelPeer(panel);
}

std::unique_ptr<IPeer> PeerFactory::MakeLabel(CSkinLabel& label)
{
    return MakeLabelPeer(label);
}

std::unique_ptr<IPeer> PeerFactory::MakeButton(CSkinButton& button)
{
    return MakeButtonPeer(button);
}

std::unique_ptr<IPeer> PeerFactory::MakePhoto(CSkinPhoto& photo)
{
    return MakePhotoPeer(photo);
}

std::unique_ptr<IPeer> PeerFactory::MakeSplitter(CSkinSplitter& splitter)
{
    return MakeSplitterPeer(splitter);
}

std::unique_ptr<IWindowPeer> PeerFactory::MakeEdit(CSWColorEdit& edit)
{
    return MakeEditPeer(edit);
}

std::unique_ptr<IWindowPeer> PeerFactory::MakeCombox(CSkinCombox& combox)
{
    return MakeComboxPeer(combox);
}

std::unique_ptr<IWindowPeer> PeerFactory::MakeSlider(CSkinSlider& slider)
{
    return MakeSliderPeer(slider);
}

std::unique_ptr<IWindowPeer> PeerFactory::MakeWindow(CSkinWnd& window)
{
    return MakeWindowPeer(window);
}

std::unique_ptr<IFormPeer> PeerFactory::MakeForm(CSkinForm& form)
{
    return MakeFormPeer(form);
}

std::unique_ptr<IListPeer> PeerFactory::MakeList(CSkinList& list)
{
    return MakeListPeer(list);
}

std::unique_ptr<IListPeer> PeerFactory::MakeTree(CSkinTree& tree)
{
    return MakeListPeer(tree);
}

std::unique_ptr<IBrowserPeer> PeerFactory::MakeBrowser(CSkinWebBrowser& browser)
{
    return MakeBrowserPeer(browser);
}

IMenu* PeerFactory::RunMenu(CSkinForm* form, IMenu& menu, int x, int y)
{
    return qt::RunMenu(form, menu, x, y);
}

} // namespace kivo::ui::qt
