#pragma once

#include "shell/contracts/base/Export.h"

namespace kivo {

class IPluginWindow;

// The host's main form as a plug-in's page sees it. Thread: user interface.
class KIVO_API IPluginWindowLayout {
public:
    IPluginWindowLayout() = default;
    IPluginWindowLayout(const IPluginWindowLayout&) = default;
    IPluginWindowLayout& operator=(const IPluginWindowLayout&) = default;

    virtual void AddPluginPage(IPluginWindow* window) = 0;
    virtual void RemovePluginPage(IPluginWindow* window) = 0; // Closes it first, if it was created.
    [[nodiscard]] virtual int IsPluginPageShown(IPluginWindow* window) = 0;
    virtual void ShowPluginPage(IPluginWindow* window) = 0;   // Brings the page to the front.
    virtual void UpdatePluginPage(IPluginWindow* window) = 0; // Its tip has changed.

protected:
    ~IPluginWindowLayout() = default;
};

} // namespace kivo
