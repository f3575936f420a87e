#include "shell/contracts/framework/Library.h"

#include "platform/base/CodeAddress.h"
#include "platform/base/Descriptor.h"
#include "shell/contracts/framework/Exception.h"
#include "shell/contracts/framework/WinApp.h"

#include <dlfcn.h>

namespace kivo {

LibraryHandle LoadLibraryW(const String& name)
{
    const auto native = NativePath(name);
    return native && !native->empty() ? dlopen(native->c_str(), RTLD_NOW | RTLD_LOCAL) : nullptr;
}

void* GetProcAddress(LibraryHandle library, const char* name)
{
    return library != nullptr && name != nullptr ? dlsym(library, name) : nullptr;
}

int FreeLibrary(LibraryHandle library)
{
    return library != nullptr && dlclose(library) == 0 ? 1 : 0;
}

bool IsSameLibrary(const void* a, const void* b)
{
    Dl_info first = {};
    Dl_info second = {};
    return a != nullptr && b != nullptr && dladdr(a, &first) != 0 && dladdr(b, &second) != 0 &&
           first.dli_fbase == second.dli_fbase;
}

int CWinApp::InitInstance()
{
    return 1;
}

int CWinApp::ExitInstance()
{
    return 0;
}

int CWinApp::PreTranslateMessage(void* /*message*/)
{
    return 0;
}

} // namespace kivo
