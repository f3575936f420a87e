#include "host/UserLanguage.h"

#include <gtest/gtest.h>

namespace kivo::host {
namespace {

using Names = std::vector<std::string>;

struct LocaleCase {
    const char* name;
    const char* locale;
    Names languages;
};

TEST(GetLanguages, FindsTheNamesTheBestFirst)
{
    const LocaleCase cases[] = {
        {"nothing set",           "C",              {"en"}                              },
        {"C with a coding",       "C.UTF-8",        {"en"}                              },
        {"a country",             "de_AT.UTF-8",    {"de_AT", "de", "en"}               },
        {"a variant",             "sr_RS@latin",    {"sr_RS", "sr", "en"}               },
        {"Chinese of China",      "zh_CN.GB18030",  {"zh_CN", "zh", "en"}               },
        {"Chinese of Taiwan",     "zh_TW",          {"zh_TW", "zh", "en"}               },
        {"several",               "ja:de_DE:en_US", {"ja", "de_DE", "de", "en_US", "en"}},
        {"a path is no language", "../../etc:ko",   {"ko", "en"}                        },
        {"nothing but rubbish",   "1234",           {"en"}                              },
    };
    for (const LocaleCase& row : cases) {
        SCOPED_TRACE(row.name);
        const Names languages = GetLanguages(row.locale);
        EXPECT_EQ(languages, row.languages);
    }
}

class EnvironmentLocaleTest : public testing::Test {
protected:
    static void Set(const char* name, const char* value)
    {
        setenv(name, value, 1); // NOLINT(concurrency-mt-unsafe): one thread
    }
    void SetUp() override
    {
        for (const char* const name : {"LC_ALL", "LC_MESSAGES", "LANG", "LANGUAGE"})
            Set(name, "");
    }
};

TEST_F(EnvironmentLocaleTest, FollowsTheOrderOfTheVariables)
{
    EXPECT_EQ(GetEnvironmentLocale(), "C");
    Set("LANG", "de_DE.UTF-8");
    EXPECT_EQ(GetEnvironmentLocale(), "de_DE.UTF-8");
    Set("LC_MESSAGES", "ja_JP.UTF-8");
    EXPECT_EQ(GetEnvironmentLocale(), "ja_JP.UTF-8");
    Set("LANGUAGE", "ko:zh");
    EXPECT_EQ(GetEnvironmentLocale(), "ko:zh:ja_JP.UTF-8");
    Set("LC_ALL", "C.UTF-8");
    EXPECT_EQ(GetEnvironmentLocale(), "C");
}

} // namespace
} // namespace kivo::host
