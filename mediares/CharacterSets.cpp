#include "mediares/CharacterSets.h"

#include <algorithm>
#include <iterator>

namespace kivo::tunehive {

namespace {

struct CharacterSet {
    std::string_view name;
    int codePage;
};

// By name, for the search.
constexpr CharacterSet kCharacterSets[] = {
    {"asmo-708",                708  },
    {"big5",                    950  },
    {"cp1025",                  21025},
    {"cp866",                   866  },
    {"cp875",                   875  },
    {"csiso2022jp",             50221},
    {"dos-720",                 720  },
    {"dos-862",                 862  },
    {"euc-cn",                  51936},
    {"euc-jp",                  51932},
    {"euc-kr",                  51949},
    {"gb18030",                 54936},
    {"gb2312",                  936  },
    {"gbk",                     936  },
    {"hz-gb-2312",              52936},
    {"ibm-thai",                20838},
    {"ibm00858",                858  },
    {"ibm00924",                20924},
    {"ibm01047",                1047 },
    {"ibm01140",                1140 },
    {"ibm01141",                1141 },
    {"ibm01142",                1142 },
    {"ibm01143",                1143 },
    {"ibm01144",                1144 },
    {"ibm01145",                1145 },
    {"ibm01146",                1146 },
    {"ibm01147",                1147 },
    {"ibm01148",                1148 },
    {"ibm01149",                1149 },
    {"ibm037",                  37   },
    {"ibm1026",                 1026 },
    {"ibm273",                  20273},
    {"ibm277",                  20277},
    {"ibm278",                  20278},
    {"ibm280",                  20280},
    {"ibm284",                  20284},
    {"ibm285",                  20285},
    {"ibm290",                  20290},
    {"ibm297",                  20297},
    {"ibm420",                  20420},
    {"ibm423",                  20423},
    {"ibm424",                  20424},
    {"ibm437",                  437  },
    {"ibm500",                  500  },
    {"ibm737",                  737  },
    {"ibm775",                  775  },
    {"ibm850",                  850  },
    {"ibm852",                  852  },
    {"ibm855",                  855  },
    {"ibm857",                  857  },
    {"ibm860",                  860  },
    {"ibm861",                  861  },
    {"ibm863",                  863  },
    {"ibm864",                  864  },
    {"ibm865",                  865  },
    {"ibm869",                  869  },
    {"ibm870",                  870  },
    {"ibm871",                  20871},
    {"ibm880",                  20880},
    {"ibm905",                  20905},
    {"iso-2022-cn",             50229},
    {"iso-2022-jp",             50222},
    {"iso-2022-kr",             50225},
    {"iso-8859-1",              28591},
    {"iso-8859-13",             28603},
    {"iso-8859-15",             28605},
    {"iso-8859-2",              28592},
    {"iso-8859-3",              28593},
    {"iso-8859-4",              28594},
    {"iso-8859-5",              28595},
    {"iso-8859-6",              28596},
    {"iso-8859-7",              28597},
    {"iso-8859-8",              28598},
    {"iso-8859-8-i",            38598},
    {"iso-8859-9",              28599},
    {"johab",                   1361 },
    {"koi8-r",                  20866},
    {"koi8-u",                  21866},
    {"ks_c_5601-1987",          949  },
    {"macintosh",               10000},
    {"shift_jis",               932  },
    {"unicodefffe",             1201 },
    {"us-ascii",                20127},
    {"utf-16",                  1200 },
    {"utf-32",                  12000},
    {"utf-32be",                12001},
    {"utf-7",                   65000},
    {"utf-8",                   65001},
    {"utf8",                    65001},
    {"windows-1250",            1250 },
    {"windows-1251",            1251 },
    {"windows-1252",            1252 },
    {"windows-1253",            1253 },
    {"windows-1254",            1254 },
    {"windows-1255",            1255 },
    {"windows-1256",            1256 },
    {"windows-1257",            1257 },
    {"windows-1258",            1258 },
    {"windows-874",             874  },
    {"x-chinese_cns",           20000},
    {"x-cp20001",               20001},
    {"x-cp20003",               20003},
    {"x-cp20004",               20004},
    {"x-cp20005",               20005},
    {"x-cp20261",               20261},
    {"x-cp20269",               20269},
    {"x-cp20936",               20936},
    {"x-cp20949",               20949},
    {"x-cp50227",               50227},
    {"x-ebcdic-koreanextended", 20833},
    {"x-europa",                29001},
    {"x-ia5",                   20105},
    {"x-ia5-german",            20106},
    {"x-ia5-norwegian",         20108},
    {"x-ia5-swedish",           20107},
    {"x-iscii-as",              57006},
    {"x-iscii-be",              57003},
    {"x-iscii-de",              57002},
    {"x-iscii-gu",              57010},
    {"x-iscii-ka",              57008},
    {"x-iscii-ma",              57009},
    {"x-iscii-or",              57007},
    {"x-iscii-pa",              57011},
    {"x-iscii-ta",              57004},
    {"x-iscii-te",              57005},
    {"x-mac-arabic",            10004},
    {"x-mac-ce",                10029},
    {"x-mac-chinesesimp",       10008},
    {"x-mac-chinesetrad",       10002},
    {"x-mac-croatian",          10082},
    {"x-mac-cyrillic",          10007},
    {"x-mac-greek",             10006},
    {"x-mac-hebrew",            10005},
    {"x-mac-icelandic",         10079},
    {"x-mac-japanese",          10001},
    {"x-mac-korean",            10003},
    {"x-mac-romanian",          10010},
    {"x-mac-thai",              10021},
    {"x-mac-turkish",           10081},
    {"x-mac-ukrainian",         10017},
    {"x_chinese-eten",          20002},
};

constexpr bool IsLess(const CharacterSet& set, std::string_view name)
{
    return set.name < name;
}

static_assert(std::is_sorted(std::begin(kCharacterSets),
                             std::end(kCharacterSets),
                             [](const CharacterSet& a, const CharacterSet& b) {
                                 return IsLess(a, b.name);
                             }));

} // namespace

int FindCodePage(std::string_view characterSet)
{
    std::string name(characterSet);
    for (char& c : name)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    const auto* const found =
        std::lower_bound(std::begin(kCharacterSets), std::end(kCharacterSets), name, IsLess);
    return found != std::end(kCharacterSets) && found->name == name ? found->codePage : 0;
}

} // namespace kivo::tunehive
