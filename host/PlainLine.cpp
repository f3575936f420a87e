#include "host/PlainLine.h"

#include "host/sign/SignText.h"

#include <QChar>

namespace kivo::host {

namespace {

constexpr int kMostMarks = 4;
constexpr char16_t kEllipsis = u'…';

bool IsMark(QChar unit)
{
    return unit.category() == QChar::Mark_NonSpacing || unit.category() == QChar::Mark_Enclosing;
}

} // namespace

String ToPlainLine(StringView text, std::size_t longest)
{
    // What is far beyond the length is never seen; the rest of an endless text isn't read.
    const String clean = CleanSignText(text.substr(0, 16 * (longest + 1)), 8 * (longest + 1));
    String line;
    int marks = 0;
    for (const char16_t unit : clean) {
        marks = IsMark(unit) ? marks + 1 : 0;
        if (marks <= kMostMarks)
            line += unit;
    }
    if (line.size() <= longest)
        return line;
    line.resize(longest > 0 ? longest - 1 : 0);
    if (!line.empty() && QChar::isHighSurrogate(line.back()))
        line.pop_back();
    return line + kEllipsis;
}

} // namespace kivo::host
