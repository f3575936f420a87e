#include "host/OwnLine.h"

#include "shell/contracts/common/Text.h"

#include <vector>

namespace kivo::host {

namespace {

bool IsHighSurrogate(char16_t unit)
{
    return unit >= 0xD800 && unit <= 0xDBFF;
}

// The first character of a word, with both halves.
String TakeFirst(StringView word)
{
    const bool isPair = word.size() > 1 && IsHighSurrogate(word.front());
    return String(word.substr(0, isPair ? 2 : 1));
}

// Chinese, Japanese and Korean: one such letter fills a face.
bool IsSquare(char16_t unit)
{
    return (unit >= 0x2E80 && unit <= 0x9FFF) || (unit >= 0xAC00 && unit <= 0xD7AF) ||
           (unit >= 0xF900 && unit <= 0xFAFF) || IsHighSurrogate(unit);
}

char16_t ToUpper(char16_t unit)
{
    const bool isSmall = (unit >= u'a' && unit <= u'z') ||
                         (unit >= 0xE0 && unit <= 0xFE && unit != 0xF7) ||
                         (unit >= 0x0430 && unit <= 0x044F);
    return isSmall ? static_cast<char16_t>(unit - 0x20) : unit;
}

} // namespace

String GetInitials(StringView name)
{
    std::vector<String> words;
    for (const String& word : common::AnalyzeString(common::ToDisplayText(name), u" ")) {
        if (!word.empty())
            words.push_back(word);
    }
    if (words.empty())
        return {};
    String initials = TakeFirst(words.front());
    if (words.size() > 1 && !IsSquare(initials.front()))
        initials += TakeFirst(words.back());
    for (char16_t& unit : initials)
        unit = ToUpper(unit);
    return initials;
}

} // namespace kivo::host
