#include "fuzz/Fuzz.h"
#include "shell/contracts/control/MediaAttributes.h"

#include <vector>

// By the entry of the module, which prepares the libraries too.
extern "C" kivo::IWMMetadataEditor* KivoCreateMetadataEditor();

// A media file of any kind, half of them under a name in ".mp3", which decides where the bytes say
// nothing: each attribute as its reader asks for it, length first.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    static const kivo::fuzz::WorkFolder folder;
    const kivo::fuzz::MemoryFile file(kivo::fuzz::AsText(bytes, count));
    kivo::IWMMetadataEditor* const editor = KivoCreateMetadataEditor();
    const bool isMp3 = count > 0 && bytes[count - 1] % 2 == 0;
    editor->Open(folder.Link(isMp3 ? "x.mp3" : "x.mpg", file.GetPath()));
    if (kivo::IWMHeaderInfo3* const header = editor->QueryHeaderInfo()) {
        for (const char16_t* const name : {u"Title",
                                           u"Author",
                                           u"Description",
                                           u"WM/Genre",
                                           u"WM/AlbumTitle",
                                           u"Duration",
                                           u"Bitrate"}) {
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
