#include "platform/engine/Engine.h"
#include "shell/contracts/base/Export.h"

// What libkivo.so looks up in the module. Null: the core can't be had on this machine.
extern "C" KIVO_API kivo::MediaEngine* KivoCreateMediaEngine()
{
    return kivo::Engine::Make(kivo::GetMediaEngineSettings()).release();
}
