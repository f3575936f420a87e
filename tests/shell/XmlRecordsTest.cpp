#include "shell/base/XmlRecords.h"

#include "shell/base/XmlRecordWriter.h"
#include "shell/contracts/common/Text.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>
#include <tinyxml.h>

#include <random>
#include <string>
#include <vector>

namespace kivo::tunehive {
namespace {

struct Outcome {
    XmlResult result = XmlResult::Failed;
    XmlProlog prolog;
    std::string records; // "name:value" of each, a comma behind each
};

Outcome Parse(const std::string& text)
{
    Outcome outcome;
    outcome.result =
        ParseXmlRecords(text, "Root", outcome.prolog, [&outcome](const XmlRecord& record) {
            outcome.records += std::string(record.name) + ':';
            outcome.records += GetAttribute(record, "v");
            outcome.records += ',';
        });
    return outcome;
}

const std::string kHead = "<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"no\" ?>\n";

struct BodyCase {
    const char* name;
    const char* body;
    const char* records;
};

constexpr BodyCase kBodies[] = {
    {"Records",                    "<a v=\"1\"/><b v='2' />",         "a:1,b:2,"       },
    {"AnAttributeInOtherLetters",  "<a V='1'/>",                      "a:1,"           },
    {"TheFirstOfTwoSpellings",     "<a V='1' v='2'/>",                "a:1,"           },
    {"TextAndCommentsBetween",     "x<!-- <a v='0'/> --><a v='1'/>y", "a:1,"           },
    {"NestedElementsAreNoRecords", "<a v='1'><b v='2'/></a>",         "a:1,"           },
    {"LineEndsInValues",           "<a v='1\r\n2\r3'/>",              "a:1\n2\n3,"     },
    {"NoBlankBetweenAttributes",   "<a w='0'v='1'/>",                 "a:1,"           },
    {"AnotherQuoteInside",         "<a v='\"/>\"'/>",                 "a:\"/>\","      },
    {"AQuoteBehindALeadByte",      "<a v=\"\xE4\"/><b v=\"2\"/>",     "a:\xE4,b:2,"    },
    {"ALoneSurrogateKeepsBytes",   "<a v=\"\xED\xB2\x80\"/>",         "a:\xED\xB2\x80,"},
    {"ACharacterByNumberInUtf8",   "<a v=\"&#x4E2D;&#x01;\"/>",       "a:中\x01,"     },
};

TEST(ParseXmlRecords, GivesTheElementsOfTheRoot)
{
    for (const BodyCase& row : kBodies) {
        SCOPED_TRACE(row.name);
        const Outcome outcome = Parse(kHead + "<Root>" + row.body + "</Root>");
        EXPECT_EQ(outcome.result, XmlResult::Read);
        EXPECT_EQ(outcome.records, row.records);
    }
}

struct ParseCase {
    const char* name;
    std::string text;
    XmlResult result;
};

const std::string kOne = "<Root><a v='1'/></Root>";
const std::string kZeroByteFirst("\0<Root/>", 8);
const std::string kZeroByteInside("<Root><a v='1'/>\0</Root>", 24);
const std::string kTooDeep = [] {
    std::string deep = "<Root>";
    for (int i = 0; i < 70; ++i)
        deep += "<a>";
    return deep;
}();

const ParseCase kParseCases[] = {
    {"One",                        kOne,                                XmlResult::Read  },
    {"TheFirstOfTwoRoots",         kOne + "<Root><a v='2'/></Root>",    XmlResult::Read  },
    {"TextBehindTheRoot",          kOne + " and more",                  XmlResult::Read  },
    {"AByteOrderMark",             "\xEF\xBB\xBF" + kHead + kOne,       XmlResult::Read  },
    {"BlanksBeforeTheDeclaration", "\n " + kHead + kOne,                XmlResult::Read  },
    {"NoBytes",                    "",                                  XmlResult::Empty },
    {"OnlyBlanks",                 "  \n",                              XmlResult::NoRoot},
    {"NoRoot",                     kHead + "<Other><a v='1'/></Other>", XmlResult::NoRoot},
    {"AZeroByteFirst",             kZeroByteFirst,                      XmlResult::NoRoot},
    {"ATagThatNeverEnds",          "<Root><a v='1'",                    XmlResult::Failed},
    {"AnEndTagInOtherLetters",     "<Root><a v='1'/></root>",           XmlResult::Failed},
    {"AnAttributeTwice",           "<Root><a v='1' v='1'/></Root>",     XmlResult::Failed},
    {"ANulEndsTheText",            kZeroByteInside,                     XmlResult::Failed},
    {"TooDeep",                    kTooDeep,                            XmlResult::Failed},
};

TEST(ParseXmlRecords, TellsWhatItMadeOfTheText)
{
    for (const ParseCase& row : kParseCases) {
        SCOPED_TRACE(row.name);
        const Outcome outcome = Parse(row.text);
        EXPECT_EQ(outcome.result, row.result);
        if (row.result == XmlResult::Read) {
            EXPECT_EQ(outcome.records, "a:1,");
        }
    }
}

struct PrologCase {
    const char* name;
    const char* text;
    bool isDeclared;
    const char* encoding;
};

constexpr PrologCase kPrologCases[] = {
    {"Declared",             "<?xml version='1.0' encoding='GB2312'?><Root/>", true,  "GB2312"},
    {"WithoutAnEncoding",    "<?xml version='1.0'?><Root/>",                   true,  ""      },
    {"InOtherLetters",       "<?XML encoding='utf-8'?><Root/>",                true,  "utf-8" },
    {"Undeclared",           "<Root/>",                                        false, ""      },
    {"BehindAComment",       "<!-- x --><?xml encoding='utf-8'?><Root/>",      false, ""      },
    {"BehindAByteOrderMark", "\xEF\xBB\xBF<?xml encoding='utf-8'?><Root/>",    true,  "utf-8" },
    {"AMarkIsNoDeclaration", "\xEF\xBB\xBF<Root/>",                            false, ""      },
};

TEST(XmlProlog, TheFirstNodeDecides)
{
    for (const PrologCase& row : kPrologCases) {
        SCOPED_TRACE(row.name);
        const Outcome outcome = Parse(row.text);
        EXPECT_EQ(outcome.result, XmlResult::Read);
        EXPECT_EQ(outcome.prolog.isDeclared, row.isDeclared);
        EXPECT_EQ(outcome.prolog.encoding, row.encoding);
    }
}

TEST(ReadXmlRecords, AMissingFileAndAFolderAreToldApart)
{
    const test::TempFolder folder;
    XmlProlog prolog;
    const auto ignore = [](const XmlRecord&) {};
    EXPECT_EQ(ReadXmlRecords(folder.GetPath("none"), "Root", prolog, ignore), XmlResult::Missing);
    EXPECT_EQ(ReadXmlRecords(folder.GetPath(), "Root", prolog, ignore), XmlResult::Failed);
}

// What TinyXML makes of the whole text as a tree, the words of XmlRecords.h applied by hand.
Outcome ParseAsTree(const std::string& text)
{
    Outcome outcome;
    TiXmlDocument document;
    document.Parse(text.c_str(), nullptr, TIXML_ENCODING_LEGACY);
    if (document.Error() && document.ErrorId() != TiXmlBase::TIXML_ERROR_DOCUMENT_EMPTY)
        return outcome;
    const TiXmlElement* root = document.FirstChildElement();
    while (root != nullptr && common::string_compare_no_case(root->ValueStr(), "Root") != 0)
        root = root->NextSiblingElement();
    outcome.result = root != nullptr ? XmlResult::Read : XmlResult::NoRoot;
    for (const auto* element = root != nullptr ? root->FirstChildElement() : nullptr;
         element != nullptr;
         element = element->NextSiblingElement()) {
        std::string value;
        for (const auto* attribute = element->FirstAttribute();
             attribute != nullptr && value.empty();
             attribute = attribute->Next())
            if (common::string_compare_no_case(attribute->NameTStr(), "v") == 0)
                value = attribute->ValueStr();
        outcome.records += element->ValueStr() + ':' + value + ',';
    }
    return outcome;
}

TEST(ParseXmlRecords, AgreesWithTheTreeOnDamagedTexts)
{
    const std::string whole = "<?xml version=\"1.0\" encoding=\"gbk\"?><!-- c -->\n<x/><Root a='1'>"
                              "<a v=\"&lt;1&amp;\"/>t<b v='2'><c/></b><![CDATA[<d>]]>"
                              "<g u='&apos;&quot;' v='&gt;&amp;lt;'/>"
                              "<e.1 x='0' v=\"3\" />\n<f\tv='4'/></Root>\n<y/>";
    std::mt19937 random(20060401);
    const auto pick = [&random](std::size_t below) { return random() % below; };
    const std::string_view signs = "<>/\"'=!-?[]&;# aRv";
    for (int round = 0; round < 20000; ++round) {
        std::string text = whole;
        for (std::size_t edits = 1 + pick(3); edits > 0; --edits) {
            const std::size_t at = pick(text.size());
            switch (pick(3)) {
            case 0: text[at] = signs[pick(signs.size())]; break;
            case 1: text.erase(at, 1 + pick(4)); break;
            default: text.insert(at, 1, signs[pick(signs.size())]); break;
            }
        }
        const Outcome tree = ParseAsTree(text);
        const Outcome records = Parse(text);
        // Of the two that give nothing either will do.
        ASSERT_EQ(records.result == XmlResult::Read, tree.result == XmlResult::Read) << text;
        if (tree.result == XmlResult::Read) {
            ASSERT_EQ(records.records, tree.records) << text;
        }
    }
}

TEST(XmlRecordWriter, WritesTheBytesThatADocumentSaves)
{
    std::vector<std::string> values = {
        "", "plain", " both ends ", "<&>'", "two \" and '", "\x01\t\n\r\x1F", "中", "\xED\xB2\x80"};
    // Each byte but the zero one, at some place of a word of eight or behind it.
    for (int byte = 1; byte < 256; ++byte) {
        values.emplace_back(19, 'x');
        values.back()[static_cast<std::size_t>(byte % 19)] = static_cast<char>(byte);
    }
    for (const std::size_t count : {std::size_t{0}, std::size_t{1}, values.size()}) {
        SCOPED_TRACE(count);
        const test::TempFolder folder;
        TiXmlDocument document;
        document.LinkEndChild(new TiXmlDeclaration("1.0", "utf-8", "no"));
        auto* const root = new TiXmlElement("Root");
        document.LinkEndChild(root);
        XmlRecordWriter writer(folder.GetPath("ours"), "Root");
        for (std::size_t i = 0; i < count; ++i) {
            const std::string& other = values[values.size() - 1 - i];
            TiXmlElement record("Record");
            record.SetAttribute("first", values[i]);
            record.SetAttribute("second", other);
            writer.Write("Record",
                         {
                             {"first",  values[i]},
                             {"second", other    }
            });
            root->InsertEndChild(record);
        }
        ASSERT_TRUE(writer.Commit());
        ASSERT_TRUE(document.SaveFile((folder.GetNative() / "theirs").string()));
        EXPECT_EQ(folder.Read("ours"), folder.Read("theirs"));
    }
}

TEST(XmlRecordWriter, WhatItWritesIsReadBack)
{
    const test::TempFolder folder;
    const std::string value = "\x01\t\n \"'<&> 中 \xED\xB2\x80 ";
    XmlRecordWriter writer(folder.GetPath("file"), "Root");
    constexpr int kRecords = 50000; // More than one block of the writer.
    writer.Write("r",
                 {
                     {"v", std::string_view()}
    });
    for (int i = 0; i < kRecords; ++i)
        writer.Write("r",
                     {
                         {"v", value}
        });
    ASSERT_TRUE(writer.Commit());

    XmlProlog prolog;
    int count = 0;
    int empty = 0;
    const XmlResult result =
        ReadXmlRecords(folder.GetPath("file"), "Root", prolog, [&](const XmlRecord& record) {
            count += GetAttribute(record, "v") == value ? 1 : 0;
            empty += GetAttribute(record, "v").empty() ? 1 : 0;
        });
    EXPECT_EQ(result, XmlResult::Read);
    EXPECT_EQ(count, kRecords);
    EXPECT_EQ(empty, 1);
}

} // namespace
} // namespace kivo::tunehive
