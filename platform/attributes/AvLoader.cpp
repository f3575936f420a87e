#include "platform/attributes/AvReader.h"
#include "platform/base/Modules.h"

namespace kivo::attributes {

// libavformat brings some forty libraries along, and most collections hold no file that needs it.
std::optional<AttributeRecord> ReadByAvformat(MediaSource& source, const std::string& extension)
{
    using Read = bool(MediaSource&, const std::string&, AttributeRecord&);
    auto* const read =
        reinterpret_cast<Read*>(FindInModule(u"libkivo_avformat.so", "KivoReadByAvformat"));
    AttributeRecord record;
    if (read == nullptr || !read(source, extension, record))
        return std::nullopt;
    return record;
}

} // namespace kivo::attributes
