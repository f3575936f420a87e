#include "host/sign/SignText.h"

#include "shell/contracts/common/Text.h"

#include <algorithm>

namespace kivo::host {

namespace {

constexpr std::size_t kLongestId = 1023;

bool IsControl(char16_t unit)
{
    return unit < 0x20 || (unit >= 0x7F && unit <= 0x9F);
}

// Letters that only turn the direction of writing or can't be seen at all, and what is no letter.
bool IsUnseen(char16_t unit)
{
    return (unit >= 0x200E && unit <= 0x200F) || (unit >= 0x202A && unit <= 0x202E) ||
           (unit >= 0x2060 && unit <= 0x206F) || unit == 0x061C || unit == 0x200B ||
           unit == 0xFEFF || unit >= 0xFFFE || (unit >= 0xFDD0 && unit <= 0xFDEF) ||
           (unit >= 0xFFF9 && unit <= 0xFFFB);
}

bool IsBlank(char16_t unit)
{
    return unit == u' ' || (unit >= 0x09 && unit <= 0x0D) || unit == 0x85 || unit == 0xA0 ||
           (unit >= 0x2000 && unit <= 0x200A) || unit == 0x2028 || unit == 0x2029 || unit == 0x3000;
}

bool IsHighHalf(char16_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

} // namespace

String CleanSignText(StringView text, std::size_t longest)
{
    String clean;
    bool isBlankDue = false;
    for (const char16_t unit : common::ToDisplayText(text)) {
        if (IsBlank(unit)) {
            isBlankDue = !clean.empty();
            continue;
        }
        if (IsControl(unit) || IsUnseen(unit))
            continue;
        if (isBlankDue)
            clean += u' ';
        isBlankDue = false;
        clean += unit;
        if (clean.size() > longest)
            break;
    }
    if (clean.size() > longest)
        clean.resize(longest);
    if (!clean.empty() && IsHighHalf(clean.back()))
        clean.pop_back();
    if (clean.ends_with(u' '))
        clean.pop_back();
    return clean;
}

String NormalizeSignId(StringView text)
{
    const String trimmed = common::Trim(text);
    String id = common::ToLowerAscii(StringView(trimmed).substr(0, trimmed.find(u'/')));
    const std::size_t at = id.find(u'@');
    if (at == String::npos || at == 0 || at + 1 == id.size() || id.size() > kLongestId)
        return {};
    constexpr StringView kForbidden = u"\"&':<>/@";
    const bool isFit = std::all_of(id.begin(), id.end(), [](char16_t unit) {
        return !IsBlank(unit) && !IsControl(unit) && !IsUnseen(unit);
    });
    const StringView name = StringView(id).substr(0, at);
    const StringView server = StringView(id).substr(at + 1);
    if (!isFit || common::ToDisplayText(id) != id ||
        name.find_first_of(kForbidden) != StringView::npos ||
        server.find_first_of(kForbidden) != StringView::npos)
        return {};
    return id;
}

} // namespace kivo::host
