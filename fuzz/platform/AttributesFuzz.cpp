#include "fuzz/Fuzz.h"
#include "platform/attributes/MetadataEditor.h"

#include <vector>

// A media file of any kind: each attribute as its reader asks for it, length first.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    const kivo::fuzz::MemoryFile file(kivo::fuzz::AsText(bytes, count));
    kivo::IWMMetadataEditor* const editor = kivo::attributes::MakeMetadataEditor();
    editor->Open(file.GetPath());
    if (kivo::IWMHeaderInfo3* const header = editor->QueryHeaderInfo()) {
        for (const char16_t* const name :
             {u"Title", u"Author", u"Description", u"WM/Genre", u"Duration", u"Bitrate"}) {
            std::uint16_t length = 0;
            if (kivo::Failed(header->GetAttributeByName(0, name, nullptr, &length)))
                continue;
            std::vector<std::uint8_t> value(length);
            kivo::fuzz::Require(
                !kivo::Failed(header->GetAttributeByName(0, name, value.data(), &length)));
        }
    }
    editor->Release();
    return 0;
}
