#include "shell/contracts/common/Xml.h"

#include "shell/contracts/common/Text.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <tinyxml.h>

namespace kivo::common {
namespace {

using namespace std::string_literals; // The rows hold NULs.

class Xml : public testing::Test {
protected:
    Xml() { SetLegacyCodePage(1251); }
    ~Xml() override { SetLegacyCodePage(before_); }

    bool Load(std::string_view text)
    {
        folder_.Write("list.asx", text);
        return document_.LoadFile(folder_.GetPath("list.asx"));
    }
    [[nodiscard]] String TextAt(const String& path) const
    {
        return CXmlDocument::GetNodeText(document_.PathWalk(path));
    }
    [[nodiscard]] String AttributeAt(const String& path, const String& name) const
    {
        return CXmlDocument::GetNodeAttribute(document_.PathWalk(path), name);
    }

    int before_ = GetLegacyCodePage();
    test::TempFolder folder_;
    CXmlDocument document_;
};

TEST_F(Xml, ReadsAPlaylistAsTheyAreWritten)
{
    ASSERT_TRUE(
        Load("<ASX Version = \"3.0\">\n<!-- <b> & -->\n<Entry><TITLE>Rock &amp; Roll</Title>"
             "<Ref HREF=\"http://a/?x=1&y=2&amp;z=&#x41;&#66;&unknown;\"/>"
             "<Author><![CDATA[A & <B>]]> and C</author></entry></asx>"));
    EXPECT_EQ(TextAt(u"ASX/Entry/Title"), u"Rock & Roll");
    EXPECT_EQ(TextAt(u"asx/ENTRY/author"), u"A & <B>and C");
    EXPECT_EQ(AttributeAt(u"asx/entry/ref", u"href"), u"http://a/?x=1&y=2&z=AB&unknown;");
    EXPECT_EQ(AttributeAt(u"ASX", u"version"), u"3.0");
    EXPECT_EQ(AttributeAt(u"ASX", u"missing"), u"");
    EXPECT_EQ(document_.PathWalk(u"ASX/None/Entry"), nullptr);
    EXPECT_EQ(document_.PathWalk(u""), nullptr);
    EXPECT_EQ(CXmlDocument::GetNodeText(nullptr), u"");
    EXPECT_EQ(CXmlDocument::GetNodeAttribute(nullptr, u"a"), u"");
    const TiXmlNode* text = document_.PathWalk(u"ASX/Entry/Title")->FirstChild();
    EXPECT_EQ(CXmlDocument::GetNodeText(text), u"Rock & Roll");
    EXPECT_EQ(CXmlDocument::GetNodeAttribute(text, u"a"), u"");
}

TEST_F(Xml, BytesAreUtf8WhereTheFileSaysSoAndTheSystemsOwnElsewhere)
{
    struct Row {
        const char* name;
        std::string_view text;
        std::u16string_view title;
    };
    constexpr Row kRows[] = {
        {"Declared",             "<?xml version='1.0' encoding='UTF-8'?><a t='é'>é</a>", u"é"      },
        {"Marked",               "\xEF\xBB\xBF<a t='é'>é</a>",                           u"é"      },
        {"ByContent",            "<a t='Мир'>Мир</a>",                               u"Мир"  },
        {"Legacy",               "<a t='\xCC\xE8\xF0'>\xCC\xE8\xF0</a>",                   u"Мир"  },
        {"LegacyBeforeTheQuote", "<a t='\xCC\xE8\xF0\xEE' b='x'>\xCC\xE8\xF0\xEE</a>",     u"Миро"},
        {"DeclaredButBroken",
         "<?xml version='1.0' encoding='UTF-8'?><a t='\xC3' b='x'>\xC3</a>",               u"\uFFFD"  },
        {"NumbersBeyondAByte",   "<a t='&#8217;'>&#x2019;</a>",                            u"\u2019"  },
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.name);
        ASSERT_TRUE(Load(row.text));
        EXPECT_EQ(TextAt(u"a"), row.title);
        EXPECT_EQ(AttributeAt(u"a", u"t"), row.title);
    }
}

TEST_F(Xml, WhatCantBeReadIsRefused)
{
    std::string deep;
    for (int i = 0; i < 40000; ++i)
        deep += "<a>";
    std::string wide = "<a";
    for (int i = 0; i < 300; ++i)
        wide += " a" + std::to_string(i) + "='x'";
    struct Row {
        const char* name;
        std::string text;
    };
    const Row rows[] = {
        {"NoXml",                 "[Reference]\r\nRef1=http://a\r\n"     },
        {"Media",                 "\x30\x26\xB2\x75\x8E\x66\xCF\x11\0\0"s},
        {"Unclosed",              "<asx><ref href='a'></asx>"            },
        {"NoRoot",                "<?xml version='1.0'?><!-- nothing -->"},
        {"AttributeWithoutValue", "<asx a></asx>"                        },
        {"NulInside",             "<a>\0</a>"s                           },
        {"TooDeep",               deep                                   },
        {"TooManyAttributes",     wide + "/>"                            },
        {"AmpersandAtTheEnd",     "<a>&"                                 },
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        ASSERT_TRUE(Load("<a/>"));
        EXPECT_FALSE(Load(row.text));
        EXPECT_EQ(document_.PathWalk(u"a"), nullptr); // Nothing of the file before is left.
    }
    EXPECT_FALSE(document_.LoadFile(folder_.GetPath("missing.asx")));
}

TEST_F(Xml, LongRunsOfAmpersandsAndTagsAreQuick)
{
    ASSERT_TRUE(Load("<a>" + std::string(1 << 20, '&') + "</a>"));
    EXPECT_EQ(TextAt(u"a").size(), std::size_t{1} << 20);
    EXPECT_FALSE(Load("<a>" + std::string(1 << 20, '<')));
    std::string many;
    for (int i = 0; i < 100000; ++i)
        many += "<B/>";
    EXPECT_TRUE(Load("<a>" + many + "</a>"));
    EXPECT_FALSE(Load(std::string((16 << 20) + 1, ' ') + "<a/>"));
}

} // namespace
} // namespace kivo::common
