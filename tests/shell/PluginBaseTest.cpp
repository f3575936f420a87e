#include "shell/contracts/base/IPlugin.h"
#include "shell/contracts/ui/SkinManager.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace kivo {
namespace {

// A plug-in that leaves everything to the base.
class BarePlugin : public IPlugin {
public:
    BarePlugin() = default;
    BarePlugin(const String& skinFile, const String& buildFile)
    {
        displayName_ = u"name";
        pluginId_ = 12;
        pluginKey_[0] = 'k';
        skinFile_ = skinFile;
        buildFile_ = buildFile;
    }
    int GetHostWord1() override { return 0; }
    int GetHostWord2() override { return 0; }
    int GetHostWord3() override { return 0; }
    int GetHostWord4() override { return 0; }
};

TEST(PluginBase, ComesUpGoesDownAndOffersNothing)
{
    BarePlugin plugin;
    EXPECT_TRUE(std::all_of(
        plugin.GetPluginKey(), plugin.GetPluginKey() + 129, [](char c) { return c == '\0'; }));
    EXPECT_EQ(plugin.IsLoaded(), 0);
    EXPECT_EQ(plugin.OnLoad(nullptr, nullptr), 1);
    EXPECT_EQ(plugin.IsLoaded(), 1);
    EXPECT_EQ(plugin.OnUnLoad(), 1);
    EXPECT_EQ(plugin.IsLoaded(), 0);
    String reason;
    Property record;
    EXPECT_EQ(plugin.OnRemove(), 1);
    EXPECT_EQ(plugin.OnQueryFunMenu({}), nullptr);
    EXPECT_EQ(plugin.OnQueryWorkMenu({}), nullptr);
    EXPECT_EQ(plugin.GetStateSignIconPath(u"music"), u"");
    EXPECT_EQ(plugin.OnQueryMainListSearchResult(1, u"x"), nullptr);
    EXPECT_FALSE(plugin.IsCanReceiveMsg(1));
    EXPECT_FALSE(plugin.BuildMsgLogTreeNode(nullptr));
    EXPECT_EQ(plugin.GetPluginMenuType(), 0);
    EXPECT_EQ(plugin.QueryUnInstallEnabled(reason), 1);
}

TEST(PluginBase, ACopyHasEveryField)
{
    BarePlugin plugin(u"/skin", u"/build");
    plugin.OnLoad(nullptr, nullptr);
    BarePlugin copy(plugin);
    BarePlugin assigned;
    assigned = plugin;
    for (BarePlugin* each : {&copy, &assigned}) {
        EXPECT_EQ(each->GetDisplayName(), u"name");
        EXPECT_EQ(each->GetPluginId(), 12U);
        EXPECT_EQ(each->GetPluginKey()[0], 'k');
        EXPECT_EQ(each->GetBuildFile(), u"/build");
        EXPECT_EQ(each->IsLoaded(), 1);
    }
}

struct SkinCase {
    const char* name;
    const char* skin; // Null: no such file.
    const char* build;
    int result;
};

constexpr SkinCase kSkinCases[] = {
    {"Both",             "<skin/>", "<build/>", 0},
    {"NoSkin",           nullptr,   "<build/>", 2},
    {"ABrokenSkin",      "<skin",   "<build/>", 2},
    {"NoBuildFile",      "<skin/>", nullptr,    1},
    {"ABrokenBuildFile", "<skin/>", "<build",   1},
};

TEST(PluginBase, SkinAndBuildFile)
{
    for (const SkinCase& row : kSkinCases) {
        SCOPED_TRACE(row.name);
        const test::TempFolder folder;
        if (row.skin != nullptr)
            folder.Write("skin.xml", row.skin);
        if (row.build != nullptr)
            folder.Write("build.xml", row.build);
        BarePlugin plugin(folder.GetPath("skin.xml"), folder.GetPath("build.xml"));
        EXPECT_EQ(plugin.ResetSkinFile(), row.result);
        ui::CSkinManager::GetInstance()->Clear();
    }
    EXPECT_EQ(BarePlugin(u"", u"").ResetSkinFile(), 2);
}

} // namespace
} // namespace kivo
