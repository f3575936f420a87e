#pragma once

#include "mediares/SIDGenerator.h"
#include "shell/contracts/base/String.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <utility>

namespace kivo::tunehive {

// One value for each SID of a group, found in constant time. SIDs are given out in ascending order,
// so the values stand in a row, and one that went leaves its place empty until all before it have
// gone: no tree, no hashing, and a few large blocks of memory in place of 100,000 small ones.
// Thread: user interface.
template <class T>
class BySid {
public:
    // The SID comes after all others here. The value stays where it is until it is removed.
    T& Add(const String& sid, T value)
    {
        const std::uint64_t number = ToNumber(sid);
        if (values_.empty())
            first_ = number;
        while (first_ + values_.size() < number)
            values_.emplace_back();
        return values_.emplace_back(std::move(value)).value();
    }

    [[nodiscard]] const T* Find(const String& sid) const // Null: there is none.
    {
        const std::uint64_t place = ToNumber(sid) - first_; // A lower number wraps round.
        return place < values_.size() && values_[place] ? &*values_[place] : nullptr;
    }
    [[nodiscard]] T* Find(const String& sid)
    {
        return const_cast<T*>(std::as_const(*this).Find(sid));
    }

    void Remove(const String& sid)
    {
        const std::uint64_t place = ToNumber(sid) - first_;
        if (place < values_.size())
            values_[place].reset();
        for (; !values_.empty() && !values_.front(); ++first_)
            values_.pop_front();
    }

    void Clear() { values_.clear(); }

private:
    static std::uint64_t ToNumber(const String& sid)
    {
        return SIDGenerator::ToNumber(sid).value_or(0); // No SID has that.
    }

    std::deque<std::optional<T>> values_;
    std::uint64_t first_ = 1; // Of the value in front. Never 0.
};

} // namespace kivo::tunehive
