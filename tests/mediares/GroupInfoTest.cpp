#include "mediares/GroupInfo.h"

#include "shell/contracts/base/Beyond.h"
#include "tests/mediares/GroupNames.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace kivo::tunehive {
namespace {

const std::string kHead = "<?xml version=\"1.0\" encoding=\"utf-8\" standalone=\"no\" ?>\n";

// The file of such names: "userb=Mix userc=Two".
std::string NamesText(const std::string& entries)
{
    std::istringstream words(entries);
    std::string text;
    for (std::string id, name; std::getline(words, id, '='); words >> std::ws) {
        std::getline(words, name, ' ');
        text.append("    <Group id=\"").append(id).append("\" name=\"").append(name);
        text += "\" />\n";
    }
    return kHead + (text.empty() ? "<Groups />\n" : "<Groups>\n" + text + "</Groups>\n");
}

class GroupInfoTest : public testing::Test {
protected:
    ~GroupInfoTest() override { SetBeyond(/*on=*/false); }
    void Load(const std::string& text)
    {
        folder_.Write("ginfo.xml", text);
        names_.Load(folder_.GetPath());
    }
    [[nodiscard]] std::string ReadFile() const { return folder_.Read("ginfo.xml"); }

    GroupNames language_;
    test::TempFolder folder_;
    CGroupInfo names_;
};

TEST_F(GroupInfoTest, EachChangeOfANameIsOnDiskAtOnce)
{
    names_.Load(folder_.GetPath());
    EXPECT_TRUE(folder_.List().empty());
    EXPECT_EQ(names_.SetName(u"userc", u"Zwölf"), 1);
    EXPECT_EQ(names_.SetName(u"userb", u"Elf"), 1);
    EXPECT_EQ(ReadFile(), NamesText("userb=Elf userc=Zwölf"));
    EXPECT_EQ(names_.SetName(u"userb", u"Neu"), 1);
    EXPECT_EQ(names_.Remove(u"userc"), 1);
    EXPECT_EQ(ReadFile(), NamesText("userb=Neu"));
    EXPECT_EQ(names_.Remove(u"userc"), 0);

    CGroupInfo again;
    again.Load(folder_.GetPath());
    EXPECT_EQ(again.GetName(u"userb"), u"Neu");
}

TEST_F(GroupInfoTest, ANameMustBeFreeAndNoFixedGroups)
{
    names_.Load(folder_.GetPath());
    names_.SetName(u"userb", u"Mix");
    for (const char16_t* taken : {u"Mix", u"Playing", u"Mine", u"Hot"}) {
        EXPECT_EQ(names_.IsNameValid(taken), 0);
        EXPECT_EQ(names_.SetName(u"userc", taken), 0);
    }
    EXPECT_EQ(names_.SetName(u"userb", u"Mix"), 0); // Its own counts as taken.
    EXPECT_EQ(names_.SetName(u"userc", u"mix"), 1);
    EXPECT_EQ(names_.HasName(u"mix"), 1);
    EXPECT_EQ(names_.HasName(u"MIX"), 0);
}

TEST_F(GroupInfoTest, DisplayNames)
{
    names_.Load(folder_.GetPath());
    names_.SetName(u"userb", u"Mix");
    EXPECT_EQ(names_.GetDisplayName(u"mine"), u"Mine");
    EXPECT_EQ(names_.GetDisplayName(u"userb"), u"Mix");
    EXPECT_EQ(names_.GetDisplayName(u"userc"), u"userc"); // A group without a name shows its id.
    EXPECT_EQ(names_.GetDisplayName(u"user"), u"");
    EXPECT_EQ(names_.GetDisplayName(u"else"), u"");
}

TEST_F(GroupInfoTest, ANewNameTakesTheFirstFreeNumber)
{
    names_.Load(folder_.GetPath());
    EXPECT_EQ(names_.GetNewName(), u"Group 1");
    names_.SetName(u"userb", u"Group 1");
    names_.SetName(u"userc", u"Group 2");
    EXPECT_EQ(names_.GetNewName(), u"Group 3");
    names_.Remove(u"userb");
    EXPECT_EQ(names_.GetNewName(), u"Group 1");
}

TEST_F(GroupInfoTest, OnlyUserGroupsWithANameAreTakenOver)
{
    Load(NamesText("mine=X userb= userA=Y =Z userc=Kept"));
    EXPECT_EQ(names_.GetName(u"mine"), u"mine");
    EXPECT_EQ(names_.GetName(u"userb"), u"userb");
    EXPECT_EQ(names_.GetName(u"userc"), u"Kept");
    EXPECT_EQ(ReadFile(),
              NamesText("userc=Kept")); // What was skipped is gone.
}

const char* const kWithRefused = "userb=Mix userc=Mix userd=Hot usere=E";

TEST_F(GroupInfoTest, ANameThatIsRefusedShowsTheId)
{
    Load(NamesText(kWithRefused));
    EXPECT_EQ(names_.GetName(u"userb"), u"Mix");
    EXPECT_EQ(names_.GetName(u"userc"), u"userc");
    EXPECT_EQ(names_.GetName(u"userd"), u"userd");
    EXPECT_EQ(ReadFile(), NamesText("userb=Mix usere=E"));
}

TEST_F(GroupInfoTest, BeyondItARefusedNameIsKeptUntilItsGroupChanges)
{
    SetBeyond(/*on=*/true);
    Load(NamesText(kWithRefused));
    EXPECT_EQ(names_.GetName(u"userc"), u"userc");
    EXPECT_EQ(ReadFile(), NamesText(kWithRefused));
    names_.SetName(u"userc", u"New");
    EXPECT_EQ(ReadFile(), NamesText("userb=Mix userc=New userd=Hot usere=E"));
    EXPECT_EQ(names_.Remove(u"userd"), 1);
    EXPECT_EQ(ReadFile(), NamesText("userb=Mix userc=New usere=E"));
}

TEST_F(GroupInfoTest, AReadThatChangesNothingWritesNothing)
{
    const std::string text = NamesText("userb=Mix userc=Two");
    folder_.Write("ginfo.xml", text);
    const auto before = std::filesystem::last_write_time(folder_.GetNative() / "ginfo.xml");
    names_.Load(folder_.GetPath());
    EXPECT_EQ(std::filesystem::last_write_time(folder_.GetNative() / "ginfo.xml"), before);
}

TEST_F(GroupInfoTest, ADeclaredFileIsUtf8WhateverItSays)
{
    Load("<?xml version=\"1.0\" encoding=\"gbk\"?><groups><GROUP NAME=\"中\" "
         "Id=\"userb\"/></groups>");
    EXPECT_EQ(names_.GetName(u"userb"), u"中");
}

TEST_F(GroupInfoTest, AnOlderFileIsAsideUntilTheNextSave)
{
    Load("<Groups><Group id='userb' name='\xE9'/></Groups>");
    EXPECT_EQ(names_.GetName(u"userb"), u"é"); // The system's own code page, not GBK.
    EXPECT_EQ(folder_.List(), std::vector<std::string>{"ginfo.xml.older"});
    EXPECT_EQ(names_.Save(), 1);
    EXPECT_EQ(folder_.List(), std::vector<std::string>{"ginfo.xml"});
    EXPECT_EQ(ReadFile(), NamesText("userb=é"));
}

TEST_F(GroupInfoTest, AFileThatGaveNothingIsKeptBeforeTheSave)
{
    const std::string text = kHead + "<Groups><Group id='userb' name='Mix'>";
    Load(text);
    EXPECT_EQ(names_.GetName(u"userb"), u"userb");
    EXPECT_EQ(ReadFile(), text);
    EXPECT_EQ(names_.Save(), 1);
    EXPECT_EQ(ReadFile(), NamesText(""));
    EXPECT_EQ(folder_.Read("ginfo.xml.broken-1"), text);
}

TEST_F(GroupInfoTest, AFailedWriteIsToldAndTheNameStays)
{
    names_.Load(folder_.GetPath() + u"missing/");
    EXPECT_EQ(names_.SetName(u"userb", u"Mix"), 0);
    EXPECT_EQ(names_.GetName(u"userb"), u"Mix");
}

} // namespace
} // namespace kivo::tunehive
