#include "medialib/LibCacheFile.h"

#include "medialib/MediaInfoNames.h"
#include "shell/base/XmlRecords.h"
#include "shell/base/XmlRecordWriter.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Files.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <forward_list>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kivo::tunehive {

namespace {

constexpr const char* kRootName = "Caches";
constexpr const char* kEntryName = "Cache";
constexpr const char* kKeyName = "id";

// Whole words at a time: a large library has some twenty million of these bytes.
bool IsAscii(std::string_view bytes)
{
    std::uint64_t bits = 0;
    for (; bytes.size() >= sizeof bits; bytes.remove_prefix(sizeof bits)) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data(), sizeof word);
        bits |= word;
    }
    std::uint64_t rest = 0;
    if (!bytes.empty())
        std::memcpy(&rest, bytes.data(), bytes.size());
    return ((bits | rest) & 0x8080808080808080U) == 0;
}

// The bytes of a value in the form that entries keep: ASCII as it stands, all else by way of text,
// so that what is malformed is settled here. `converted` keeps what isn't borrowed from `bytes`.
std::string_view
ToEntryText(std::string_view bytes, bool isUtf8, std::forward_list<std::string>& converted)
{
    if (IsAscii(bytes))
        return bytes;
    const String text =
        isUtf8 ? common::utf8_to_CString(bytes) : common::MBCS2CString(bytes, /*codePage=*/0);
    return converted.emplace_front(common::CString_to_utf8(text));
}

// Adds the entry of an element, if it is one and has a key.
void TakeEntry(const XmlRecord& record, bool isUtf8, std::vector<CPackedEntry>& entries)
{
    if (!IsNamed(record, kEntryName))
        return;
    std::forward_list<std::string> converted;
    const std::string_view key = ToEntryText(GetAttribute(record, kKeyName), isUtf8, converted);
    if (key.empty())
        return;
    std::array<PackedField, kMediaInfoKeyCount> fields{}; // No attribute comes twice.
    std::size_t count = 0;
    for (const XmlAttribute& attribute : record.attributes)
        if (const auto found = FindInfoKey(attribute.name))
            fields[count++] = {*found, ToEntryText(attribute.value, isUtf8, converted)};
    const auto byKey = [](const PackedField& a, const PackedField& b) { return a.key < b.key; };
    if (!std::is_sorted(fields.begin(), fields.begin() + count, byKey))
        std::sort(fields.begin(), fields.begin() + count, byKey);
    entries.emplace_back(key, std::span(fields.data(), count));
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
    std::vector<CPackedEntry> loaded;
    const XmlResult result =
        ReadXmlRecords(path_, kRootName, prolog, [&loaded, &prolog](const XmlRecord& record) {
            TakeEntry(record, prolog.isDeclared, loaded);
        });
    if (result != XmlResult::Read) {
        isUnread_ = IsUnread(result);
        return false;
    }
    // From the last to the first: of two entries with one key the later stays.
    entries_.reserve(loaded.size());
    for (auto entry = loaded.rbegin(); entry != loaded.rend(); ++entry)
        entries_.insert(std::move(*entry));
    if (!prolog.isDeclared) {
        SetOlderAside(path_);
        dirty_ = 1;
    }
    return true;
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
    std::vector<XmlAttribute> attributes;
    for (const CPackedEntry* entry : sorted) {
        attributes.assign({
            {kKeyName, entry->GetKey()}
        });
        entry->ForEachField([&attributes](const PackedField& field) {
            const std::string_view name = GetInfoAttribute(field.key);
            if (!name.empty())
                attributes.push_back({name, field.text});
        });
        writer.Write(kEntryName, attributes);
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
