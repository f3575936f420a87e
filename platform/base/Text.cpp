#include "shell/contracts/common/Text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace kivo::common {
namespace {

template <class Char>
constexpr Char LowerAscii(Char c)
{
    return c >= Char{'A'} && c <= Char{'Z'} ? static_cast<Char>(c + ('a' - 'A')) : c;
}

constexpr bool IsBlank(char16_t unit)
{
    return (unit >= 0x09 && unit <= 0x0D) || unit == 0x20 || unit == 0x85 || unit == 0xA0 ||
           (unit >= 0x2000 && unit <= 0x200A) || unit == 0x2028 || unit == 0x2029 ||
           unit == 0x3000 || unit == 0xFEFF;
}

// As atoi, but a number beyond int is clamped.
template <class View>
int ParseInt(View text)
{
    std::size_t i = 0;
    while (i < text.size() && (text[i] == ' ' || (text[i] >= '\t' && text[i] <= '\r')))
        ++i;
    const bool negative = i < text.size() && text[i] == '-';
    if (i < text.size() && (text[i] == '-' || text[i] == '+'))
        ++i;
    constexpr long long kMost = std::numeric_limits<int>::max();
    long long number = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i)
        number = std::min(number * 10 + (text[i] - '0'), kMost + 1);
    return static_cast<int>(negative ? -number : std::min(number, kMost));
}

String Widen(std::string_view ascii)
{
    return String(ascii.begin(), ascii.end());
}

} // namespace

int string_compare_no_case(std::string_view a, std::string_view b)
{
    const auto value = [](char c) { return static_cast<unsigned char>(LowerAscii(c)); };
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i)
        if (value(a[i]) != value(b[i]))
            return value(a[i]) < value(b[i]) ? -1 : 1;
    if (a.size() == b.size())
        return 0;
    return a.size() < b.size() ? -1 : 1;
}

String ToLowerAscii(StringView text)
{
    String lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), LowerAscii<char16_t>);
    return lower;
}

String Trim(StringView text)
{
    while (!text.empty() && IsBlank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && IsBlank(text.back()))
        text.remove_suffix(1);
    return String(text);
}

std::vector<String> AnalyzeString(StringView text, StringView separator)
{
    std::vector<String> pieces;
    std::size_t from = 0;
    while (!separator.empty()) {
        const std::size_t found = text.find(separator, from);
        if (found == StringView::npos)
            break;
        pieces.emplace_back(text.substr(from, found - from));
        from = found + separator.size();
    }
    pieces.emplace_back(text.substr(from));
    return pieces;
}

int CString2Int(StringView text)
{
    return ParseInt(text);
}

int BytesToInt(std::string_view text)
{
    return ParseInt(text);
}

String ToText(int number)
{
    return Widen(std::to_string(number));
}

String FormatText(StringView format, std::initializer_list<StringView> arguments)
{
    String text;
    const auto* next = arguments.begin();
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format.substr(i, 2) == u"%s" && next != arguments.end()) {
            text += *next++;
            ++i;
        } else {
            text += format[i];
        }
    }
    return text;
}

String FormatNumber(StringView format, int number)
{
    String text;
    int numbers = 0;
    bool sound = true;
    for (std::size_t i = 0; i < format.size() && sound; ++i) {
        if (format[i] != u'%') {
            text += format[i];
            continue;
        }
        const char16_t kind = i + 1 < format.size() ? format[i + 1] : u'\0';
        sound = kind == u'%' || (kind == u'd' && ++numbers == 1);
        text += kind == u'd' ? ToText(number) : String(1, u'%');
        ++i;
    }
    if (sound && numbers == 1)
        return text;
    return String(format) + u' ' + ToText(number);
}

String FormatWhole(double number)
{
    if (!std::isfinite(number))
        return u"0";
    char digits[std::numeric_limits<double>::max_exponent10 + 4] = {};
    const auto end = std::to_chars(
        std::begin(digits), std::end(digits), number, std::chars_format::fixed, /*precision=*/0);
    return Widen(std::string_view(digits, static_cast<std::size_t>(end.ptr - digits)));
}

} // namespace kivo::common
