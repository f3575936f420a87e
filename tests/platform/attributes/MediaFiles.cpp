#include "tests/platform/attributes/MediaFiles.h"

#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Text.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace kivo::attributes {

namespace {

std::optional<std::vector<std::uint8_t>> BytesOf(IWMHeaderInfo3* header, const char16_t* name)
{
    std::uint16_t length = 0;
    if (header == nullptr || Failed(header->GetAttributeByName(0, name, nullptr, &length)))
        return std::nullopt;
    std::vector<std::uint8_t> bytes(length);
    if (Failed(header->GetAttributeByName(0, name, bytes.data(), &length)))
        return std::nullopt;
    return bytes;
}

} // namespace

void PrepareMediaFiles()
{
    common::SetAppPath(common::PathToText(KIVO_TEST_APP_DIR));
    common::SetLegacyCodePage(936);
}

String FilePath(const std::string& name)
{
    return common::PathToText(KIVO_TEST_FILES + name);
}

std::optional<String> TextOf(IWMHeaderInfo3* header, const char16_t* name)
{
    const auto bytes = BytesOf(header, name);
    if (!bytes)
        return std::nullopt;
    String text(bytes->size() / sizeof(char16_t), u'\0');
    std::memcpy(text.data(), bytes->data(), text.size() * sizeof(char16_t));
    if (text.empty() || text.back() != u'\0')
        return u"(no terminator)";
    text.pop_back();
    return text;
}

std::optional<std::int64_t> NumberOf(IWMHeaderInfo3* header, const char16_t* name)
{
    const auto bytes = BytesOf(header, name);
    if (!bytes)
        return std::nullopt;
    std::int64_t number = 0;
    std::memcpy(&number, bytes->data(), std::min(bytes->size(), sizeof number));
    return number;
}

} // namespace kivo::attributes
