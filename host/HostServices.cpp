#include "host/HostServices.h"

namespace kivo {

namespace {
IHostServices* hostServices = nullptr;
}

IHostServices* GetHostServices()
{
    return hostServices;
}

void SetHostServices(IHostServices* services)
{
    hostServices = services;
}

} // namespace kivo
