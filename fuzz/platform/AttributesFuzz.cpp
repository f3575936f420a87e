#include "fuzz/Fuzz.h"
#include "platform/attributes/MetadataEditor.h"

#include <vector>

// A media file of any kind: each attribute as its reader asks for it, length first.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    using namespace kivo;
    const fuzz::MemoryFile file(fuzz::AsText(bytes, count));
    IWMMetadataEditor* const editor = attributes::MakeMetadataEditor();
    editor->Open(file.GetPath());
    if (IWMHeaderInfo3* const header = editor->QueryHeaderInfo()) {
        for (const char16_t* const name :
             {u"Title", u"Author", u"Description", u"WM/Genre", u"Duration", u"Bitrate"}) {
            std::uint16_t length = 0;
            if (Failed(header->GetAttributeByName(0, name, nullptr, &length)))
                continue;
            std::vector<std::uint8_t> value(length);
            fuzz::Require(!Failed(header->GetAttributeByName(0, name, value.data(), &length)));
        }
    }
    editor->Release();
    return 0;
}
