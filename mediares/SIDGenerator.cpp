#include "mediares/SIDGenerator.h"

#include <algorithm>

namespace kivo::tunehive {

namespace {

constexpr StringView kAlphabet = u"abcdefghijklmnopqrstuvwxyz";
constexpr std::size_t kMaxNumberLetters = 13; // 26 + 26² + … + 26¹³ fits 64 bits.

} // namespace

// A counter in bijective base 26 with the last letter as its lowest digit.
String SIDGenerator::Next()
{
    for (std::size_t i = current_.size(); i-- > 0;) {
        if (current_[i] != kAlphabet.back()) {
            ++current_[i];
            return current_;
        }
        current_[i] = kAlphabet.front();
    }
    current_.insert(current_.begin(), kAlphabet.front());
    return current_;
}

void SIDGenerator::SetCurrent(const String& sid)
{
    current_ = IsValidSID(sid) ? sid : String();
}

bool SIDGenerator::IsValidSID(StringView sid)
{
    return !sid.empty() && std::all_of(sid.begin(), sid.end(), [](char16_t letter) {
        return letter >= kAlphabet.front() && letter <= kAlphabet.back();
    });
}

int SIDGenerator::CompareSID(StringView a, StringView b)
{
    if (a.size() != b.size())
        return a.size() < b.size() ? -1 : 1;
    const int order = a.compare(b);
    return std::clamp(order, -1, 1);
}

String SIDGenerator::FirstSID()
{
    return String(1, kAlphabet.front());
}

std::optional<std::uint64_t> SIDGenerator::ToNumber(StringView sid)
{
    if (!IsValidSID(sid) || sid.size() > kMaxNumberLetters)
        return std::nullopt;
    std::uint64_t number = 0;
    for (const char16_t letter : sid)
        number = number * kAlphabet.size() + (letter - kAlphabet.front() + 1U);
    return number;
}

String SIDGenerator::FromNumber(std::uint64_t number)
{
    String sid;
    for (; number > 0; number = (number - 1) / kAlphabet.size())
        sid += kAlphabet[(number - 1) % kAlphabet.size()];
    std::reverse(sid.begin(), sid.end());
    return sid;
}

} // namespace kivo::tunehive
