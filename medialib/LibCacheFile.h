#pragma once

#include "medialib/MediaInfo.h"
#include "medialib/PackedEntry.h"
#include "shell/contracts/base/String.h"

#include <cstddef>
#include <memory>
#include <memory_resource>
#include <unordered_set>
#include <vector>

namespace kivo::tunehive {

// One library file in memory: metadata records under the paths or URLs of their tracks, which
// compare to the letter. Thread: any, one call at a time; CLibCache guards it.
class CLibCacheFile {
public:
    CLibCacheFile(String stem, String path); // Reads nothing.

    // Replaces the entries by those of the file. False: it is missing, or it did not give its
    // content; then it stays, and is kept aside before a save takes its place. A file of the older
    // form is set aside, and the file counts as changed, so that its entries are saved anew.
    bool Load();

    // Writes the entries, in ascending order of their keys, if anything changed since the last load
    // or save. False: that failed, and it still counts as changed.
    bool Save();

    // True: `info` is replaced by the entry of the key. Else it is left alone.
    bool Lookup(const String& key, MediaInfo& info) const;

    // Sets each key of `info` in the entry, which is created if need be; other keys stay. The file
    // counts as changed from here on, whether or not a value did. Always true. U+0000 is dropped.
    bool Merge(const String& key, const MediaInfo& info);

    [[nodiscard]] const String& GetStem() const { return stem_; }
    [[nodiscard]] std::size_t GetCount() const { return store_->entries.size(); }

private:
    using Entries = std::pmr::unordered_set<CPackedEntry, PackedEntryHash, PackedEntryEqual>;

    // The entries and all that they are made of, which is given back as a whole and never looked at
    // for that: freed one by one, 100,000 of them would hold up each end of the program. What a
    // merge replaces stays with it.
    struct Store {
        std::pmr::monotonic_buffer_resource memory;
        Entries& entries = *std::pmr::polymorphic_allocator<>(&memory).new_object<Entries>();
        // The same in the order of a save as far as the last one sorted them, then as they came:
        // nearly in that order, as files hold them and folders list them.
        std::vector<const CPackedEntry*> order;
    };

    void Insert(CPackedEntry entry);
    void Replace(CPackedEntry entry);
    void SortEntries();
    [[nodiscard]] bool WriteEntries() const;

    String stem_;
    String path_;
    int dirty_ = 0;
    bool isUnread_ = false; // The file on disk holds something that isn't in memory.
    std::unique_ptr<Store> store_ = std::make_unique<Store>(); // A new one with each load.
};

} // namespace kivo::tunehive
