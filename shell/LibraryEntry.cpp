// What the host finds in the library by name, and the one application object behind it.

#include "shell/contracts/base/Export.h"
#include "shell/contracts/desktop/TuneHiveRemote.h"
#include "shell/contracts/framework/WinApp.h"
#include "shell/desktop/TuneHiveRemote.h"
#include "shell/Plugin_TuneHiveApp.h"

namespace kivo::tunehive {

namespace {

CPlugin_TuneHiveApp application;

AppRun applicationRun(application); // Behind `application`: made after it, gone before it.

} // namespace

} // namespace kivo::tunehive

extern "C" KIVO_API kivo::IPlugin* GetKivoPluginInstance()
{
    namespace th = kivo::tunehive;
    return th::applicationRun.IsOfUse() ? &th::application : nullptr;
}

extern "C" KIVO_API int MyPreTranslateMessage(void* message)
{
    return kivo::tunehive::application.PreTranslateMessage(message);
}

extern "C" KIVO_API kivo::ITuneHiveRemote* GetTuneHiveRemote()
{
    return kivo::tunehive::application.GetRemote();
}
