#include "mediares/CharacterSets.h"

#include <gtest/gtest.h>

namespace kivo::tunehive {
namespace {

struct SetCase {
    const char* name;
    int codePage;
};

// First and last of the table, the names that are easily taken for another number, and spellings.
constexpr SetCase kSetCases[] = {
    {"asmo-708",       708  },
    {"x_chinese-eten", 20002},
    {"utf-8",          65001},
    {"utf8",           65001},
    {"UTF-8",          65001},
    {"gb2312",         936  },
    {"GB2312",         936  },
    {"gbk",            936  },
    {"gb18030",        54936},
    {"big5",           950  },
    {"shift_jis",      932  },
    {"euc-jp",         51932},
    {"iso-2022-jp",    50222},
    {"csiso2022jp",    50221},
    {"ks_c_5601-1987", 949  },
    {"windows-1251",   1251 },
    {"koi8-u",         21866},
    {"iso-8859-8-i",   38598},
    {"x-iscii-pa",     57011},
    {"utf-7",          65000},
    {"no-such-set",    0    },
    {"utf-",           0    },
    {"",               0    },
};

TEST(CharacterSets, AreFoundByNameInAnyCase)
{
    for (const SetCase& row : kSetCases) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(FindCodePage(row.name), row.codePage);
    }
}

} // namespace
} // namespace kivo::tunehive
