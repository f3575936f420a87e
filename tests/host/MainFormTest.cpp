#include "host/MainForm.h"

#include "host/OwnLine.h"
#include "host/Pages.h"
#include "host/TabStrip.h"
#include "shell/contracts/base/IPluginWindow.h"
#include "shell/contracts/base/Property.h"
#include "shell/contracts/ui/SkinButton.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SkinWndManager.h"
#include "tests/host/ScriptedSignNetwork.h"

#include <gtest/gtest.h>

namespace kivo::host {
namespace {

// A page that writes down what happens to it.
class LoggingPage : public IPluginWindow {
public:
    LoggingPage(String name, String& log)
        : IPluginWindow(nullptr, nullptr)
        , name_(std::move(name))
        , log_(log)
    {
        SetPageTip(name_);
    }
    void ShowPage(int visible) override
    {
        SetVisible(visible);
        log_ += name_ + (visible != 0 ? u"+show " : u"-show ");
    }
    int CreatePage() override
    {
        log_ += name_ + u"+make ";
        return 1;
    }
    int ClosePage() override
    {
        log_ += name_ + u"-make ";
        return 1;
    }
    int GetPageWord() override { return 0; }

private:
    String name_;
    String& log_;
};

class PagesTest : public testing::Test {
protected:
    String TakeLog() { return std::exchange(log_, String()); }

    String log_;
    LoggingPage a_{u"a", log_};
    LoggingPage b_{u"b", log_};
    Pages pages_;
};

TEST_F(PagesTest, AreMadeOnceAndClosedOnce)
{
    pages_.AddPluginPage(&a_);
    pages_.AddPluginPage(&a_);
    pages_.AddPluginPage(nullptr);
    pages_.CreateAll();
    pages_.AddPluginPage(&b_);
    pages_.CreateAll();
    EXPECT_EQ(TakeLog(), u"a+make b+make ");
    pages_.CloseAll();
    pages_.CloseAll();
    pages_.RemovePluginPage(&a_);
    EXPECT_EQ(TakeLog(), u"a-make b-make ");
    EXPECT_EQ(pages_.GetAll(), std::vector<IPluginWindow*>{&b_});
}

TEST_F(PagesTest, OneIsInFront)
{
    pages_.AddPluginPage(&a_);
    pages_.ShowPluginPage(&a_);
    pages_.ShowPluginPage(&a_);
    pages_.ShowPluginPage(&b_); // Not in the list.
    EXPECT_EQ(TakeLog(), u"a+show ");
    pages_.AddPluginPage(&b_);
    pages_.ShowPluginPage(&b_);
    EXPECT_EQ(TakeLog(), u"a-show b+show ");
    pages_.ShowPluginPage(nullptr);
    EXPECT_EQ(TakeLog(), u"b-show ");
    EXPECT_EQ(pages_.IsPluginPageShown(&b_), 0);
    pages_.CreateAll();
    pages_.ShowPluginPage(&a_);
    TakeLog();
    pages_.RemovePluginPage(&a_); // It is closed first.
    EXPECT_EQ(TakeLog(), u"a-make ");
    EXPECT_EQ(pages_.IsPluginPageShown(&a_), 0);
}

class MainFormTest : public PagesTest {
protected:
    MainFormTest()
        : form_(contacts_, MakeCommands(), MakeContactCommands())
    {
        auto& skin = *ui::CSkinManager::GetInstance();
        EXPECT_EQ(skin.IncludeSkinBuildFile(KIVO_HOST_BUILD_FILE), 1);
        EXPECT_TRUE(form_.Open({}, {}));
        EXPECT_EQ(skin.TakeBuildFaults(), std::vector<String>());
        network_.SetListener(&contacts_);
        pages_.SetView(&form_);
    }
    ~MainFormTest() override
    {
        pages_.SetView(nullptr);
        ui::CSkinManager::GetInstance()->Clear();
    }

    MainForm::Commands MakeCommands()
    {
        MainForm::Commands commands;
        commands.quit = [this] { log_ += u"quit "; };
        commands.show = [this](IPluginWindow* page) { pages_.ShowPluginPage(page); };
        return commands;
    }
    static ContactCommands MakeContactCommands()
    {
        ContactCommands commands;
        commands.getSignPicture = [](const String& kind) { return kind + u".png"; };
        commands.getServer = [] { return String(u"example.org"); };
        commands.getNow = [] { return std::int64_t{0}; };
        return commands;
    }
    [[nodiscard]] String GetText(const char16_t* id) const
    {
        const ui::CSkinObject* const control = form_.FindControlRecusive(id);
        return control != nullptr ? control->GetText() : String(u"no such control");
    }
    [[nodiscard]] std::vector<ui::CSkinButton*> GetTabs() const
    {
        std::vector<ui::CSkinButton*> tabs;
        for (ui::CSkinObject* const control :
             form_.FindControlRecusive(u"TabPlace")->GetControls().front()->GetControls()) {
            if (auto* const tab = dynamic_cast<ui::CSkinButton*>(control))
                tabs.push_back(tab);
        }
        return tabs;
    }

    ScriptedSignNetwork network_;
    Contacts contacts_;
    MainForm form_;
};

TEST_F(MainFormTest, IsTheMainFormInItsUsualSizeAndAsksBeforeItCloses)
{
    EXPECT_EQ(ui::CSkinWndManager::GetInstance()->GetMainForm(), &form_);
    EXPECT_EQ(form_.GetWidth(), 340);
    EXPECT_EQ(form_.GetHeight(), 680);
    form_.WindowProc(ui::wndmessage::kClose, 0, 0);
    EXPECT_EQ(TakeLog(), u"quit ");
}

TEST_F(MainFormTest, TellsNameSignAndState)
{
    Property sign;
    const ui::CSkinObject* const picture = form_.FindControlRecusive(u"SignPicture");
    form_.SetOwnName(u"Mara Lindqvist");
    EXPECT_EQ(GetText(u"OwnName"), u"Mara Lindqvist");
    EXPECT_EQ(GetText(u"FaceLetters"), u"ML");
    EXPECT_EQ(GetText(u"OwnState"), u"STRID_KIVO_NOTSIGNEDIN");

    contacts_.OnSign(u"me", u"music", u"A tune", sign);
    contacts_.OnSign(u"somebody", u"video", u"Another", sign);
    EXPECT_EQ(GetText(u"OwnState"), u"A tune");
    EXPECT_EQ(picture->GetPicture(), u"music.png");
    EXPECT_TRUE(picture->IsSetVisible());

    contacts_.OnSignGone(u"somebody");
    EXPECT_EQ(GetText(u"OwnState"), u"A tune");
    contacts_.OnSignGone(u"me");
    EXPECT_EQ(GetText(u"OwnState"), u"STRID_KIVO_NOTSIGNEDIN");
    EXPECT_FALSE(picture->IsSetVisible());
}

TEST_F(MainFormTest, TabsBringTheirPagesToTheFront)
{
    const ui::CSkinObject& contacts = *form_.FindControlRecusive(u"ContactsPage");
    pages_.AddPluginPage(&a_);
    pages_.AddPluginPage(&b_);
    ASSERT_EQ(GetTabs().size(), 3U);
    for (const ui::CSkinButton* const tab : GetTabs())
        EXPECT_NE(tab->GetAccessibleName(), u"");
    GetTabs()[2]->OnPeerPressed();
    EXPECT_EQ(TakeLog(), u"b+show ");
    EXPECT_TRUE(b_.IsSetVisible());
    EXPECT_EQ(b_.GetWidth(), form_.GetWidth());
    EXPECT_TRUE(GetTabs()[2]->IsChecked());

    GetTabs()[0]->OnPeerPressed(); // The contacts.
    EXPECT_EQ(TakeLog(), u"b-show ");
    EXPECT_TRUE(contacts.IsSetVisible());
    EXPECT_FALSE(GetTabs()[2]->IsChecked());

    GetTabs()[2]->OnPeerPressed();
    pages_.RemovePluginPage(&b_); // Which leaves the contacts in front.
    EXPECT_EQ(GetTabs().size(), 2U);
    EXPECT_EQ(b_.GetParent(), nullptr);
    EXPECT_TRUE(contacts.IsSetVisible());
}

TEST(TabStrip, SharesTheWidthFromEitherSide)
{
    TabStrip tabs;
    tabs.SetPadding({12, 0, 12, 0});
    const int keys[] = {1, 2, 3};
    for (const int& key : keys)
        tabs.AddTab(&key, u"tab", u"");
    tabs.CalculateBounds({0, 0, 340, 36});
    for (const bool isRightToLeft : {false, true}) {
        ui::CSkinManager::GetInstance()->SetRightToLeft(isRightToLeft);
        tabs.RePositionSubControls();
        int end = 12 - 4; // Of the one before, from the side where writing begins.
        for (const ui::CSkinObject* const control : tabs.GetControls()) {
            if (tabs.FindKey(control) == nullptr)
                continue;
            const Rect place = control->GetBoundsRect();
            EXPECT_EQ(isRightToLeft ? 340 - place.right : place.left, end + 4);
            end = isRightToLeft ? 340 - place.left : place.right;
        }
        EXPECT_EQ(end, 340 - 12);
    }
    ui::CSkinManager::GetInstance()->SetRightToLeft(false);
    tabs.RemoveTab(&keys[1]);
    tabs.RemoveTab(&keys[1]);
    EXPECT_EQ(tabs.GetTabCount(), 2);
}

TEST(GetInitials, AreOneOrTwoWholeLetters)
{
    struct Row {
        const char16_t* name;
        const char16_t* initials;
    };
    const Row rows[] = {
        {u"root",                        u"R"   },
        {u"mara  lindqvist",             u"ML"  },
        {u"Jan van der Berg",            u"JB"  },
        {u"оксана гринчук", u"ОГ"},
        {u"林 小雨",                  u"林" },
        {u"𝒜lice b",                  u"𝒜"},
        {u"é ü",                       u"ÉÜ"},
        {u"",                            u""    },
        {u"  ",                          u""    },
    };
    for (const Row& row : rows)
        EXPECT_EQ(GetInitials(row.name), row.initials);
}

} // namespace
} // namespace kivo::host
