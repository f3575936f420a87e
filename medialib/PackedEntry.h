#pragma once

#include "medialib/MediaInfo.h"

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <span>
#include <string_view>

namespace kivo::tunehive {

// One value of a record; the text is UTF-8 as common::CString_to_utf8 writes it, and borrowed.
struct PackedField {
    std::int32_t key;
    std::string_view text;
};

// A track of the cache, its key and its record in one block of memory: a library of 100,000 tracks
// takes a quarter of what maps of 16-bit strings take. It never changes; a merge makes a new one.
// The block belongs to the memory that it was made in, and goes with that.
class CPackedEntry {
public:
    // `key` as the texts of the fields. `fields` ascend by their keys.
    CPackedEntry(std::string_view key,
                 std::span<const PackedField> fields,
                 std::pmr::memory_resource& memory);

    [[nodiscard]] std::string_view GetKey() const;
    [[nodiscard]] MediaInfo Unpack() const;

    // The fields in ascending order; they borrow from the entry.
    template <class Take>
    void ForEachField(Take take) const
    {
        const char* next = GetFields();
        for (std::uint32_t left = GetCount(); left > 0; --left)
            take(ReadField(next));
    }

private:
    [[nodiscard]] std::uint32_t GetCount() const;
    [[nodiscard]] const char* GetFields() const;
    static PackedField ReadField(const char*& next);

    const char* block_;
};

// By the bytes of the key; also looks up by the bytes alone.
struct PackedEntryHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view key) const
    {
        return std::hash<std::string_view>()(key);
    }
    std::size_t operator()(const CPackedEntry& entry) const { return (*this)(entry.GetKey()); }
};
struct PackedEntryEqual {
    using is_transparent = void;
    bool operator()(const CPackedEntry& a, const CPackedEntry& b) const
    {
        return a.GetKey() == b.GetKey();
    }
    bool operator()(const CPackedEntry& a, std::string_view b) const { return a.GetKey() == b; }
    bool operator()(std::string_view a, const CPackedEntry& b) const { return a == b.GetKey(); }
};

// Whether the text of `a` comes before that of `b` in the order of their 16-bit units, which is not
// that of their bytes where a character needs two units.
[[nodiscard]] bool ComesBefore(std::string_view a, std::string_view b);

} // namespace kivo::tunehive
