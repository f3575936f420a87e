#include "shell/contracts/ui/SkinObject.h"

#include "shell/contracts/ui/SkinButton.h"
#include "shell/contracts/ui/SkinForm.h"
#include "shell/contracts/ui/SkinPanel.h"
#include "shell/contracts/ui/SkinWnd.h"

#include <gtest/gtest.h>

#include <functional>

namespace kivo::ui {
namespace {

// Notes who fired, and then does what the test says.
class Ear {
public:
    void Hear(CSkinObject* sender, void* /*data*/)
    {
        senders.push_back(sender);
        if (then)
            then();
    }
    EventDelegate Delegate() { return {this, &Ear::Hear}; }

    std::vector<CSkinObject*> senders;
    std::function<void()> then;
};

struct Tower { // A page with a strip with a button.
    CSkinPanel* page = new CSkinPanel;
    CSkinPanel* strip = new CSkinPanel;
    CSkinButton* button = new CSkinButton;

    Tower()
    {
        page->RegisterControl(strip);
        strip->RegisterControl(button);
        button->SetObjectID(u"Btn");
    }
};

TEST(Events, ReachTheObjectAndThenEachPanelAboveWithTheSenderUnchanged)
{
    Tower tower;
    Ear inner;
    Ear outer;
    tower.button->ListenEvent(kControlEvent, inner.Delegate());
    tower.page->ListenEvent(kControlEvent, outer.Delegate());
    tower.page->ListenEvent(kControlEvent, outer.Delegate());
    tower.page->ListenEvent(2, outer.Delegate());
    tower.button->OnPeerPressed();
    EXPECT_EQ(inner.senders, std::vector<CSkinObject*>{tower.button});
    EXPECT_EQ(outer.senders, std::vector<CSkinObject*>{tower.button});
    tower.page->RemoveListener(kControlEvent, outer.Delegate());
    tower.button->SetEnabled(0);
    tower.button->OnPeerPressed();
    EXPECT_EQ(inner.senders.size(), 1U);
    tower.page->Release();
}

TEST(Events, AfterAListenerThatDestroysTheSenderNoneIsTold)
{
    for (const bool above : {false, true}) {
        SCOPED_TRACE(above);
        Tower tower;
        Ear killer;
        Ear after;
        killer.then = [&tower] { tower.button->Release(); };
        CSkinObject* const listened = above ? tower.page : static_cast<CSkinObject*>(tower.button);
        listened->ListenEvent(kControlEvent, killer.Delegate());
        listened->ListenEvent(kControlEvent, after.Delegate());
        tower.strip->ListenEvent(kControlEvent, above ? EventDelegate() : after.Delegate());
        tower.button->FireEvent(kControlEvent, nullptr);
        EXPECT_TRUE(after.senders.empty());
        EXPECT_TRUE(tower.strip->GetControls().empty());
        tower.page->Release();
    }
}

TEST(Events, AListenerMayDestroyEverythingAboveTheSender)
{
    Tower tower;
    Ear killer;
    const LifeWatch life = tower.page->Watch();
    killer.then = [&tower] { tower.page->Release(); };
    tower.strip->ListenEvent(kControlEvent, killer.Delegate());
    tower.button->FireEvent(kControlEvent, nullptr);
    EXPECT_FALSE(life.IsAlive());
    EXPECT_EQ(killer.senders.size(), 1U);
}

TEST(Controls, AreFoundByIdAtAnyDepthAndShowWhenAllAboveDo)
{
    Tower tower;
    EXPECT_EQ(tower.page->FindControlRecusive(u"Btn"), tower.button);
    EXPECT_EQ(tower.page->FindControlRecusive(u"btn"), nullptr);
    EXPECT_EQ(tower.button->FindControlRecusive(u"Btn"), nullptr);
    tower.page->SetVisible(0);
    EXPECT_TRUE(tower.button->IsSetVisible());
    EXPECT_FALSE(tower.button->IsVisible());
    tower.page->Release();
}

TEST(Controls, AChildChangesParentsAndNeverHoldsItself)
{
    Tower tower;
    tower.strip->RegisterControl(tower.page);
    tower.strip->RegisterControl(tower.strip);
    tower.strip->RegisterControl(nullptr);
    EXPECT_EQ(tower.page->GetParent(), nullptr);
    tower.page->RegisterControl(tower.button);
    EXPECT_EQ(tower.button->GetParent(), tower.page);
    EXPECT_TRUE(tower.strip->GetControls().empty());
    tower.page->UnregisterControl(tower.button);
    tower.page->Release();
    EXPECT_EQ(tower.button->GetParent(), nullptr);
    tower.button->Release();
}

TEST(Controls, TheNameIsWhatIsSetElseTheTipElseTheText)
{
    CSkinButton button;
    button.SetText(u"Add");
    EXPECT_EQ(button.GetAccessibleName(), u"Add");
    button.SetTooltip(u"Add tracks");
    EXPECT_EQ(button.GetAccessibleName(), u"Add tracks");
    button.SetAccessibleName(u"Add music");
    EXPECT_EQ(button.GetAccessibleName(), u"Add music");
}

TEST(Controls, ARectangleInTheFormAddsUpWhatIsAboveButTheFormItself)
{
    CSkinForm form;
    form.Create(wndstyle::kPopup, u"F", u"", {500, 400, 900, 800}, nullptr, 0);
    auto* strip = new CSkinPanel;
    auto* button = new CSkinButton;
    form.RegisterControl(strip);
    strip->RegisterControl(button);
    strip->SetBounds(10, 20, 100, 50);
    button->SetBounds(3, 4, 30, 30);
    EXPECT_EQ(button->GetRectInForm(), (Rect{13, 24, 43, 54}));
    EXPECT_EQ(button->GetOwnerForm(), &form);
    CSkinWnd child;
    child.Create(wndstyle::kChild, u"W", u"", {}, &form, 0);
    EXPECT_EQ(child.GetOwnerForm(), &form);
}

TEST(Windows, AreMadeOnceAndHiddenUnlessTheyAreVisibleChildren)
{
    for (const unsigned style :
         {wndstyle::kChild | wndstyle::kVisible, wndstyle::kChild, 0x80CF0000U, 0x82000000U}) {
        SCOPED_TRACE(style);
        CSkinWnd window;
        EXPECT_EQ(window.Create(style, u"W", u"", {1, 2, 11, 22}, nullptr, 7), 1);
        EXPECT_EQ(window.Create(style, u"W", u"", {}, nullptr, 7), 0);
        EXPECT_EQ(window.IsWindowVisible(), style == (wndstyle::kChild | wndstyle::kVisible));
        EXPECT_EQ(window.GetWidth(), 10);
        window.DestroyWindow();
        EXPECT_FALSE(window.IsWindow());
        EXPECT_EQ(window.GetPeer(), nullptr);
    }
}

} // namespace
} // namespace kivo::ui
