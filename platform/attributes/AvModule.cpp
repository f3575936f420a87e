#include "platform/attributes/AvReader.h"
#include "platform/attributes/StreamReader.h"

#include <utility>

// What libkivo.so and the module of tags find in this module by name.

extern "C" KIVO_API kivo::IWMReader* KivoCreateReader()
{
    return kivo::attributes::MakeStreamReader();
}

// False: ReadByAvformat had nothing, and `record` is left alone.
extern "C" KIVO_API bool KivoReadByAvformat(kivo::attributes::MediaSource& source,
                                            const std::string& extension,
                                            kivo::attributes::AttributeRecord& record)
{
    auto read = kivo::attributes::ReadByAvformat(source, extension);
    if (read)
        record = std::move(*read);
    return read.has_value();
}
