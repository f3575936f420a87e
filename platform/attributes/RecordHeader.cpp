#include "platform/attributes/RecordHeader.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace kivo::attributes {

namespace {

constexpr std::int64_t kUnitsPerMillisecond = 10'000; // Of 100 ns.

// The longest text that a 16-bit count of bytes can hold with its terminator.
constexpr std::size_t kLongestText =
    std::numeric_limits<std::uint16_t>::max() / sizeof(char16_t) - 1;

HRESULT Copy(const void* bytes, std::size_t size, std::uint8_t* value, std::uint16_t* length)
{
    if (value != nullptr)
        std::memcpy(value, bytes, std::min<std::size_t>(size, *length));
    else
        *length = static_cast<std::uint16_t>(size);
    return S_OK;
}

struct TextAttribute {
    StringView name;
    std::optional<String> AttributeRecord::*field;
};
constexpr TextAttribute kTexts[] = {
    {u"Title",         &AttributeRecord::title  },
    {u"Author",        &AttributeRecord::author },
    {u"Description",   &AttributeRecord::comment},
    {u"WM/Genre",      &AttributeRecord::genre  },
    {u"WM/AlbumTitle", &AttributeRecord::album  },
};

} // namespace

RecordHeader::RecordHeader(AttributeRecord record)
    : record_(std::move(record))
{
}

HRESULT RecordHeader::GetAttributeByName(std::uint16_t stream,
                                         const char16_t* name,
                                         std::uint8_t* value,
                                         std::uint16_t* length)
{
    const StringView wanted(name);
    if (stream != 0 || length == nullptr)
        return E_FAIL;
    if (wanted == u"Duration" && record_.milliseconds) {
        const std::int64_t units = *record_.milliseconds * kUnitsPerMillisecond;
        return Copy(&units, sizeof units, value, length);
    }
    if (wanted == u"Bitrate" && record_.bitsPerSecond)
        return Copy(&*record_.bitsPerSecond, sizeof *record_.bitsPerSecond, value, length);

    for (const auto& [attribute, field] : kTexts) {
        const std::optional<String>& text = record_.*field;
        if (wanted != attribute || !text || text->empty())
            continue;
        const String cut = text->substr(0, kLongestText);
        return Copy(cut.c_str(), (cut.size() + 1) * sizeof(char16_t), value, length);
    }
    return ASF_E_NOTFOUND;
}

} // namespace kivo::attributes
