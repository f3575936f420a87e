#include "platform/ui/NullPeers.h"

#include "shell/contracts/ui/SkinButton.h"
#include "shell/contracts/ui/SkinCombox.h"
#include "shell/contracts/ui/SkinForm.h"
#include "shell/contracts/ui/SkinLabel.h"
#include "shell/contracts/ui/SkinPhoto.h"
#include "shell/contracts/ui/SkinSlider.h"
#include "shell/contracts/ui/SkinSplitter.h"
#include "shell/contracts/ui/SkinTree.h"
#include "shell/contracts/ui/SkinWebBrowser.h"
#include "shell/contracts/ui/SWColorEdit.h"

#include <utility>

namespace kivo::ui {

namespace {

constexpr Size kPreferred{64, 24};
constexpr int kRowHeight = 20;

IPeerFactory* installed = nullptr;

// What every null peer of that interface answers.
template <class Interface>
class NullPeer : public Interface {
public:
    explicit NullPeer(CSkinObject& control)
        : control_(control)
    {
    }

    void Apply(Change /*change*/) override {}
    [[nodiscard]] Size GetPreferredSize() const override { return kPreferred; }
    void SetFocus() override {}
    [[nodiscard]] bool HasFocus() const override { return false; }
    [[nodiscard]] Point MapToScreen(Point point) const override
    {
        const Rect rect = control_.GetRectInForm();
        return {point.x + rect.left, point.y + rect.top};
    }

protected:
    CSkinObject& control_;
};

template <class Interface>
class NullWindowPeer : public NullPeer<Interface> {
public:
    using NullPeer<Interface>::NullPeer;

    [[nodiscard]] Rect GetWindowRect() const override { return this->control_.GetBoundsRect(); }
    void Center(CWnd* /*parent*/) override {}
    bool TrackMouseLeave() override { return true; }
};

class NullFormPeer final : public NullWindowPeer<IFormPeer> {
public:
    NullFormPeer(CSkinForm& form, NullPeerFactory& factory)
        : NullWindowPeer(form)
        , form_(form)
        , factory_(factory)
    {
    }

    int RunModal() override
    {
        NullPeerFactory& factory = factory_; // The script may destroy the form and this with it.
        const LifeWatch life = form_.Watch();
        ended_ = false;
        if (!factory.RunNextModal(form_)) {
            factory.ReportUnscripted("a modal form has no script");
            return 0;
        }
        if (!life.IsAlive())
            return 0;
        if (!ended_)
            factory.ReportUnscripted("a script didn't end its modal form");
        return result_;
    }

    void EndModal(int result) override
    {
        ended_ = true;
        result_ = result;
    }

    void BringToTop() override {}

private:
    CSkinForm& form_;
    NullPeerFactory& factory_;
    int result_ = 0;
    bool ended_ = false;
};

class NullListPeer final : public NullWindowPeer<IListPeer> {
public:
    explicit NullListPeer(CSkinList& list)
        : NullWindowPeer(list)
        , list_(list)
    {
    }

    void Sync(const RowChanges& /*changes*/) override {}
    void OnRowGone(CSkinListItem* /*row*/, CSkinTreeItem* /*parent*/) override {}
    void OnRootGone() override {}
    bool OpenEditor(CSkinListItem* /*row*/, const String& /*cellId*/) override { return true; }
    void CloseEditor(bool /*commit*/) override
    {
        const String text = list_.GetEditedText(); // Nobody has typed.
        list_.OnEditFinished(text, /*committed=*/false);
    }
    void ScrollTo(CSkinListItem* /*row*/) override {}
    [[nodiscard]] CSkinListItem* HitTest(Point point) const override
    {
        return point.y >= 0 ? list_.GetRowAt(point.y / kRowHeight) : nullptr;
    }

private:
    CSkinList& list_;
};

class NullBrowserPeer final : public NullWindowPeer<IBrowserPeer> {
public:
    using NullWindowPeer::NullWindowPeer;
    void Navigate(const String& /*url*/) override {}
};

} // namespace

void NullPeerFactory::QueueModal(ModalScript script)
{
    modals_.push_back(std::move(script));
}

void NullPeerFactory::QueueMenu(MenuScript script)
{
    menus_.push_back(std::move(script));
}

void NullPeerFactory::SetUnscripted(std::function<void(const char*)> unscripted)
{
    unscripted_ = std::move(unscripted);
}

void NullPeerFactory::ClearScripts()
{
    modals_.clear();
    menus_.clear();
}

bool NullPeerFactory::RunNextModal(CSkinForm& form)
{
    if (modals_.empty())
        return false;
    const ModalScript script = std::move(modals_.front());
    modals_.pop_front();
    script(form);
    return true;
}

void NullPeerFactory::ReportUnscripted(const char* what) const
{
    if (unscripted_)
        unscripted_(what);
}

IMenu* NullPeerFactory::RunMenu(CSkinForm* /*form*/, IMenu& menu, int /*x*/, int /*y*/)
{
    if (menus_.empty()) {
        ReportUnscripted("a menu has no script");
        return nullptr;
    }
    const MenuScript script = std::move(menus_.front());
    menus_.pop_front();
    return script(menu);
}

std::unique_ptr<IPeer> NullPeerFactory::MakePanel(CSkinObject& panel)
{
    return std::make_unique<NullPeer<IPeer>>(panel);
}

std::unique_ptr<IPeer> NullPeerFactory::MakeLabel(CSkinLabel& label)
{
    return std::make_unique<NullPeer<IPeer>>(label);
}

std::unique_ptr<IPeer> NullPeerFactory::MakeButton(CSkinButton& button)
{
    return std::make_unique<NullPeer<IPeer>>(button);
}

std::unique_ptr<IPeer> NullPeerFactory::MakePhoto(CSkinPhoto& photo)
{
    return std::make_unique<NullPeer<IPeer>>(photo);
}

std::unique_ptr<IPeer> NullPeerFactory::MakeSplitter(CSkinSplitter& splitter)
{
    return std::make_unique<NullPeer<IPeer>>(splitter);
}

std::unique_ptr<IWindowPeer> NullPeerFactory::MakeEdit(CSWColorEdit& edit)
{
    return std::make_unique<NullWindowPeer<IWindowPeer>>(edit);
}

std::unique_ptr<IWindowPeer> NullPeerFactory::MakeCombox(CSkinCombox& combox)
{
    return std::make_unique<NullWindowPeer<IWindowPeer>>(combox);
}

std::unique_ptr<IWindowPeer> NullPeerFactory::MakeSlider(CSkinSlider& slider)
{
    return std::make_unique<NullWindowPeer<IWindowPeer>>(slider);
}

std::unique_ptr<IWindowPeer> NullPeerFactory::MakeWindow(CSkinWnd& window)
{
    return std::make_unique<NullWindowPeer<IWindowPeer>>(window);
}

std::unique_ptr<IFormPeer> NullPeerFactory::MakeForm(CSkinForm& form)
{
    return std::make_unique<NullFormPeer>(form, *this);
}

std::unique_ptr<IListPeer> NullPeerFactory::MakeList(CSkinList& list)
{
    return std::make_unique<NullListPeer>(list);
}

std::unique_ptr<IListPeer> NullPeerFactory::MakeTree(CSkinTree& tree)
{
    return std::make_unique<NullListPeer>(tree);
}

std::unique_ptr<IBrowserPeer> NullPeerFactory::MakeBrowser(CSkinWebBrowser& browser)
{
    return browserMissing_ ? nullptr : std::make_unique<NullBrowserPeer>(browser);
}

NullPeerFactory& GetNullPeerFactory()
{
    static NullPeerFactory factory;
    return factory;
}

void SetPeerFactory(IPeerFactory* factory)
{
    installed = factory;
}

IPeerFactory& GetPeerFactory()
{
    return installed != nullptr ? *installed : GetNullPeerFactory();
}

} // namespace kivo::ui
