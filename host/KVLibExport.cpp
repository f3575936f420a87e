#include "host/HostServices.h"
#include "platform/base/PostQueue.h"
#include "shell/contracts/host/KivoApi.h"

#include <type_traits>

// The exported functions. Each checks what it was given at the door, for its caller is a plug-in,
// and gives 0 while no program stands behind it.

namespace {

using kivo::GetHostServices;
using kivo::IHostServices;
using kivo::IPlugin;
using kivo::IPluginWindow;
using kivo::ISDKEvent;
using kivo::Property;
using kivo::SettingDelegate;
using kivo::String;

// What a program gave and what a caller can take are both there.
template <class... Pointers>
IHostServices* Enter(const Pointers*... given)
{
    return ((given != nullptr) && ...) ? GetHostServices() : nullptr;
}

template <class... Args>
constexpr bool TakesTheSame(void (* /*given*/)(Args...), int (* /*wrapper*/)(Args...))
{
    return true;
}

} // namespace

#define KIVO_EXPORT extern "C" KIVO_API

// The name, arguments and result are those of the plug-in's wrapper.
#define KIVO_CHECK_EXPORT(name)                                                                    \
    static_assert(std::is_same_v<decltype(&::name), decltype(&kivo::name)>)
#define KIVO_CHECK_EXPORT_WITHOUT_RESULT(name) static_assert(TakesTheSame(&::name, &kivo::name))

KIVO_EXPORT int _KivoAPI_RegisterPluginWindow(IPluginWindow* window)
{
    IHostServices* const host = window != nullptr ? GetHostServices() : nullptr;
    return host != nullptr && host->RegisterPluginWindow(window) ? 1 : 0;
}
KIVO_CHECK_EXPORT(_KivoAPI_RegisterPluginWindow);

KIVO_EXPORT int _KivoAPI_UnregisterPluginWindow(IPluginWindow* window)
{
    IHostServices* const host = window != nullptr ? GetHostServices() : nullptr;
    if (host == nullptr)
        return 0;
    host->UnregisterPluginWindow(window);
    return 1;
}
KIVO_CHECK_EXPORT(_KivoAPI_UnregisterPluginWindow);

KIVO_EXPORT int _KivoAPI_PluginSetStateSign(IPlugin* plugin,
                                            const String* kind,
                                            const String* title,
                                            const Property* sign)
{
    IHostServices* const host = Enter(plugin, kind, title, sign);
    if (host == nullptr)
        return 0;
    host->SetStateSign(plugin, *kind, *title, *sign);
    return 1;
}
KIVO_CHECK_EXPORT(_KivoAPI_PluginSetStateSign);

KIVO_EXPORT int _KivoAPI_PluginRemoveStateSign(IPlugin* plugin)
{
    IHostServices* const host = Enter(plugin);
    if (host == nullptr)
        return 0;
    host->RemoveStateSign(plugin);
    return 1;
}
KIVO_CHECK_EXPORT(_KivoAPI_PluginRemoveStateSign);

KIVO_EXPORT int _KivoAPI_IsShowMediaState()
{
    const IHostServices* const host = GetHostServices();
    return host != nullptr && host->IsMediaStateShown() ? 1 : 0;
}
KIVO_CHECK_EXPORT(_KivoAPI_IsShowMediaState);

KIVO_EXPORT int _KivoAPI_GetMyUid(String* uid)
{
    const IHostServices* const host = Enter(uid);
    if (host == nullptr)
        return 0;
    *uid = host->GetMyUid();
    return 1;
}
KIVO_CHECK_EXPORT(_KivoAPI_GetMyUid);

KIVO_EXPORT int _KivoAPI_GetMyDir(String* directory)
{
    const IHostServices* const host = Enter(directory);
    if (host == nullptr)
        return 0;
    *directory = host->GetMyDir();
    return directory->empty() ? 0 : 1;
}
KIVO_CHECK_EXPORT(_KivoAPI_GetMyDir);

// From any thread, so nothing of the program's is touched here.
KIVO_EXPORT int _KivoAPI_PostSDKEvent(ISDKEvent* event)
{
    return kivo::PostQueue::Get().Post(event);
}
KIVO_CHECK_EXPORT(_KivoAPI_PostSDKEvent);

KIVO_EXPORT int _KivoAPI_Watch(void* watcher,
                               const SettingDelegate* delegate,
                               const String* key,
                               const String* filter,
                               int /*always*/)
{
    IHostServices* const host = watcher != nullptr ? Enter(delegate, key, filter) : nullptr;
    if (host == nullptr)
        return 0;
    host->Watch(watcher, *delegate, *key);
    return 1;
}
KIVO_CHECK_EXPORT(_KivoAPI_Watch);

KIVO_EXPORT int _KivoAPI_Revoke(void* watcher)
{
    IHostServices* const host = GetHostServices();
    if (host == nullptr)
        return 0;
    host->Revoke(watcher);
    return 1;
}
KIVO_CHECK_EXPORT(_KivoAPI_Revoke);

// A library's resources are found by path here, so a registered instance has no use.
KIVO_EXPORT void _RegisterMsgInstance(void* /*instance*/) {}
KIVO_CHECK_EXPORT_WITHOUT_RESULT(_RegisterMsgInstance);

KIVO_EXPORT void _UnRegisterMsgInstance(void* /*instance*/) {}
KIVO_CHECK_EXPORT_WITHOUT_RESULT(_UnRegisterMsgInstance);

KIVO_EXPORT void _GetStringViaID(const String* id, String* text)
{
    if (const IHostServices* const host = Enter(id, text); host != nullptr)
        *text = host->GetText(*id);
}
KIVO_CHECK_EXPORT_WITHOUT_RESULT(_GetStringViaID);

KIVO_EXPORT void _ShowMsgBox(
    int code, const String* title, const String* message, int style, int* result, int /*reserved*/)
{
    IHostServices* const host = Enter(title, message);
    const bool confirmed = host != nullptr && host->ShowMessage(code, *title, *message, style);
    if (result != nullptr)
        *result = confirmed ? 1 : 0;
}
KIVO_CHECK_EXPORT_WITHOUT_RESULT(_ShowMsgBox);

KIVO_EXPORT int _KivoAPI_STAT_TAG_INCREASE(const int* tag)
{
    IHostServices* const host = Enter(tag);
    if (host == nullptr)
        return 0;
    host->CountUse(*tag);
    return 1;
}
KIVO_CHECK_EXPORT(_KivoAPI_STAT_TAG_INCREASE);
