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
void TakeEntry(const XmlRecord& record,
               bool isUtf8,
               std::pmr::memory_resource& memory,
               std::vector<CPackedEntry>& entries)
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
    entries.emplace_back(key, std::span(fields.data(), count), memory);
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
    store_ = std::make_unique<Store>();
    XmlProlog prolog;
    std::vector<CPackedEntry> loaded;
    const XmlResult result =
        ReadXmlRecords(path_, kRootName, prolog, [this, &loaded, &prolog](const XmlRecord& record) {
            TakeEntry(record, prolog.isDeclared, store_->memory, loaded);
        });
    if (result != XmlResult::Read) {
        isUnread_ = IsUnread(result);
        store_ = std::make_unique<Store>(); // What came before the fault in the file never was.
        return false;
    }
    // From the last to the first: of two entries with one key the later stays.
    store_->entries.reserve(loaded.size());
    store_->order.reserve(loaded.size());
    for (auto entry = loaded.rbegin(); entry != loaded.rend(); ++entry)
        Insert(*entry);
    std::reverse(store_->order.begin(), store_->order.end());
    if (!prolog.isDeclared) {
        SetOlderAside(path_);
        dirty_ = 1;
    }
    return true;
}

// Unless there is one of its key.
void CLibCacheFile::Insert(CPackedEntry entry)
{
    if (const auto [place, isNew] = store_->entries.insert(entry); isNew)
        store_->order.push_back(&*place);
}

void CLibCacheFile::Replace(CPackedEntry entry)
{
    const auto old = store_->entries.find(entry.GetKey());
    if (old == store_->entries.end()) {
        Insert(entry);
        return;
    }
    auto node = store_->entries.extract(old);
    node.value() = entry;
    store_->entries.insert(std::move(node));
}

bool CLibCacheFile::Save()
{
    if (dirty_ == 0)
        return true;
    if (isUnread_ && KeepAside(path_) == 0)
        return false;
    isUnread_ = false;
    SortEntries();
    if (!WriteEntries())
        return false;
    DropOlder(path_);
    dirty_ = 0;
    return true;
}

// By merging the runs that are in order already: next to none, and the entries of a run lie side by
// side in memory, where a sort of 100,000 would wait for it two million times.
void CLibCacheFile::SortEntries()
{
    const auto comesBefore = [](const CPackedEntry* a, const CPackedEntry* b) {
        return ComesBefore(a->GetKey(), b->GetKey());
    };
    auto& order = store_->order;
    using Place = std::vector<const CPackedEntry*>::iterator;
    std::vector<Place> ends; // Of the runs.
    for (Place end = order.begin(); end != order.end();)
        ends.push_back(end = std::is_sorted_until(end, order.end(), comesBefore));
    while (ends.size() > 1) { // Each two neighbours become one.
        std::vector<Place> merged;
        Place start = order.begin();
        for (std::size_t run = 0; run < ends.size(); run += 2) {
            const Place end = ends[std::min(run + 1, ends.size() - 1)];
            std::inplace_merge(start, ends[run], end, comesBefore);
            merged.push_back(start = end);
        }
        ends = std::move(merged);
    }
}

bool CLibCacheFile::WriteEntries() const
{
    XmlRecordWriter writer(path_, kRootName);
    std::vector<XmlAttribute> attributes;
    for (const CPackedEntry* entry : store_->order) {
        if (entry->GetKey().empty())
            continue;
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
    const auto found = store_->entries.find(std::string_view(common::CString_to_utf8(key)));
    if (found == store_->entries.end())
        return false;
    info = found->Unpack();
    return true;
}

bool CLibCacheFile::Merge(const String& key, const MediaInfo& info)
{
    dirty_ = 1;
    const std::string keyText = common::CString_to_utf8(key);
    std::map<std::int32_t, std::string> texts;
    if (const auto found = store_->entries.find(std::string_view(keyText));
        found != store_->entries.end())
        found->ForEachField([&texts](const PackedField& field) {
            texts.emplace_hint(texts.end(), field.key, field.text);
        });
    for (const auto& [field, text] : info)
        texts.insert_or_assign(field, common::CString_to_utf8(text));
    std::vector<PackedField> fields;
    fields.reserve(texts.size());
    for (const auto& [field, text] : texts)
        fields.push_back({field, text});
    Replace(CPackedEntry(keyText, fields, store_->memory));
    return true;
}

} // namespace kivo::tunehive
