#pragma once

#include "platform/ui/Peers.h"

#include <deque>
#include <functional>

namespace kivo::ui {

// Peers without a window system: every create step succeeds, nothing is drawn, every control
// prefers 64 x 24 pixels, and rows are 20 pixels high for HitTest. What would wait for the user
// runs a script instead. In force unless another factory is installed. Thread: user interface.
class KIVO_API NullPeerFactory : public IPeerFactory {
public:
    // Runs in place of the next modal form that no earlier script takes: it gets the plain form,
    // may set fields, fire buttons and open further forms. It has to end the form.
    using ModalScript = std::function<void(CSkinForm&)>;
    void QueueModal(ModalScript script);
    // Gives the entry that is chosen of the next menu, or null.
    using MenuScript = std::function<IMenu*(IMenu&)>;
    void QueueMenu(MenuScript script);

    // Called with what went wrong: a modal form or menu without a script (they give 0 and null), a
    // script that didn't end its form. A test makes it a failure.
    void SetUnscripted(std::function<void(const char*)> unscripted);
    [[nodiscard]] std::size_t GetWaitingScripts() const { return modals_.size() + menus_.size(); }
    void ClearScripts();

    void SetBrowserMissing(bool missing)
    {
        browserMissing_ = missing;
    } // Its create step then fails.

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

    bool RunNextModal(CSkinForm& form); // For its form peers. False: there was no script.
    void ReportUnscripted(const char* what) const;

private:
    std::deque<ModalScript> modals_;
    std::deque<MenuScript> menus_;
    std::function<void(const char*)> unscripted_;
    bool browserMissing_ = false;
};

// The one that is in force when nothing else is.
[[nodiscard]] KIVO_API NullPeerFactory& GetNullPeerFactory();

} // namespace kivo::ui
