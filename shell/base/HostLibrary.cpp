#include "shell/base/HostLibrary.h"

#include "shell/contracts/framework/Library.h"
#include "shell/contracts/host/KivoApi.h"

#include <atomic>

namespace kivo {

namespace {

// Read from any thread that posts an event.
std::atomic<LibraryHandle> hostLibrary = nullptr;
std::atomic<tunehive::HostResolver> hostResolver = nullptr;

void* FindService(const char* name)
{
    if (const tunehive::HostResolver resolve = hostResolver)
        return resolve(name);
    const LibraryHandle library = hostLibrary;
    return library != nullptr ? GetProcAddress(library, name) : nullptr;
}

template <class... Args>
int CallService(const char* name, Args... args)
{
    void* const service = FindService(name);
    return service != nullptr ? reinterpret_cast<int (*)(Args...)>(service)(args...) : 0;
}

// For services whose result has no meaning: 1 tells that they were called.
template <class... Args>
int RunService(const char* name, Args... args)
{
    void* const service = FindService(name);
    if (service == nullptr)
        return 0;
    reinterpret_cast<void (*)(Args...)>(service)(args...);
    return 1;
}

} // namespace

namespace tunehive {

int LoadHostLibrary()
{
    if (hostResolver != nullptr)
        return 1;
    if (hostLibrary == nullptr)
        hostLibrary = LoadLibraryW(u"KVLibExport.so");
    return hostLibrary != nullptr ? 1 : 0;
}

int FreeHostLibrary()
{
    const LibraryHandle library = hostLibrary.exchange(nullptr);
    return library != nullptr ? FreeLibrary(library) : 1;
}

void SetHostResolver(HostResolver resolver)
{
    hostResolver = resolver;
}

} // namespace tunehive

// The name of each wrapper is the name of its service.

int _KivoAPI_RegisterPluginWindow(IPluginWindow* window)
{
    return CallService(__func__, window);
}

int _KivoAPI_UnregisterPluginWindow(IPluginWindow* window)
{
    return CallService(__func__, window);
}

int _KivoAPI_PluginSetStateSign(IPlugin* plugin,
                                const String* kind,
                                const String* title,
                                const Property* sign)
{
    return CallService(__func__, plugin, kind, title, sign);
}

int _KivoAPI_PluginRemoveStateSign(IPlugin* plugin)
{
    return CallService(__func__, plugin);
}

int _KivoAPI_IsShowMediaState()
{
    return CallService(__func__);
}

int _KivoAPI_GetMyUid(String* uid)
{
    return CallService(__func__, uid);
}

int _KivoAPI_GetMyDir(String* directory)
{
    return CallService(__func__, directory);
}

int _KivoAPI_PostSDKEvent(ISDKEvent* event)
{
    if (FindService(__func__) == nullptr) {
        if (event != nullptr)
            event->Release();
        return 0;
    }
    return CallService(__func__, event);
}

int _KivoAPI_Watch(void* watcher,
                   const SettingDelegate* delegate,
                   const String* key,
                   const String* filter,
                   int always)
{
    return CallService(__func__, watcher, delegate, key, filter, always);
}

int _KivoAPI_Revoke(void* watcher)
{
    return CallService(__func__, watcher);
}

int _RegisterMsgInstance(void* instance)
{
    return RunService(__func__, instance);
}

int _UnRegisterMsgInstance(void* instance)
{
    return RunService(__func__, instance);
}

int _GetStringViaID(const String* id, String* text)
{
    return RunService(__func__, id, text);
}

int _ShowMsgBox(
    int code, const String* title, const String* message, int style, int* result, int reserved)
{
    return RunService(__func__, code, title, message, style, result, reserved);
}

int _KivoAPI_STAT_TAG_INCREASE(const int* tag)
{
    return CallService(__func__, tag);
}

} // namespace kivo
