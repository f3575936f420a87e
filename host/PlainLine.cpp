#include "host/PlainLine.h"

#include "shell/contracts/common/Text.h"

#include <QChar>

namespace kivo::host {

namespace {

constexpr int kMostMarks = 4;
constexpr char16_t kEllipsis = u'…';

bool IsBlank(QChar unit)
{
    return unit.isSpace() || unit.category() == QChar::Other_Control;
}

// Direction marks, and what has no width and no meaning. Joiners stay: scripts need them.
bool IsTrick(char16_t unit)
{
    return unit == 0x00AD || unit == 0x061C || unit == 0x180E || unit == 0x200B || unit == 0x200E ||
           unit == 0x200F || (unit >= 0x202A && unit <= 0x202E) ||
           (unit >= 0x2060 && unit <= 0x206F) || unit == 0xFEFF;
}

bool IsMark(QChar unit)
{
    return unit.category() == QChar::Mark_NonSpacing || unit.category() == QChar::Mark_Enclosing;
}

} // namespace

String ToPlainLine(StringView text, std::size_t longest)
{
    String line;
    int marks = 0;
    bool isBlankDue = false;
    // What is beyond some times the length is never seen; the rest of an endless text isn't read.
    for (const char16_t unit : common::ToDisplayText(text.substr(0, 16 * (longest + 1)))) {
        const QChar character(unit);
        if (IsBlank(character)) {
            isBlankDue = !line.empty();
            continue;
        }
        if (IsTrick(unit))
            continue;
        marks = IsMark(character) ? marks + 1 : 0;
        if (marks > kMostMarks)
            continue;
        if (isBlankDue)
            line += u' ';
        isBlankDue = false;
        line += unit;
        if (line.size() > longest)
            break;
    }
    if (line.size() <= longest)
        return line;
    line.resize(longest > 0 ? longest - 1 : 0);
    if (!line.empty() && QChar::isHighSurrogate(line.back()))
        line.pop_back();
    return line + kEllipsis;
}

} // namespace kivo::host
