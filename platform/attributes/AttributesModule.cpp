#include "platform/attributes/AvReader.h"
#include "platform/attributes/MetadataEditor.h"
#include "platform/attributes/StreamReader.h"
#include "platform/attributes/TagText.h"

#include <mutex>

// What libkivo.so finds in this module by name.
namespace {

void PrepareOnce()
{
    static std::once_flag once;
    std::call_once(once, [] {
        kivo::attributes::InstallTextHandlers();
        kivo::attributes::PrepareAvformat();
    });
}

} // namespace

extern "C" KIVO_API kivo::IWMMetadataEditor* KivoCreateMetadataEditor()
{
    PrepareOnce();
    return kivo::attributes::MakeMetadataEditor();
}

extern "C" KIVO_API kivo::IWMReader* KivoCreateReader()
{
    PrepareOnce();
    return kivo::attributes::MakeStreamReader();
}
