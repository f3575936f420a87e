#include "platform/base/CodePages.h"

#include "platform/base/Utf.h"

#include <iconv.h>
#include <unicode/ucnv.h>
#include <unicode/ucnv_cb.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <memory>

namespace kivo {
namespace {

// Windows' numbers are ICU's under one of these prefixes; a range is first, last, what is taken off
// the number. By number and never by name: ICU's "gb2312" is not what Windows means by it.
struct IcuRange {
    int first;
    int last;
    const char* prefix;
    int minus;
};

constexpr IcuRange kIcuRanges[] = {
    {437,   437,   "windows-", 0    },
    {720,   720,   "windows-", 0    },
    {737,   737,   "windows-", 0    },
    {775,   775,   "windows-", 0    },
    {850,   850,   "windows-", 0    },
    {852,   852,   "windows-", 0    },
    {855,   855,   "windows-", 0    },
    {857,   858,   "windows-", 0    },
    {861,   862,   "windows-", 0    },
    {866,   866,   "windows-", 0    },
    {869,   869,   "windows-", 0    },
    {874,   874,   "windows-", 0    },
    {932,   932,   "windows-", 0    },
    {936,   936,   "windows-", 0    },
    {949,   950,   "windows-", 0    },
    {1250,  1258,  "windows-", 0    },
    {20127, 20127, "windows-", 0    },
    {20866, 20866, "windows-", 0    },
    {21866, 21866, "windows-", 0    },
    {28592, 28599, "windows-", 0    },
    {28603, 28603, "windows-", 0    },
    {28605, 28605, "windows-", 0    },
    {54936, 54936, "windows-", 0    },
    {57002, 57011, "windows-", 0    },
    {37,    37,    "ibm-",     0    },
    {500,   500,   "ibm-",     0    },
    {860,   860,   "ibm-",     0    },
    {863,   865,   "ibm-",     0    },
    {870,   870,   "ibm-",     0    },
    {875,   875,   "ibm-",     0    },
    {1026,  1026,  "ibm-",     0    },
    {1047,  1047,  "ibm-",     0    },
    {1140,  1149,  "ibm-",     0    },
    {20273, 20273, "ibm-",     20000},
    {20277, 20278, "ibm-",     20000},
    {20280, 20280, "ibm-",     20000},
    {20284, 20285, "ibm-",     20000},
    {20290, 20290, "ibm-",     20000},
    {20297, 20297, "ibm-",     20000},
    {20420, 20420, "ibm-",     20000},
    {20424, 20424, "ibm-",     20000},
    {20871, 20871, "ibm-",     20000},
};

struct NamedConverter {
    int codePage;
    ConverterKind kind;
    const char* name;
};

// Names of their own; at the end the near relatives of those that nothing here knows exactly.
constexpr NamedConverter kNamed[] = {
    {708,   ConverterKind::Icu,   "ibm-1089"      },
    {1200,  ConverterKind::Icu,   "UTF-16LE"      },
    {1201,  ConverterKind::Icu,   "UTF-16BE"      },
    {10000, ConverterKind::Icu,   "macintosh"     },
    {10006, ConverterKind::Icu,   "x-mac-greek"   },
    {10007, ConverterKind::Icu,   "x-mac-cyrillic"},
    {10029, ConverterKind::Icu,   "macce"         },
    {10081, ConverterKind::Icu,   "x-mac-turkish" },
    {12000, ConverterKind::Icu,   "UTF-32LE"      },
    {12001, ConverterKind::Icu,   "UTF-32BE"      },
    {20838, ConverterKind::Icu,   "ibm-838"       },
    {20924, ConverterKind::Icu,   "ibm-1047"      },
    {21025, ConverterKind::Icu,   "ibm-1025"      },
    {28591, ConverterKind::Icu,   "iso-8859-1"    },
    {38598, ConverterKind::Icu,   "iso-8859-8"    },
    {50221, ConverterKind::Icu,   "iso-2022-jp"   },
    {50222, ConverterKind::Icu,   "iso-2022-jp"   },
    {50225, ConverterKind::Icu,   "iso-2022-kr"   },
    {50229, ConverterKind::Icu,   "iso-2022-cn"   },
    {51932, ConverterKind::Icu,   "euc-jp"        },
    {51936, ConverterKind::Icu,   "ibm-1383"      },
    {51949, ConverterKind::Icu,   "euc-kr"        },
    {52936, ConverterKind::Icu,   "hz-gb-2312"    },
    {65000, ConverterKind::Icu,   "UTF-7"         },
    {1361,  ConverterKind::Iconv, "JOHAB"         },
    {10017, ConverterKind::Iconv, "MAC-UK"        },
    {10079, ConverterKind::Iconv, "MAC-IS"        },
    {20000, ConverterKind::Iconv, "EUC-TW"        },
    {20106, ConverterKind::Iconv, "DIN_66003"     },
    {20107, ConverterKind::Iconv, "SEN_850200_B"  },
    {20108, ConverterKind::Iconv, "NS_4551-1"     },
    {20261, ConverterKind::Iconv, "T.61-8BIT"     },
    {20269, ConverterKind::Iconv, "ISO_6937"      },
    {20423, ConverterKind::Iconv, "IBM423"        },
    {20880, ConverterKind::Iconv, "IBM880"        },
    {20905, ConverterKind::Iconv, "IBM905"        },
    {10001, ConverterKind::Icu,   "windows-932"   },
    {10002, ConverterKind::Icu,   "windows-950"   },
    {10003, ConverterKind::Icu,   "windows-949"   },
    {10008, ConverterKind::Icu,   "windows-936"   },
    {10021, ConverterKind::Icu,   "windows-874"   },
    {20002, ConverterKind::Icu,   "windows-950"   },
    {20105, ConverterKind::Icu,   "windows-20127" },
    {20936, ConverterKind::Icu,   "ibm-1383"      },
    {20949, ConverterKind::Icu,   "euc-kr"        },
    {50227, ConverterKind::Icu,   "iso-2022-cn"   },
};

struct LanguageCodePage {
    std::string_view language;
    int codePage;
};

// The longer name of a language stands before the shorter.
constexpr LanguageCodePage kLegacy[] = {
    {"zh_TW",   950 },
    {"zh_HK",   950 },
    {"zh_MO",   950 },
    {"zh_Hant", 950 },
    {"zh",      936 },
    {"ja",      932 },
    {"ko",      949 },
    {"ru",      1251},
    {"uk",      1251},
    {"be",      1251},
    {"bg",      1251},
    {"mk",      1251},
    {"sr",      1251},
    {"kk",      1251},
    {"cs",      1250},
    {"sk",      1250},
    {"pl",      1250},
    {"hu",      1250},
    {"sl",      1250},
    {"hr",      1250},
    {"bs",      1250},
    {"ro",      1250},
    {"sq",      1250},
    {"el",      1253},
    {"tr",      1254},
    {"az",      1254},
    {"he",      1255},
    {"iw",      1255},
    {"ar",      1256},
    {"fa",      1256},
    {"ur",      1256},
    {"et",      1257},
    {"lv",      1257},
    {"lt",      1257},
    {"vi",      1258},
    {"th",      874 },
};

struct CloseIcu {
    void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using IcuConverter = std::unique_ptr<UConverter, CloseIcu>;

class IconvHandle {
public:
    explicit IconvHandle(const std::string& name)
        : handle_(iconv_open("UTF-16LE", name.c_str()))
    {
    }
    IconvHandle(const IconvHandle&) = delete;
    IconvHandle& operator=(const IconvHandle&) = delete;
    ~IconvHandle()
    {
        if (IsOpen())
            iconv_close(handle_);
    }
    [[nodiscard]] bool IsOpen() const
    {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): iconv_open's failure is (iconv_t)-1.
        return handle_ != reinterpret_cast<iconv_t>(std::intptr_t{-1});
    }
    [[nodiscard]] iconv_t Get() const { return handle_; }

private:
    iconv_t handle_;
};

// ICU's own substitution gives U+001A where the code page says so; ours is the same for all.
void SubstituteUnreadable(const void* /*context*/,
                          UConverterToUnicodeArgs* arguments,
                          const char* /*codeUnits*/,
                          std::int32_t /*length*/,
                          UConverterCallbackReason reason,
                          UErrorCode* status)
{
    if (reason > UCNV_IRREGULAR)
        return;
    *status = U_ZERO_ERROR;
    const UChar replacement = utf::kReplacement;
    ucnv_cbToUWriteUChars(arguments, &replacement, 1, 0, status);
}

IcuConverter OpenIcu(const std::string& name)
{
    UErrorCode status = U_ZERO_ERROR;
    IcuConverter converter(ucnv_open(name.c_str(), &status));
    return U_SUCCESS(status) != 0 ? std::move(converter) : nullptr;
}

std::int32_t LengthOf(std::size_t size)
{
    constexpr std::size_t kMost = std::numeric_limits<std::int32_t>::max() / 16;
    return static_cast<std::int32_t>(std::min(size, kMost));
}

std::optional<String> DecodeIcu(const std::string& name, std::string_view bytes)
{
    const IcuConverter converter = OpenIcu(name);
    if (!converter)
        return std::nullopt;
    UErrorCode status = U_ZERO_ERROR;
    ucnv_setToUCallBack(converter.get(), SubstituteUnreadable, nullptr, nullptr, nullptr, &status);
    const std::int32_t length = LengthOf(bytes.size());
    String text(bytes.size() + 1, u'\0');
    for (int attempt = 0; attempt < 2; ++attempt) {
        status = U_ZERO_ERROR;
        const std::int32_t needed = ucnv_toUChars(
            converter.get(), text.data(), LengthOf(text.size()), bytes.data(), length, &status);
        if (status != U_BUFFER_OVERFLOW_ERROR) {
            text.resize(U_SUCCESS(status) != 0 ? static_cast<std::size_t>(needed) : 0);
            return text;
        }
        text.resize(static_cast<std::size_t>(needed) + 1);
    }
    return String();
}

void AppendLittleEndian(String& text, const char* bytes, std::size_t count)
{
    for (std::size_t i = 0; i + 1 < count; i += 2)
        text.push_back(static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) |
                                             static_cast<unsigned char>(bytes[i + 1]) << 8U));
}

std::optional<String> DecodeIconv(const std::string& name, std::string_view bytes)
{
    const IconvHandle handle(name);
    if (!handle.IsOpen())
        return std::nullopt;
    String text;
    std::string input(bytes); // iconv asks for writable bytes and doesn't write them.
    char* from = input.data();
    std::size_t left = input.size();
    std::array<char, 4096> block{};
    while (left > 0) {
        char* to = block.data();
        std::size_t room = block.size();
        const bool failed =
            iconv(handle.Get(), &from, &left, &to, &room) == static_cast<std::size_t>(-1);
        const int error = errno;
        AppendLittleEndian(text, block.data(), block.size() - room);
        if (failed && error != E2BIG) {
            text.push_back(utf::kReplacement);
            ++from;
            --left;
        }
    }
    char* to = block.data();
    std::size_t room = block.size();
    iconv(handle.Get(), nullptr, nullptr, &to, &room); // What a composing page still holds back.
    AppendLittleEndian(text, block.data(), block.size() - room);
    return text;
}

bool NamesLanguage(std::string_view text, std::string_view language)
{
    if (text.size() < language.size())
        return false;
    for (std::size_t i = 0; i < language.size(); ++i) {
        const char c = text[i] == '-' ? '_' : text[i];
        if (c != language[i])
            return false;
    }
    return text.size() == language.size() ||
           std::string_view("_-.@").find(text[language.size()]) != std::string_view::npos;
}

} // namespace

Converter FindConverter(int codePage)
{
    for (const IcuRange& range : kIcuRanges)
        if (codePage >= range.first && codePage <= range.last)
            return {ConverterKind::Icu, range.prefix + std::to_string(codePage - range.minus)};
    for (const NamedConverter& named : kNamed)
        if (named.codePage == codePage)
            return {named.kind, named.name};
    return {};
}

std::optional<String> DecodeWith(const Converter& converter, std::string_view bytes)
{
    switch (converter.kind) {
    case ConverterKind::Icu: return DecodeIcu(converter.name, bytes);
    case ConverterKind::Iconv: return DecodeIconv(converter.name, bytes);
    case ConverterKind::None: break;
    }
    return std::nullopt;
}

std::optional<std::string> EncodeWith(const Converter& converter, StringView text)
{
    if (converter.kind != ConverterKind::Icu)
        return std::nullopt;
    const IcuConverter icu = OpenIcu(converter.name);
    if (!icu)
        return std::nullopt;
    const std::int32_t length = LengthOf(text.size());
    std::string bytes(static_cast<std::size_t>(UCNV_GET_MAX_BYTES_FOR_STRING(
                          length, static_cast<std::int32_t>(ucnv_getMaxCharSize(icu.get())))),
                      '\0');
    UErrorCode status = U_ZERO_ERROR;
    const std::int32_t written = ucnv_fromUChars(icu.get(),
                                                 bytes.data(),
                                                 static_cast<std::int32_t>(bytes.size()),
                                                 text.data(),
                                                 length,
                                                 &status);
    bytes.resize(U_SUCCESS(status) != 0 ? static_cast<std::size_t>(written) : 0);
    return bytes;
}

int LegacyCodePageOf(std::string_view language)
{
    for (const LanguageCodePage& row : kLegacy)
        if (NamesLanguage(language, row.language))
            return row.codePage;
    return 1252;
}

} // namespace kivo
