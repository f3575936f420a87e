#pragma once

#include "shell/contracts/base/String.h"

#include <cstdint>
#include <optional>

namespace kivo::tunehive {

// Makes track identifiers, one after another: "a", "b", … "z", "aa", "ab", … without end. A SID is
// unique inside one group and one run and stands in no file. Thread: user interface.
class SIDGenerator {
public:
    virtual ~SIDGenerator() = default;

    String Next();

    // The next SID follows this one. What is no SID counts as the empty string: then "a" is next.
    void SetCurrent(const String& sid);
    [[nodiscard]] const String& GetCurrent() const { return current_; }

    [[nodiscard]] static bool IsValidSID(StringView sid);

    // -1, 0 or 1, in the order in which Next makes them: shorter first, then by letter.
    [[nodiscard]] static int CompareSID(StringView a, StringView b);
    [[nodiscard]] static String FirstSID();

    // The place of a SID in that order, from 1 on. Nothing for what is no SID, or a longer one
    // than 13 letters.
    [[nodiscard]] static std::optional<std::uint64_t> ToNumber(StringView sid);
    [[nodiscard]] static String FromNumber(std::uint64_t number);

private:
    String current_;
};

} // namespace kivo::tunehive
