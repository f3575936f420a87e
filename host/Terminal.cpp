#include "host/Terminal.h"

#include "shell/contracts/common/Text.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace kivo::host {

namespace {

constexpr std::string_view kEraseLine = "\r\033[K";

bool IsHarmless(char16_t unit)
{
    const bool isControl = unit < 0x20 || (unit >= 0x7F && unit <= 0x9F);
    const bool turnsDirection = (unit >= 0x202A && unit <= 0x202E) ||
                                (unit >= 0x2066 && unit <= 0x2069) || unit == 0x200E ||
                                unit == 0x200F || unit == 0x2028 || unit == 0x2029;
    return !isControl && !turnsDirection;
}

// How many bytes a UTF-8 sequence has, by its first.
std::size_t GetSequenceLength(unsigned char first)
{
    if (first < 0xC0)
        return 1;
    if (first < 0xE0)
        return 2;
    return first < 0xF0 ? 3 : 4;
}

// From the Korean letters on most scripts are two columns wide; the few narrow ones behind them
// only make a line shorter than it could be.
constexpr unsigned char kFirstWideLead = 0xE1;

} // namespace

std::string ForTerminal(StringView text)
{
    String shown = common::ToDisplayText(text);
    std::replace_if(
        shown.begin(), shown.end(), [](char16_t unit) { return !IsHarmless(unit); }, u'?');
    return common::CString_to_utf8(shown);
}

std::string ForTerminal(std::string_view bytes)
{
    return ForTerminal(common::PathToText(bytes));
}

std::string CutToColumns(const std::string& text, int columns)
{
    int used = 0;
    std::size_t at = 0;
    while (at < text.size()) {
        const auto first = static_cast<unsigned char>(text[at]);
        used += first >= kFirstWideLead ? 2 : 1;
        if (used > columns)
            break;
        at = std::min(at + GetSequenceLength(first), text.size());
    }
    return text.substr(0, at);
}

Terminal::Terminal(int descriptor, int columns)
    : descriptor_(descriptor)
    , columns_(columns)
{
}

Terminal::~Terminal()
{
    if (IsTerminal() && !status_.empty())
        Write("\n");
}

int Terminal::GetColumns(int descriptor)
{
    constexpr int kUsual = 80;
    if (isatty(descriptor) == 0)
        return 0;
    winsize size{};
    if (ioctl(descriptor, TIOCGWINSZ, &size) != 0 || size.ws_col < 2)
        return kUsual;
    return size.ws_col;
}

void Terminal::PrintLine(std::string_view text)
{
    std::string line;
    if (IsTerminal() && !status_.empty())
        line += kEraseLine;
    line += "kivo: ";
    line += text;
    line += '\n';
    if (IsTerminal() && !status_.empty())
        line += CutToColumns(status_, columns_ - 1);
    Write(line);
}

void Terminal::ShowStatus(const std::string& text)
{
    if (text == status_)
        return;
    status_ = text;
    if (IsTerminal())
        Write(std::string(kEraseLine) + CutToColumns(text, columns_ - 1));
    else if (!text.empty())
        Write(text + "\n");
}

void Terminal::Write(std::string_view bytes) const
{
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor_, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
}

} // namespace kivo::host
