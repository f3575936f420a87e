#include "platform/ui/qt/KivoStyle.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "shell/contracts/ui/SkinButton.h"
#include "shell/contracts/ui/SkinCombox.h"
#include "shell/contracts/ui/SkinLabel.h"
#include "shell/contracts/ui/SkinSlider.h"
#include "shell/contracts/ui/SkinSplitter.h"
#include "shell/contracts/ui/SWColorEdit.h"
#include "tests/platform/ui_qt/Desk.h"
#include "tests/support/QtInput.h"

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QHelpEvent>
#include <QLineEdit>
#include <QTest>
#include <QToolTip>

#include <utility>

namespace kivo::ui::qt {
namespace {

// Counts the presses of everything below it.
class Presses {
public:
    explicit Presses(CSkinObject& object)
        : object_(object)
    {
        object_.ListenEvent(kControlEvent, {this, &Presses::OnPress});
    }
    Presses(const Presses&) = delete;
    Presses& operator=(const Presses&) = delete;
    ~Presses() { object_.RemoveListener(kControlEvent, {this, &Presses::OnPress}); }

    [[nodiscard]] int Get() const { return count_; }

private:
    void OnPress(CSkinObject* /*sender*/, void* /*data*/) { ++count_; }

    CSkinObject& object_;
    int count_ = 0;
};

QPoint Middle(const QWidget& widget)
{
    return widget.rect().center();
}

TEST(Button, IsPressedByMouseAndKeysAndNotWhileDisabled)
{
    const Desk desk;
    DeskPage page;
    for (const char16_t* id : {u"PrevBtn", u"PauseBtn", u"AddBtn", u"VolBtn"}) {
        SCOPED_TRACE(ToQt(id).toStdString());
        CSkinObject& control = *page.Find(id);
        const Presses presses(control);
        QAbstractButton& button = *page.GetButton(id);
        QTest::mouseClick(&button, Qt::LeftButton, {}, Middle(button));
        EXPECT_EQ(presses.Get(), 1);
        button.setFocus(Qt::TabFocusReason);
        QTest::keyClick(&button, Qt::Key_Space);
        EXPECT_EQ(presses.Get(), 2);
        QTest::mouseClick(&button, Qt::RightButton, {}, Middle(button));
        EXPECT_EQ(presses.Get(), 2);
        control.SetEnabled(0);
        QTest::mouseClick(&button, Qt::LeftButton, {}, Middle(button));
        EXPECT_EQ(presses.Get(), 2);
    }
}

TEST(Button, HasAHandOfAtLeast28Pixels)
{
    const Desk desk;
    const DeskPage page(280, 400);
    for (const char16_t* id : {u"PrevBtn", u"PauseBtn", u"VolBtn", u"AddBtn", u"DelBtn"}) {
        SCOPED_TRACE(ToQt(id).toStdString());
        const CSkinObject& control = *page.Find(id);
        EXPECT_GE(control.GetWidth(), 28);
        EXPECT_GE(control.GetHeight(), 28);
        EXPECT_TRUE(page.GetWindow()->rect().contains(ToQt(control.GetRectInForm())));
    }
}

// Removes the whole form in a press, as a close button does.
struct Closer {
    void OnPress(CSkinObject* /*sender*/, void* /*data*/)
    {
        std::exchange(form, nullptr)->Release();
    }
    CSkinForm* form;
};

TEST(Button, MayTakeItsFormAlong)
{
    const Desk desk;
    auto* form = new CSkinForm;
    form->Create(wndstyle::kPopup, u"Closing", u"Closing", {0, 0, 200, 100}, nullptr, 0);
    auto* button = new CSkinButton;
    button->SetText(u"Close");
    form->RegisterControl(button);
    button->CreatePeer();
    button->SetBounds(10, 10, 100, 32);
    form->ShowWindow(5);
    Closer closer{form};
    form->ListenEvent(kControlEvent, {&closer, &Closer::OnPress});
    const QPointer<QWidget> widget = WidgetOf(button);
    QTest::mouseClick(widget, Qt::LeftButton, {}, Middle(*widget));
    Settle();
    EXPECT_TRUE(widget.isNull());
}

// A form with an edit and a combo box of three texts.
class FieldTest : public testing::Test {
protected:
    FieldTest()
    {
        form.Create(wndstyle::kPopup, u"Form", u"Form", {0, 0, 300, 150}, nullptr, 0);
        form.RegisterControl(edit);
        edit->Create(wndstyle::kChild | wndstyle::kVisible, {10, 10, 200, 44}, &form, 1);
        form.RegisterControl(combox);
        combox->Create(4, {10, 60, 200, 94}, &form);
        for (const char16_t* text : {u"Playing", u"My & media", u"Third"})
            combox->AddString(text);
        field = qobject_cast<QLineEdit*>(WidgetOf(edit));
        box = qobject_cast<QComboBox*>(WidgetOf(combox));
    }

public:
    const Desk desk;
    CSkinForm form;
    CSWColorEdit* edit = new CSWColorEdit;
    CSkinCombox* combox = new CSkinCombox;
    QLineEdit* field = nullptr;
    QComboBox* box = nullptr;
};

TEST_F(FieldTest, AnEditTakesTypingWithinItsLimitAndShowsPasswordsAsDots)
{
    edit->SetLimitText(5);
    edit->SetText(u"<b>&");
    form.ShowWindow(5);
    EXPECT_EQ(field->text(), QStringLiteral("<b>&"));
    QTest::keyClicks(field, QStringLiteral("xyz"));
    EXPECT_EQ(edit->GetText(), u"<b>&x");
    edit->SetPassword(1);
    EXPECT_EQ(field->echoMode(), QLineEdit::Password);
    QTest::keyClick(field, Qt::Key_Backspace);
    EXPECT_EQ(edit->GetText(), u"<b>&");
}

TEST_F(FieldTest, AComboxChoosesByKeysAndTellsOnlyTheUsersChoice)
{
    const Presses presses(*combox);
    combox->SetCurSel(1);
    EXPECT_EQ(presses.Get(), 0);
    form.ShowWindow(5);
    EXPECT_EQ(box->currentText(), QStringLiteral("My & media"));
    QTest::keyClick(box, Qt::Key_Down);
    EXPECT_EQ(combox->GetCurSel(), 2);
    EXPECT_EQ(presses.Get(), 1);
    combox->ResetContent();
    EXPECT_EQ(box->count(), 0);
}

TEST_F(FieldTest, AComboxChoosesByMouseFromItsListAndIgnoresTheWheel)
{
    combox->SetCurSel(0);
    form.ShowWindow(5);
    const Presses presses(*combox);
    QTest::mouseClick(box, Qt::LeftButton, {}, Middle(*box));
    ASSERT_TRUE(QTest::qWaitForWindowExposed(box->view()->window()));
    // The list takes the first release for that of the click that opened it.
    QTest::qWait(QApplication::doubleClickInterval() + 50);
    const QRect third = box->view()->visualRect(box->model()->index(2, 0));
    QTest::mouseClick(box->view()->viewport(), Qt::LeftButton, {}, third.center());
    EXPECT_EQ(combox->GetCurSel(), 2);
    EXPECT_EQ(presses.Get(), 1);
    box->clearFocus();
    test::TurnWheel(*box, 120);
    EXPECT_EQ(combox->GetCurSel(), 2) << "a wheel over it was meant for the window";
}

TEST_F(FieldTest, AnEditTakesTheKeyboardByAClickAndAWordByTwo)
{
    edit->SetText(u"Radio One");
    form.ShowWindow(5);
    ASSERT_TRUE(QTest::qWaitForWindowActive(field->window()));
    field->clearFocus();
    QTest::mouseClick(field, Qt::LeftButton, {}, QPoint(20, field->height() / 2));
    EXPECT_TRUE(field->hasFocus());
    QTest::mouseDClick(field, Qt::LeftButton, {}, QPoint(20, field->height() / 2));
    QTest::keyClicks(field, QStringLiteral("Station"));
    EXPECT_EQ(edit->GetText(), u"Station One");
}

struct SliderMove {
    const char* name;
    Qt::Key key;
    bool turns; // Its way is the other one where the window is mirrored.
    int moved;  // Its sign.
};

constexpr SliderMove kSliderMoves[] = {
    {"Right",    Qt::Key_Right,    true,  1 },
    {"Left",     Qt::Key_Left,     true,  -1},
    {"Up",       Qt::Key_Up,       false, 1 },
    {"Down",     Qt::Key_Down,     false, -1},
    {"PageDown", Qt::Key_PageDown, false, -1},
    {"Home",     Qt::Key_Home,     false, -1},
    {"End",      Qt::Key_End,      false, 1 },
};

TEST(Slider, MovesByKeys)
{
    for (const bool mirrored : {false, true}) {
        DeskLook look;
        look.rightToLeft = mirrored;
        const Desk desk(look);
        DeskPage page;
        auto* slider = static_cast<CSkinSlider*>(page.Find(u"ProcessBar"));
        for (const SliderMove& move : kSliderMoves) {
            SCOPED_TRACE(move.name);
            slider->SetPosition(150);
            const Presses presses(*slider);
            QTest::keyClick(WidgetOf(slider), move.key);
            const int sign = mirrored && move.turns ? -move.moved : move.moved;
            EXPECT_GT((slider->GetPosition() - 150) * sign, 0);
            EXPECT_EQ(presses.Get(), 1);
        }
    }
}

// Adds up what it hears of the wheel.
struct WheelEar {
    void OnTurn(int angle) { heard += angle; }
    int heard = 0;
};

TEST(Button, HearsTheWheelIfSomebodyListens)
{
    const Desk desk;
    DeskPage page;
    WheelEar ear;
    auto* button = static_cast<CSkinButton*>(page.Find(u"VolBtn"));
    test::TurnWheel(*page.GetButton(u"VolBtn"), 120);
    button->SetWheelListener(Delegate<int>(&ear, &WheelEar::OnTurn));
    test::TurnWheel(*page.GetButton(u"VolBtn"), 120);
    test::TurnWheel(*page.GetButton(u"VolBtn"), -360);
    EXPECT_EQ(ear.heard, -240);
    button->SetEnabled(0);
    test::TurnWheel(*page.GetButton(u"VolBtn"), 120);
    EXPECT_EQ(ear.heard, -240);
}

class SliderHand : public testing::TestWithParam<bool> {};

TEST_P(SliderHand, JumpsDragsAndScrolls)
{
    DeskLook look;
    look.rightToLeft = GetParam();
    const Desk desk(look);
    DeskPage page;
    auto* slider = static_cast<CSkinSlider*>(page.Find(u"ProcessBar"));
    QWidget& bar = *WidgetOf(slider);
    EXPECT_GE(bar.height(), 28) << "the hand needs more than the channel shows";
    const auto at = [&](double part) {
        return QPoint(static_cast<int>(bar.width() * (GetParam() ? 1.0 - part : part)),
                      bar.height() / 2);
    };
    QTest::mousePress(&bar, Qt::LeftButton, {}, at(0.75));
    EXPECT_TRUE(slider->IsDragging());
    QTest::mouseMove(&bar, at(0.5));
    QTest::mouseRelease(&bar, Qt::LeftButton, {}, at(0.5));
    EXPECT_FALSE(slider->IsDragging());
    EXPECT_NEAR(slider->GetPosition(), 150, 4);
    QTest::mousePress(&bar, Qt::LeftButton, {}, at(0.25));
    QTest::keyClick(&bar, Qt::Key_Escape);
    EXPECT_FALSE(slider->IsDragging());
    EXPECT_NEAR(slider->GetPosition(), 150, 4);
    const Presses presses(*slider);
    const int before = slider->GetPosition();
    test::TurnWheel(bar, 120);
    EXPECT_GT(slider->GetPosition(), before);
    test::TurnWheel(bar, -240);
    EXPECT_LT(slider->GetPosition(), before);
    EXPECT_EQ(presses.Get(), 2);
}

INSTANTIATE_TEST_SUITE_P(Directions, SliderHand, testing::Bool());

TEST(Slider, TellsTimesToScreenReadersAndUnderThePointer)
{
    const Desk desk;
    DeskPage page;
    auto* slider = static_cast<CSkinSlider*>(page.Find(u"ProcessBar"));
    slider->SetRange(0, 4000);
    slider->SetPosition(3725);
    QAccessibleInterface* access = QAccessible::queryAccessibleInterface(WidgetOf(slider));
    ASSERT_NE(access, nullptr);
    EXPECT_EQ(access->role(), QAccessible::Slider);
    EXPECT_EQ(access->text(QAccessible::Value), QStringLiteral("1:02:05"));
    ASSERT_NE(access->valueInterface(), nullptr);
    EXPECT_EQ(access->valueInterface()->currentValue().toInt(), 3725);
    EXPECT_EQ(access->valueInterface()->maximumValue().toInt(), 4000);
    QWidget& bar = *WidgetOf(slider);
    const QPoint place(bar.width() / 2, bar.height() / 2);
    QHelpEvent help(QEvent::ToolTip, place, bar.mapToGlobal(place));
    QApplication::sendEvent(&bar, &help);
    EXPECT_TRUE(QToolTip::text().contains(QStringLiteral("33:20"))); // Where a press would seek to.
    QToolTip::hideText();
}

TEST(Splitter, MovesByMouseAndKeysWithinTheMinimum)
{
    const Desk desk;
    DeskPage page;
    page.OpenPane(true);
    auto* splitter = static_cast<CSkinSplitter*>(page.Find(u"SplitterCtrl"));
    QWidget* bar = nullptr;
    for (QWidget* child :
         WidgetOf(splitter)->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        if (child->cursor().shape() == Qt::SplitVCursor)
            bar = child;
    ASSERT_NE(bar, nullptr);
    EXPECT_GE(bar->height(), 9);
    EXPECT_EQ(splitter->GetFixedPaneSize(), 164);
    QTest::keyClick(bar, Qt::Key_Up);
    EXPECT_EQ(splitter->GetFixedPaneSize(), 180);
    QTest::mousePress(bar, Qt::LeftButton, {}, QPoint(50, 4));
    QTest::mouseMove(bar, QPoint(50, 4 - 40));
    QTest::mouseRelease(bar, Qt::LeftButton, {}, QPoint(50, 4));
    EXPECT_EQ(splitter->GetFixedPaneSize(), 220);
    for (int press = 0; press < 20; ++press)
        QTest::keyClick(bar, Qt::Key_Down);
    EXPECT_EQ(splitter->GetFixedPaneSize(), 164);
    page.OpenPane(false);
    EXPECT_FALSE(bar->isVisible());
}

TEST(Label, MarksTheFieldAboveAnErrorLine)
{
    const Desk desk;
    CSkinForm form;
    form.SetObjectID(u"AddURLForm");
    form.Create(wndstyle::kPopup, u"Form", u"Form", Rect{}, nullptr, 0);
    auto* edit = static_cast<CSWColorEdit*>(form.FindControlRecusive(u"URLInput"));
    ASSERT_NE(edit, nullptr);
    ASSERT_EQ(edit->Create(wndstyle::kChild | wndstyle::kVisible, Rect{}, &form, 1), 1);
    CSkinObject* label = form.FindControlRecusive(u"URLErrorLabel");
    ASSERT_NE(label, nullptr);
    label->SetVisible(0);
    form.ShowWindow(5);
    EXPECT_FALSE(WidgetOf(edit)->property(kWrongProperty).toBool());
    label->SetVisible(1);
    EXPECT_TRUE(WidgetOf(edit)->property(kWrongProperty).toBool());
    label->SetVisible(0);
    EXPECT_FALSE(WidgetOf(edit)->property(kWrongProperty).toBool());
}

} // namespace
} // namespace kivo::ui::qt
