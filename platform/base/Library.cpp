#include "shell/contracts/framework/Library.h"

#include "platform/base/CodeAddress.h"
#include "platform/base/Descriptor.h"
#include "shell/contracts/framework/Exception.h"
#include "shell/contracts/framework/WinApp.h"

#include <dlfcn.h>

#include <string>

namespace kivo {

namespace {

// The path of a file of that name beside this library; empty if it can't be told.
std::string FindBesideThisLibrary(const std::string& name)
{
    Dl_info self = {};
    if (dladdr(reinterpret_cast<const void*>(&LoadLibraryW), &self) == 0 ||
        self.dli_fname == nullptr)
        return {};
    const std::string path = self.dli_fname;
    const std::size_t separator = path.rfind('/');
    return separator != std::string::npos ? path.substr(0, separator + 1) + name : std::string();
}

} // namespace

LibraryHandle LoadLibraryW(const String& name)
{
    const auto native = NativePath(name);
    if (!native || native->empty())
        return nullptr;
    void* const library = dlopen(native->c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library != nullptr || native->find('/') != std::string::npos)
        return library;
    // A sanitizer stands between us and the loader, which then takes the sanitizer's run path.
    const std::string beside = FindBesideThisLibrary(*native);
    return beside.empty() ? nullptr : dlopen(beside.c_str(), RTLD_NOW | RTLD_LOCAL);
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
