#include "platform/engine/TimeText.h"

#include "shell/contracts/common/Text.h"

#include <algorithm>
#include <cstdint>

namespace kivo {

namespace {

constexpr std::size_t kLongestText = 1024;
constexpr double kLongestTime = 1e9;

bool IsControl(char16_t c)
{
    return c < 0x20 || (c >= 0x7F && c < 0xA0);
}

bool IsHighSurrogate(char16_t c)
{
    return c >= 0xD800 && c < 0xDC00;
}

String TwoDigits(std::int64_t number)
{
    String text = common::ToText(static_cast<int>(number));
    return text.size() < 2 ? u"0" + text : text;
}

} // namespace

String FormatTime(double seconds)
{
    const bool isTime = seconds > 0; // False for NaN too.
    const auto whole = static_cast<std::int64_t>(isTime ? std::min(seconds, kLongestTime) : 0.0);
    const std::int64_t hours = whole / 3600;
    const std::int64_t minutes = whole / 60 % 60;
    const String tail = u":" + TwoDigits(whole % 60);
    if (hours == 0)
        return common::ToText(static_cast<int>(minutes)) + tail;
    return common::ToText(static_cast<int>(hours)) + u":" + TwoDigits(minutes) + tail;
}

String BoundText(const std::string& utf8)
{
    // No more bytes than the longest text can come from are looked at.
    String text = common::utf8_to_CString(std::string_view(utf8).substr(0, 8 * kLongestText));
    text.erase(std::remove_if(text.begin(), text.end(), IsControl), text.end());
    if (text.size() > kLongestText) {
        text.resize(kLongestText);
        if (IsHighSurrogate(text.back()))
            text.pop_back();
    }
    return text;
}

} // namespace kivo
