#include "tree/DragText.h"

#include "mediares/GroupIds.h"
#include "shell/contracts/common/Text.h"

namespace kivo::tunehive {

namespace {

constexpr StringView kPrefix = u"KIVO2006TREEDRAG:";
constexpr char16_t kSeparator = u':';
constexpr char16_t kGroupEnd = u'#';

} // namespace

String MakeDragText(const std::vector<String>& sids)
{
    String text(kPrefix);
    for (const String& sid : sids) {
        text += kPlayingGroup;
        text += kGroupEnd;
        text += sid;
        text += kSeparator;
    }
    while (!text.empty() && text.back() == kSeparator)
        text.pop_back();
    return text;
}

std::vector<String> ReadDragText(const String& text)
{
    std::vector<String> sids;
    for (const String& piece : common::AnalyzeString(text, StringView(&kSeparator, 1))) {
        const std::size_t end = piece.find(kGroupEnd);
        if (end == String::npos || StringView(piece).substr(0, end) != kPlayingGroup)
            continue;
        String sid = piece.substr(end + 1);
        if (!sid.empty())
            sids.push_back(std::move(sid));
    }
    return sids;
}

} // namespace kivo::tunehive
