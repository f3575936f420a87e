#pragma once

#include "shell/contracts/common/Text.h"

#include <QString>

namespace kivo::host {

// For the screen: lone surrogates, which stand for bytes of a path, become U+FFFD.
[[nodiscard]] inline QString ToQString(StringView text)
{
    return QString::fromStdU16String(common::ToDisplayText(text));
}

[[nodiscard]] inline String FromQString(const QString& text)
{
    return text.toStdU16String();
}

} // namespace kivo::host
