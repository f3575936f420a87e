#include "platform/attributes/MetadataEditor.h"
#include "platform/attributes/TagText.h"

#include <mutex>

// What libkivo.so finds in this module by name.
extern "C" KIVO_API kivo::IWMMetadataEditor* KivoCreateMetadataEditor()
{
    static std::once_flag once;
    std::call_once(once, kivo::attributes::InstallTextHandlers);
    return kivo::attributes::MakeMetadataEditor();
}
