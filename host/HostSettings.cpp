#include "host/HostSettings.h"

#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Files.h"

#include <algorithm>
#include <utility>

namespace kivo::host {

namespace {

constexpr std::size_t kLargestFile = 1U << 20U;

std::string Escape(std::string_view text)
{
    std::string escaped;
    for (const char c : text) {
        if (c == '\n')
            escaped += "\\n";
        else if (c == '\\')
            escaped += "\\\\";
        else
            escaped += c;
    }
    return escaped;
}

std::string Unescape(std::string_view text)
{
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + 1 < text.size()) {
            ++i;
            plain += text[i] == 'n' ? '\n' : text[i];
        } else {
            plain += text[i];
        }
    }
    return plain;
}

} // namespace

HostSettings::HostSettings(std::string path)
    : path_(std::move(path))
{
    std::string bytes;
    const ReadResult result = ReadFileBytes(common::PathToText(path_), bytes, kLargestFile);
    broken_ = result == ReadResult::TooLarge || result == ReadResult::Failed;
    if (result == ReadResult::Read)
        Read(bytes);
}

void HostSettings::Read(std::string_view bytes)
{
    while (!bytes.empty()) {
        const std::size_t end = std::min(bytes.find('\n'), bytes.size());
        const std::string_view line = bytes.substr(0, end);
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
        const std::size_t equals = line.find('=');
        if (equals != std::string_view::npos && equals > 0)
            texts_[std::string(line.substr(0, equals))] = Unescape(line.substr(equals + 1));
    }
}

std::string HostSettings::Get(std::string_view key, std::string_view otherwise) const
{
    const auto found = texts_.find(key);
    return found != texts_.end() ? found->second : std::string(otherwise);
}

int HostSettings::GetNumber(std::string_view key, int otherwise) const
{
    const auto found = texts_.find(key);
    return found != texts_.end() ? common::BytesToInt(found->second) : otherwise;
}

bool HostSettings::Set(std::string_view key, std::string_view text)
{
    const auto [entry, isNew] = texts_.try_emplace(std::string(key), text);
    if (!isNew && entry->second == text)
        return false;
    entry->second = text;
    changed_ = true;
    return true;
}

bool HostSettings::SetNumber(std::string_view key, int number)
{
    return Set(key, std::to_string(number));
}

bool HostSettings::Save()
{
    if (!changed_)
        return true;
    const String path = common::PathToText(path_);
    if (broken_ && KeepAside(path) == 0)
        return false;
    broken_ = false;
    std::string bytes;
    for (const auto& [key, text] : texts_)
        bytes += key + "=" + Escape(text) + "\n";
    changed_ = WriteFileDurably(path, bytes) == 0;
    return !changed_;
}

} // namespace kivo::host
