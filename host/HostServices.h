#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"
#include "shell/contracts/host/KivoApi.h"

namespace kivo {

// What the functions of KVLibExport.so need of the program behind them. The program registers its
// object before it loads the first plug-in; a test registers one of its own. Deferred events don't
// pass here: they go to the queue of posts, from any thread.
// Thread: user interface.
class IHostServices {
public:
    virtual bool RegisterPluginWindow(IPluginWindow* window) = 0; // True: it is a page now.
    virtual void UnregisterPluginWindow(IPluginWindow* window) = 0;

    virtual void SetStateSign(IPlugin* plugin,
                              const String& kind,
                              const String& title,
                              const Property& sign) = 0; // Copies all.
    virtual void RemoveStateSign(IPlugin* plugin) = 0;
    [[nodiscard]] virtual bool IsMediaStateShown() const = 0;

    [[nodiscard]] virtual String GetMyUid() const = 0;
    [[nodiscard]] virtual String GetMyDir() const = 0; // Ends in a separator; empty: none.

    // The delegate is called with `key` at each change until Revoke. A second watch of the same
    // watcher, delegate and key changes nothing.
    virtual void Watch(void* watcher, const SettingDelegate& delegate, const String& key) = 0;
    virtual void Revoke(void* watcher) = 0;

    [[nodiscard]] virtual String GetText(const String& id) const = 0;

    // True: confirmed. Returns when the box has been answered.
    virtual bool ShowMessage(int code, const String& title, const String& message, int style) = 0;

    virtual void CountUse(int tag) = 0;

protected:
    ~IHostServices() = default;
};

// The registered object; null before the program registers one and after it is gone. Borrowed.
[[nodiscard]] KIVO_API IHostServices* GetHostServices();
KIVO_API void SetHostServices(IHostServices* services);

} // namespace kivo
