#include "medialib/KivoMediaHelper.h"
#include "shell/contracts/base/Released.h"
#include "shell/contracts/common/Text.h"

#include <cstring>

namespace kivo::tunehive {

namespace {

using Bytes = std::vector<std::uint8_t>;

// A number of the platform's size; 0 where fewer bytes came.
template <class T>
T ToNumber(const Bytes& bytes)
{
    T number = 0;
    if (bytes.size() >= sizeof number)
        std::memcpy(&number, bytes.data(), sizeof number);
    return number;
}

String ToSeconds(const Bytes& bytes)
{
    const auto units = static_cast<double>(ToNumber<std::uint64_t>(bytes)); // of 100 ns
    return common::FormatWhole(units * 100.0 / 1e9);
}

String ToBitrate(const Bytes& bytes)
{
    return common::ToText(ToNumber<std::int32_t>(bytes));
}

// Up to the terminator; the bytes may lack it.
String ToString(const Bytes& bytes)
{
    String text(bytes.size() / sizeof(char16_t), u'\0');
    if (text.empty())
        return text;
    std::memcpy(text.data(), bytes.data(), text.size() * sizeof(char16_t));
    return text.substr(0, text.find(u'\0'));
}

String ToTrimmed(const Bytes& bytes)
{
    return common::Trim(ToString(bytes));
}

struct Attribute {
    const char16_t* name;
    std::int32_t key;
    bool isText; // Its key is written even where the attribute doesn't exist.
    String (*convert)(const Bytes&);
};

constexpr Attribute kAttributes[] = {
    {u"Duration",      kInfoLength,  false, ToSeconds},
    {u"Title",         kInfoTitle,   true,  ToTrimmed},
    {u"Author",        kInfoArtist,  true,  ToTrimmed},
    {u"Description",   kInfoComment, true,  ToString },
    {u"Bitrate",       kInfoBitrate, false, ToBitrate},
    {u"WM/Genre",      kInfoGenre,   true,  ToString },
    {u"WM/AlbumTitle", kInfoAlbum,   true,  ToString },
};

} // namespace

void CKivoMediaHelper::ReadWMFInfo(const String& path, MediaInfo& info) const
{
    const Released<IWMMetadataEditor> editor(WMCreateEditor());
    if (editor == nullptr)
        return;
    editor->Open(path); // A failure shows in the header's absence.
    if (IWMHeaderInfo3* header = editor->QueryHeaderInfo())
        ReadWMAttributes(header, info);
}

void CKivoMediaHelper::ReadWMAttributes(IWMHeaderInfo3* header, MediaInfo& info) const
{
    for (const auto& [name, key, isText, convert] : kAttributes) {
        std::optional<Bytes> value;
        if (Failed(GetWMAttribute(header, name, value)))
            continue;
        if (value)
            info[key] = convert(*value);
        else if (isText)
            info[key].clear();
    }
}

HRESULT CKivoMediaHelper::GetWMAttribute(IWMHeaderInfo3* header,
                                         const char16_t* name,
                                         std::optional<std::vector<std::uint8_t>>& value) const
{
    constexpr std::uint16_t kStream = 0;
    std::uint16_t length = 0;
    const HRESULT result = header->GetAttributeByName(kStream, name, nullptr, &length);
    if (result == ASF_E_NOTFOUND) {
        value.reset();
        return S_OK;
    }
    if (Failed(result))
        return result;
    value.emplace(length);
    header->GetAttributeByName(kStream, name, value->data(), &length);
    return S_OK;
}

} // namespace kivo::tunehive
