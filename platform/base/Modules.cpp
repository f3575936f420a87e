#include "platform/base/Modules.h"

#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/framework/Library.h"

#include <map>
#include <mutex>

namespace kivo {
namespace {

struct LoadedModules {
    std::mutex mutex;
    std::map<String, LibraryHandle> handles;
};

// Never destroyed, and no module is ever closed: threads of theirs may outlive `main`.
LoadedModules& Modules()
{
    static auto* modules = new LoadedModules;
    return *modules;
}

} // namespace

void* FindInModule(const String& fileName, const char* function)
{
    LoadedModules& modules = Modules();
    const std::lock_guard lock(modules.mutex);
    LibraryHandle& handle = modules.handles[fileName];
    if (handle == nullptr)
        handle = LoadLibraryW(common::GetAppPath() + fileName);
    return GetProcAddress(handle, function);
}

} // namespace kivo
