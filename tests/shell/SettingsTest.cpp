#include "shell/base/Settings.h"

#include "tests/support/FakeHost.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <string>

namespace kivo::tunehive {
namespace {

const std::string kHead = "<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"no\" ?>\n";

std::string ConfigText(const char* mode, const char* path, const char* volume)
{
    return kHead + "<TuneHive>\n    <PlayMode mode=\"" + mode + "\" />\n    <OpenPath path=\"" +
           path + "\" />\n    <Volume vol=\"" + volume + "\" />\n</TuneHive>\n";
}

class SettingsTest : public testing::Test {
protected:
    SettingsTest()
    {
        host_.directory = folder_.GetPath();
        Reset();
    }
    ~SettingsTest() override
    {
        // Whatever a test left open, the next one starts unread.
        host_.directory.clear();
        WriteConfig();
    }
    static void Reset()
    {
        SetPlayMode(2);
        SetOpenPath({});
        SetRememberedVolume(60);
    }
    static void ExpectValues(int mode, const String& path, int volume)
    {
        EXPECT_EQ(GetPlayMode(), mode);
        EXPECT_EQ(GetOpenPath(), path);
        EXPECT_EQ(GetRememberedVolume(), volume);
    }

    test::TempFolder folder_;
    test::FakeHost host_;
};

TEST_F(SettingsTest, AFirstRunKeepsTheDefaultsAndWritesThem)
{
    ReadConfig();
    ExpectValues(2, u"", 60);
    EXPECT_TRUE(folder_.List().empty());
    WriteConfig();
    EXPECT_EQ(folder_.List(), std::vector<std::string>{"tunehive/config.xml"});
    EXPECT_EQ(folder_.Read("tunehive/config.xml"), ConfigText("2", "", "60"));
}

TEST_F(SettingsTest, ThePathSurvivesWriteAndRead)
{
    const String path = u"/música/中文/\U0001F3B5 & \"<'>\xDC80";
    ReadConfig();
    SetPlayMode(4);
    SetOpenPath(path);
    SetRememberedVolume(7);
    WriteConfig();
    SetPlayMode(0);
    SetOpenPath({});
    SetRememberedVolume(0);
    ReadConfig();
    ExpectValues(4, path, 7);
    EXPECT_TRUE(folder_.Has("tunehive/config.xml")); // A declared file stays after the read.
}

struct ReadCase {
    const char* name;
    std::string text;
    const char16_t* path;
    int mode;
    int volume;
};

const std::string kAll = ConfigText("1", "/a", "5");
const std::string kNoNumbers = ConfigText("x", "/a", "y");
const std::string kFarNumbers = ConfigText("99", "/a", "-7");
const std::string kEmptyValues = ConfigText("", "", "");

const ReadCase kReadCases[] = {
    {"AllThree",                 kAll,                                                u"/a",  1,  5 },
    {"NoNumberIsZero",           kNoNumbers,                                          u"/a",  0,  0 },
    {"NumbersHaveNoRange",       kFarNumbers,                                         u"/a",  99, -7},
    {"EmptyValuesChangeNothing", kEmptyValues,                                        u"",    2,  60},
    {"MissingElements",          kHead + "<TuneHive><Volume vol='5'/></TuneHive>",    u"",    2,  5 },
    {"NamesInOtherLetters",      kHead + "<TUNEHIVE><playmode MODE='3'/></TUNEHIVE>", u"",    3,  60},
    {"TheFirstElementOfAName",
     kHead + "<TuneHive><PlayMode/><PlayMode mode='3'/></TuneHive>",
     u"",                                                                                     2,
     60                                                                                             },
    {"NoRoot",                   kHead + "<Other><PlayMode mode='3'/></Other>",       u"",    2,  60},
    {"OlderForm",
     "<TuneHive><PlayMode mode='3'/><OpenPath path='/\xE9'/></TuneHive>",             u"/é",
     3,                                                                                           60},
};

TEST_F(SettingsTest, AreReadOneByOne)
{
    for (const auto& [name, text, path, mode, volume] : kReadCases) {
        SCOPED_TRACE(name);
        Reset();
        folder_.Write("tunehive/config.xml", text);
        ReadConfig();
        ExpectValues(mode, path, volume);
    }
}

TEST_F(SettingsTest, AnOlderFileIsAsideUntilTheNextOneIsWritten)
{
    folder_.Write("tunehive/config.xml", "<TuneHive><Volume vol='5'/></TuneHive>");
    ReadConfig();
    EXPECT_EQ(folder_.List(), std::vector<std::string>{"tunehive/config.xml.older"});
    WriteConfig();
    EXPECT_EQ(folder_.List(), std::vector<std::string>{"tunehive/config.xml"});
    EXPECT_EQ(folder_.Read("tunehive/config.xml"), ConfigText("2", "", "5"));
}

TEST_F(SettingsTest, AFileThatGaveNothingIsKeptBeforeTheWrite)
{
    struct Row {
        std::string text;
        bool staysAfterTheRead;
    };
    const Row rows[] = {
        {kHead + "<TuneHive><PlayMode mode='3'/>", true },
        {"<Else/>",                                false}, // An older form goes with its read.
    };
    for (std::size_t i = 0; i < std::size(rows); ++i) {
        SCOPED_TRACE(rows[i].text);
        folder_.Write("tunehive/config.xml", rows[i].text);
        ReadConfig();
        EXPECT_EQ(folder_.Has("tunehive/config.xml"), rows[i].staysAfterTheRead);
        WriteConfig();
        const std::string kept = "tunehive/config.xml.broken-" + std::to_string(i + 1);
        EXPECT_EQ(folder_.Read(kept), rows[i].text);
        EXPECT_EQ(folder_.Read("tunehive/config.xml"), ConfigText("2", "", "60"));
    }
}

TEST_F(SettingsTest, NothingIsWrittenWithoutARead)
{
    const std::string text = ConfigText("4", "/mine", "11");
    folder_.Write("tunehive/config.xml", text);
    WriteConfig(); // As after a load that failed before it got to the settings.
    EXPECT_EQ(folder_.Read("tunehive/config.xml"), text);
    ReadConfig();
    WriteConfig();
    SetPlayMode(0);
    WriteConfig(); // The read counts once.
    EXPECT_EQ(folder_.Read("tunehive/config.xml"), text);
}

TEST_F(SettingsTest, AHostWithoutADirectoryChangesNothing)
{
    folder_.Write("tunehive/config.xml", ConfigText("4", "/mine", "11"));
    host_.directory.clear();
    ReadConfig();
    ExpectValues(2, u"", 60);
    host_.directory = folder_.GetPath();
    WriteConfig();
    EXPECT_EQ(folder_.Read("tunehive/config.xml"), ConfigText("4", "/mine", "11"));
}

} // namespace
} // namespace kivo::tunehive
