#include "tests/platform/attributes/MediaFiles.h"

#include "shell/contracts/common/AppPath.h"
#include "shell/contracts/common/Text.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
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
    namespace fs = std::filesystem;
    common::SetAppPath(common::PathToText(KIVO_TEST_APP_DIR));
    common::SetLegacyCodePage(936);
    const fs::path done = fs::path(KIVO_TEST_FILES) / "done";
    const auto scriptTime = fs::last_write_time(KIVO_TEST_SCRIPT);
    if (fs::exists(done) && fs::last_write_time(done) > scriptTime)
        return;
    fs::remove_all(KIVO_TEST_FILES);
    const std::string command = std::string("python3 ") + KIVO_TEST_SCRIPT + " " + KIVO_TEST_FILES;
    if (std::system(command.c_str()) != 0) // NOLINT(concurrency-mt-unsafe): one thread stands here.
        throw std::runtime_error("the media files can't be made: " + command);
    std::ofstream(done) << "done";
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
