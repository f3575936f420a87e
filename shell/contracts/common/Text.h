#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

// Text in and out of bytes. No call fails: what can't be read becomes U+FFFD or, in a path,
// U+DC00+byte. Thread: any.
namespace kivo::common {

// UTF-8 as the system's files hold it. A lone surrogate is written as its three bytes (ED A0…BF …)
// and read back as such; U+0000 is dropped when writing. Other malformed bytes read as U+FFFD.
[[nodiscard]] KIVO_API std::string CString_to_utf8(StringView text);
[[nodiscard]] KIVO_API String utf8_to_CString(std::string_view bytes);

// Bytes of a Windows code page (65001 is UTF-8). 0: UTF-8 where the bytes are valid UTF-8, else the
// legacy code page of the user's language. An unknown number is taken as 0.
[[nodiscard]] KIVO_API String MBCS2CString(std::string_view bytes, int codePage);
[[nodiscard]] KIVO_API std::string CString2MBCS(StringView text, int codePage);

// The legacy code page behind 0: by the user's language (zh 936, zh-TW 950, ja 932, ko 949, ru
// 1251, … else 1252).
[[nodiscard]] KIVO_API int GetLegacyCodePage();
KIVO_API void SetLegacyCodePage(int codePage); // Once at start, before other threads.

// A path's bytes and the text that stands for them: strict UTF-8, every other byte b is U+DC00+b.
// Exact both ways.
[[nodiscard]] KIVO_API String PathToText(std::string_view bytes);
[[nodiscard]] KIVO_API std::string TextToPath(StringView text);

// For the screen: unpaired surrogates become U+FFFD.
[[nodiscard]] KIVO_API String ToDisplayText(StringView text);

// <0, 0, >0; letters A to Z and a to z are equal, all other bytes compare as numbers. No locale.
[[nodiscard]] KIVO_API int string_compare_no_case(std::string_view a, std::string_view b);
[[nodiscard]] KIVO_API String ToLowerAscii(StringView text);

// White space (U+0009–000D, U+0020, U+0085, U+00A0, U+2000–200A, U+2028, U+2029, U+3000, U+FEFF)
// cut off both ends.
[[nodiscard]] KIVO_API String Trim(StringView text);

// Splits at `separator` into all pieces, empty ones included; "" gives one empty piece.
[[nodiscard]] KIVO_API std::vector<String> AnalyzeString(StringView text, StringView separator);

// As atoi: blanks, a sign, digits; 0 without digits; clamped to the range of int.
[[nodiscard]] KIVO_API int CString2Int(StringView text);
[[nodiscard]] KIVO_API int BytesToInt(std::string_view text);
[[nodiscard]] KIVO_API String ToText(int number);

// Each "%s" of the format becomes the next argument; every other '%' stands as it is.
[[nodiscard]] KIVO_API String FormatText(StringView format,
                                         std::initializer_list<StringView> arguments);

// A format from a data file that should hold one "%d" ("%%" is a percent sign). Any other
// conversion, or none, or two: the number is added behind a blank and the rest stands as it is.
[[nodiscard]] KIVO_API String FormatNumber(StringView format, int number);

// As printf's "%.0f": rounded to nearest, halves to even; "0" for what is no number.
[[nodiscard]] KIVO_API String FormatWhole(double number);

} // namespace kivo::common
