#include "shell/contracts/base/Property.h"

#include "shell/contracts/base/Pack.h"
#include "shell/contracts/base/Unpack.h"
#include "shell/contracts/common/Text.h"

#include <utility>

namespace kivo {

void Property::marshal(Pack& pack) const
{
    pack.push_uint32(static_cast<std::uint32_t>(entries_.size()));
    for (const auto& [key, value] : entries_) {
        pack.push_uint32(key);
        pack.push_varstr(value.data(), value.size());
    }
}

void Property::unmarshal(Unpack& unpack)
{
    for (std::uint32_t count = unpack.pop_uint32(); count > 0; --count) {
        const std::uint32_t key = unpack.pop_uint32();
        entries_[key] = unpack.pop_varstr();
    }
}

void Property::merge(Entries entries)
{
    entries.merge(entries_); // Takes what the given entries don't set anew.
    entries_ = std::move(entries);
}

void Property::subtract(const Property& other)
{
    // A record less itself: what is walked is what is taken from.
    const Entries taken = other.entries_;
    for (const auto& [key, value] : taken) {
        const auto found = entries_.find(key);
        if (found != entries_.end() && found->second == value)
            entries_.erase(found);
    }
}

void Property::SetText(std::uint32_t key, StringView text)
{
    entries_[key] = common::CString_to_utf8(text);
}

String Property::GetText(std::uint32_t key) const
{
    return common::utf8_to_CString(GetBytes(key));
}

std::string Property::GetBytes(std::uint32_t key) const
{
    const auto found = entries_.find(key);
    return found != entries_.end() ? found->second : std::string();
}

} // namespace kivo
