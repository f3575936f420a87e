#pragma once

namespace kivo::tunehive {

// The library that holds the host's services. The functions of shell/contracts/host/KivoApi.h are
// looked up in it by name at each call, so a host may lack some. Thread: user interface.

// 1: the library is there. 0: it can't be loaded, and every service gives 0.
int LoadHostLibrary();

// 1, also when none was loaded.
int FreeHostLibrary();

// What stands in for the library: gives a service by its name, null for one that it doesn't have.
using HostResolver = void* (*)(const char* name);

// While a resolver is set it is asked instead of any library, which then counts as loaded. Null
// ends that. For tests.
void SetHostResolver(HostResolver resolver);

} // namespace kivo::tunehive
