#include "platform/ui/NullPeers.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/ui/SkinButton.h"
#include "shell/contracts/ui/SkinForm.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/SkinPanel.h"
#include "shell/contracts/ui/SkinWebBrowser.h"
#include "shell/contracts/ui/SkinWndManager.h"
#include "shell/contracts/ui/SWColorEdit.h"

#include <gtest/gtest.h>

namespace kivo::ui {
namespace {

constexpr char kBuild[] = R"(<build>
  <form id="Ask" width="200" height="10" padding="10">
    <edit id="Field" dock="top" height="34"/>
    <button id="BtnOK" dock="bottom" height="32" text="OK"/>
  </form>
</build>)";

class AskForm : public CSkinForm {
public:
    explicit AskForm(CWnd* parent = nullptr)
    {
        SetObjectID(u"Ask");
        ListenEvent(kControlEvent, EventDelegate(this, &AskForm::OnControl));
        created = Create(wndstyle::kPopup, u"AskForm", u"Ask", {}, parent, 0);
    }

    int OnBuildControlAfter() override
    {
        field = static_cast<CSWColorEdit*>(FindControlRecusive(u"Field"));
        ok = FindControlRecusive(u"BtnOK");
        SetDefaultOKButton(ok);
        return field != nullptr ? field->Create(wndstyle::kChild | wndstyle::kVisible, {}, this, 0)
                                : 0;
    }

    void OnControl(CSkinObject* sender, void* /*data*/)
    {
        if (sender == ok)
            DoCancelWndModal(7);
    }

    CSWColorEdit* field = nullptr;
    CSkinObject* ok = nullptr;
    int created = 0;
};

class Forms : public testing::Test {
protected:
    Forms()
    {
        CSkinManager::GetInstance()->IncludeBuildText(kBuild);
        null_.SetUnscripted([this](const char* what) { complaints_.emplace_back(what); });
    }
    ~Forms() override
    {
        EXPECT_TRUE(CSkinWndManager::GetInstance()->GetModalForms().empty());
        CSkinManager::GetInstance()->Clear();
        null_.ClearScripts();
        null_.SetUnscripted({});
    }

    NullPeerFactory& null_ = GetNullPeerFactory();
    std::vector<std::string> complaints_;
};

TEST_F(Forms, AModalFormIsFilledAndEndedByItsButton)
{
    AskForm form; // Grown to what its controls need.
    EXPECT_EQ(form.GetBoundsRect(), (Rect{0, 0, 200, 10 + 34 + 32 + 10}));
    EXPECT_EQ(form.field->GetBoundsRect(), (Rect{10, 10, 190, 44}));
    null_.QueueModal([](CSkinForm& shown) {
        auto& ask = static_cast<AskForm&>(shown);
        EXPECT_TRUE(ask.IsModal());
        EXPECT_TRUE(ask.IsWindowVisible());
        ask.field->OnPeerText(u"typed");
        ask.ok->OnPeerPressed();
    });
    EXPECT_EQ(form.DoWndModal(), 7);
    EXPECT_EQ(form.field->GetText(), u"typed");
    EXPECT_FALSE(form.IsWindowVisible());
    EXPECT_TRUE(complaints_.empty());
}

TEST_F(Forms, AnEndBeforeTheStartIsRememberedOnce)
{
    AskForm form;
    form.DoCancelWndModal(3);
    form.DoCancelWndModal(4);
    EXPECT_EQ(form.DoWndModal(), 3);
    null_.QueueModal([](CSkinForm& shown) { shown.DoCancelWndModal(5); });
    EXPECT_EQ(form.DoWndModal(), 5);
}

TEST_F(Forms, AFailedBuildIsNeverShownModal)
{
    CSkinManager::GetInstance()->IncludeBuildText(R"(<build><form id="Ask"/></build>)");
    AskForm form;
    EXPECT_EQ(form.created, 1);
    EXPECT_TRUE(form.IsBuildFailed());
    null_.QueueModal([](CSkinForm&) { ADD_FAILURE(); });
    EXPECT_EQ(form.DoWndModal(), 0);
}

TEST_F(Forms, EveryRoadOfAnEndUnwindsNestedForms)
{
    struct Case {
        const char* name;
        void (*end)(CSkinForm& outer, CSkinForm& inner);
        int outer, inner;
    };
    const Case kCases[] = {
        {"InnerThenOuter",              [](CSkinForm&, CSkinForm& inner) { inner.DoCancelWndModal(2); },                          1, 2},
        {"InterruptOfTheOuterEndsBoth",
         [](CSkinForm& outer,                          CSkinForm&) { outer.InterruptByForce(); },
         0,                                                                                                                          0},
        {"InterruptOfTheInnerEndsIt",
         [](CSkinForm&,                                CSkinForm& inner) { inner.InterruptByForce(); },
         1,                                                                                                                          0},
        {"AllEnd",
         [](CSkinForm&,                                CSkinForm&) { CSkinWndManager::GetInstance()->InterruptAllModalForms(); },
         0,                                                                                                                          0},
        {"TheCloseButton",
         [](CSkinForm&,                                CSkinForm& inner) { inner.WindowProc(wndmessage::kClose, 0, 0); },
         1,                                                                                                                          0},
    };
    for (const Case& row : kCases) {
        SCOPED_TRACE(row.name);
        CSkinForm main;
        main.Create(wndstyle::kPopup, u"Main", u"", {}, nullptr, 0);
        AskForm outer(&main);
        AskForm inner(&outer);
        int innerResult = -1;
        null_.QueueModal([&](CSkinForm& shown) {
            EXPECT_EQ(main.GetModalChildForm(), &shown);
            innerResult = inner.DoWndModal();
            shown.DoCancelWndModal(1);
        });
        null_.QueueModal([&](CSkinForm& shown) {
            EXPECT_EQ(outer.GetModalChildForm(), &shown);
            EXPECT_EQ(main.GetModalChildForm(), &outer);
            row.end(outer, shown);
        });
        EXPECT_EQ(outer.DoWndModal(), row.outer);
        EXPECT_EQ(innerResult, row.inner);
        EXPECT_EQ(main.GetModalChildForm(), nullptr);
    }
    EXPECT_TRUE(complaints_.empty());
}

TEST_F(Forms, AFormMayBeDestroyedWhileItIsModal)
{
    auto* form = new AskForm;
    null_.QueueModal([](CSkinForm& shown) { shown.Release(); });
    EXPECT_EQ(form->DoWndModal(), 0);
}

TEST_F(Forms, AClosedFormHidesUnlessItSaysOtherwise)
{
    struct Stubborn : CSkinForm {
        int OnQueryCloseForm() override { return 0; }
    };
    struct Ending : CSkinForm {
        int OnSysButton(const String& button) override
        {
            EXPECT_EQ(button, kSysButtonClose);
            Release();
            return 1;
        }
    };
    CSkinForm plain;
    Stubborn stubborn;
    for (CSkinForm* form : {&plain, static_cast<CSkinForm*>(&stubborn)}) {
        form->Create(wndstyle::kPopup, u"F", u"", {}, nullptr, 0);
        form->ShowWindow(5);
        form->WindowProc(wndmessage::kClose, 0, 0);
    }
    EXPECT_FALSE(plain.IsWindowVisible());
    EXPECT_TRUE(stubborn.IsWindowVisible());

    auto* ending = new Ending;
    ending->Create(wndstyle::kPopup, u"F", u"", {}, nullptr, 0);
    const LifeWatch life = ending->Watch();
    ending->WindowProc(wndmessage::kClose, 0, 0);
    EXPECT_FALSE(life.IsAlive());
}

TEST_F(Forms, WhatGoesIsForgotten)
{
    CSkinWndManager& manager = *CSkinWndManager::GetInstance();
    {
        CSkinPanel page;
        AskForm form;
        manager.SetMainForm(&form);
        form.SetDefaultFocusObj(form.field);
        form.FocusObject(form.field);
        form.field->Release();
        form.ok->Release();
        EXPECT_EQ(form.GetDefaultFocusObj(), nullptr);
        EXPECT_EQ(form.GetFocusObject(), nullptr);
        EXPECT_EQ(form.GetDefaultOKButton(), nullptr);
        form.WindowProc(wndmessage::kActivate, 1, 0);
        EXPECT_TRUE(form.IsActive());
        auto* button = new CSkinButton; // It leaves with its page.
        page.RegisterControl(button);
        form.RegisterControl(&page);
        form.SetDefaultFocusObj(button);
        form.UnregisterControl(&page);
        EXPECT_EQ(form.GetDefaultFocusObj(), nullptr);
    }
    EXPECT_EQ(manager.GetMainForm(), nullptr);
}

// Notes what a browser tells, in order.
class Reader final : public UrlTranslateHandler {
public:
    int TranslateUrl(int /*reserved*/, const String& url, String& /*replacement*/) override
    {
        told.push_back(url);
        return 0;
    }
    void OnEvent(BrowserEventArgs* args)
    {
        told.push_back(common::ToText(static_cast<int>(args->event)));
        EXPECT_EQ(args->controlId, 3343);
        args->cancel = true;
    }
    std::vector<String> told;
};

TEST_F(Forms, ABrowserTellsTheAddressBeforeTheNewWindow)
{
    null_.SetBrowserMissing(/*missing=*/true); // Without its module there is none.
    EXPECT_EQ(CSkinWebBrowser().Create(u"B", wndstyle::kChild, {}, nullptr, 3343, 0x84), 0);
    null_.SetBrowserMissing(/*missing=*/false);
    CSkinWebBrowser browser;
    Reader reader;
    browser.SetTranslateHandler(&reader);
    browser.SetEventListener(Delegate<BrowserEventArgs*>(&reader, &Reader::OnEvent));
    ASSERT_EQ(browser.Create(u"B", wndstyle::kChild, {0, 0, 1, 1}, nullptr, 3343, 0x84), 1);
    browser.Navigate(u"file:///etc/passwd");
    EXPECT_EQ(browser.GetURL(), u"");
    browser.Navigate(u"http://music.example/");
    EXPECT_EQ(browser.GetURL(), u"http://music.example/");
    browser.OnNavigation(u"http://music.example/next");
    EXPECT_TRUE(browser.OnNewWindow(u"http://music.example/a?kivo=1"));
    browser.OnLoadStarted();
    browser.OnLoadFinished();
    EXPECT_EQ(reader.told,
              (std::vector<String>{u"http://music.example/next",
                                   u"http://music.example/a?kivo=1",
                                   u"251",
                                   u"106",
                                   u"259"}));
}

} // namespace
} // namespace kivo::ui
