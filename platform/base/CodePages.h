#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"

#include <optional>
#include <string>
#include <string_view>

// Windows code pages by their numbers. Thread: any.
namespace kivo {

// How a code page is read: by ICU, by the C library's iconv, or not at all.
enum class ConverterKind { None, Icu, Iconv };

struct Converter {
    ConverterKind kind = ConverterKind::None;
    std::string name; // As ICU or iconv know it.
};

// The converter of a code page other than UTF-8 (65001). None: there is nothing for that number.
[[nodiscard]] Converter FindConverter(int codePage);

// The text of the bytes; what can't be read is U+FFFD. Nothing: no such converter.
[[nodiscard]] std::optional<String> DecodeWith(const Converter& converter, std::string_view bytes);

// The bytes of the text; what the code page lacks becomes its substitute. Nothing: no such
// converter, or one that only reads (iconv).
[[nodiscard]] std::optional<std::string> EncodeWith(const Converter& converter, StringView text);

// The legacy code page of a language as "zh_TW", "ru-RU" or "de_DE.UTF-8" name it; 1252 if unknown.
[[nodiscard]] KIVO_API int LegacyCodePageOf(std::string_view language);

} // namespace kivo
