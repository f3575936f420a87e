#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/ui/TabLayoutPage.h"

namespace kivo {

class CWnd;
class IPluginWindowLayout;

// The page that a plug-in adds to the host's main form. The host calls CreatePage after the
// registration and ClosePage before the unload; the plug-in owns it. Thread: user interface.
class KIVO_API IPluginWindow : public ui::ITabLayoutPage {
public:
    static constexpr unsigned kNoPluginId = 100000;

    // Both are borrowed and may be null. The plug-in id is kNoPluginId at first.
    IPluginWindow(CWnd* parent, IPluginWindowLayout* layout);
    ~IPluginWindow() override;

    void SetPluginId(unsigned id) { pluginId_ = id; }
    [[nodiscard]] unsigned GetPluginId() const { return pluginId_; }
    [[nodiscard]] CWnd* GetParentWnd() const { return parent_; }

    // Ends the modal form that is open above a page that is shown, as the host does before it goes.
    virtual void InterruptChildModalFormByForce();
    virtual void SetLayout(IPluginWindowLayout* layout);
    [[nodiscard]] virtual int GetPageWord() = 0; // Its meaning is the host's own.

protected:
    [[nodiscard]] IPluginWindowLayout* GetLayout() const { return layout_; }

private:
    CWnd* parent_;
    IPluginWindowLayout* layout_;
    unsigned pluginId_ = kNoPluginId;
};

} // namespace kivo
