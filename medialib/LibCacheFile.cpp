#include "medialib/LibCacheFile.h"

#include "medialib/MediaInfoNames.h"
#include "shell/base/XmlRecords.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Files.h"

#include <tinyxml.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kivo::tunehive {

namespace {

constexpr const char* kRootName = "Caches";
constexpr const char* kEntryName = "Cache";
constexpr const char* kKeyName = "id";

// The bytes of a value in the form that entries keep. Valid text is used as it stands; `converted`
// holds what isn't, and must stay where it is.
std::string_view ToEntryText(std::string_view bytes, bool isUtf8, std::string& converted)
{
    const bool isAscii = std::all_of(
        bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80U; });
    if (isAscii)
        return bytes;
    converted = common::CString_to_utf8(isUtf8 ? common::utf8_to_CString(bytes)
                                               : common::MBCS2CString(bytes, 0));
    return converted;
}

} // namespace

CLibCacheFile::CLibCacheFile(String stem, String path)
    : stem_(std::move(stem))
    , path_(std::move(path))
{
}

bool CLibCacheFile::Load()
{
    dirty_ = 0;
    isUnread_ = false;
    entries_.clear();
    XmlProlog prolog;
    const XmlResult result =
        ReadXmlRecords(path_, kRootName, prolog, [this, &prolog](const TiXmlElement& element) {
            Take(element, prolog.isDeclared);
        });
    if (result != XmlResult::Read) {
        isUnread_ = IsUnread(result);
        entries_.clear();
        return false;
    }
    if (!prolog.isDeclared) {
        SetOlderAside(path_);
        dirty_ = 1;
    }
    return true;
}

void CLibCacheFile::Take(const TiXmlElement& element, bool isUtf8)
{
    if (!IsNamed(element, kEntryName))
        return;
    std::string keyText;
    const std::string_view key = ToEntryText(GetAttribute(element, kKeyName), isUtf8, keyText);
    if (key.empty())
        return;
    std::array<std::string_view, kMediaInfoKeyCount> texts;
    std::array<std::string, kMediaInfoKeyCount> converted;
    std::array<bool, kMediaInfoKeyCount> present{};
    for (const TiXmlAttribute* attribute = element.FirstAttribute(); attribute != nullptr;
         attribute = attribute->Next()) {
        const auto found = FindInfoKey(attribute->NameTStr());
        if (!found)
            continue;
        const auto index = static_cast<std::size_t>(*found);
        texts[index] = ToEntryText(attribute->ValueStr(), isUtf8, converted[index]);
        present[index] = true;
    }
    std::array<PackedField, kMediaInfoKeyCount> fields{};
    std::size_t count = 0;
    for (std::size_t index = 0; index < texts.size(); ++index)
        if (present[index])
            fields[count++] = {static_cast<std::int32_t>(index), texts[index]};
    Replace(CPackedEntry(key, {fields.data(), count}));
}

void CLibCacheFile::Replace(CPackedEntry entry)
{
    const auto old = entries_.find(entry.GetKey());
    if (old == entries_.end()) {
        entries_.insert(std::move(entry));
        return;
    }
    auto node = entries_.extract(old);
    node.value() = std::move(entry);
    entries_.insert(std::move(node));
}

bool CLibCacheFile::Save()
{
    if (dirty_ == 0)
        return true;
    if (isUnread_ && KeepAside(path_) == 0)
        return false;
    isUnread_ = false;
    if (!WriteEntries())
        return false;
    DropOlder(path_);
    dirty_ = 0;
    return true;
}

bool CLibCacheFile::WriteEntries() const
{
    std::vector<const CPackedEntry*> sorted;
    sorted.reserve(entries_.size());
    for (const CPackedEntry& entry : entries_)
        if (!entry.GetKey().empty())
            sorted.push_back(&entry);
    std::sort(sorted.begin(), sorted.end(), [](const CPackedEntry* a, const CPackedEntry* b) {
        return ComesBefore(a->GetKey(), b->GetKey());
    });

    XmlRecordWriter writer(path_, kRootName);
    for (const CPackedEntry* entry : sorted) {
        TiXmlElement element(kEntryName);
        element.SetAttribute(kKeyName, std::string(entry->GetKey()));
        entry->ForEachField([&element](const PackedField& field) {
            const std::string_view name = GetInfoAttribute(field.key);
            if (!name.empty())
                element.SetAttribute(std::string(name), std::string(field.text));
        });
        writer.Write(element);
    }
    return writer.Commit();
}

bool CLibCacheFile::Lookup(const String& key, MediaInfo& info) const
{
    const auto found = entries_.find(std::string_view(common::CString_to_utf8(key)));
    if (found == entries_.end())
        return false;
    info = found->Unpack();
    return true;
}

bool CLibCacheFile::Merge(const String& key, const MediaInfo& info)
{
    dirty_ = 1;
    const std::string keyText = common::CString_to_utf8(key);
    std::map<std::int32_t, std::string> texts;
    if (const auto found = entries_.find(std::string_view(keyText)); found != entries_.end())
        found->ForEachField([&texts](const PackedField& field) {
            texts.emplace_hint(texts.end(), field.key, field.text);
        });
    for (const auto& [field, text] : info)
        texts.insert_or_assign(field, common::CString_to_utf8(text));
    std::vector<PackedField> fields;
    fields.reserve(texts.size());
    for (const auto& [field, text] : texts)
        fields.push_back({field, text});
    Replace(CPackedEntry(keyText, fields));
    return true;
}

} // namespace kivo::tunehive
