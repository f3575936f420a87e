#include "platform/ui/qt/RowView.h"
#include "platform/ui/qt/TextLine.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "shell/contracts/ui/SkinButton.h"
#include "shell/contracts/ui/SkinForm.h"
#include "shell/contracts/ui/SkinLabel.h"
#include "tests/platform/ui_qt/Desk.h"

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <QTest>

#include <algorithm>

namespace kivo::ui::qt {
namespace {

// A heading, or a row of two lines with a button at its end.
class CardRow final : public CSkinListItem {
public:
    CardRow(CSkinList& list, const String& id, bool isHeading, String& log)
        : CSkinListItem(&list, id)
        , log_(log)
        , isHeading_(isHeading)
    {
        CardRow::BuildRow();
    }

    void BuildRow() override
    {
        Clear();
        AddLabel(-1, u"text", {}, GetID(), {}, GetDefaultLOGFONT(), 0, 0, 0);
        if (!isHeading_)
            AddPhoto(-1, u"go", {}, u"play.png", {}, {}, 0);
    }
    void ReposControls() override
    {
        CSkinListItem::ReposControls();
        if (CSkinCell* const button = GetObjectW(u"go")) {
            button->SetAnchorStyle(anchor::kRight);
            button->SetBounds(0, 0, 32, 32);
        }
    }
    [[nodiscard]] int GetWantedHeight(int /*lineHeight*/) const override
    {
        return isHeading_ ? 30 : 48;
    }
    [[nodiscard]] String GetSpokenText() override { return u"spoken " + GetID(); }
    [[nodiscard]] String GetButtonCell() const override { return u"go"; }
    void OnButtonCell() override { log_ += GetID() + u":button "; }
    int CanBeSelected() override { return isHeading_ ? 0 : 1; }
    IMenu* GetRowMenu(const MenuDelegate& /*delegate*/) override { return nullptr; }
    void OnRowCommand(IMenu* /*entry*/) override {}
    int OnListEvent(CSkinList* /*list*/, int /*context*/, int event, const String& /*t*/) override
    {
        log_ += GetID() + u":" + (event == 515 ? u"double " : u"event ");
        return 0;
    }

protected:
    String MakeTooltip(const String& cellId) override { return u"tip of " + cellId; }

private:
    String& log_;
    bool isHeading_;
};

// A form with a list: heading, a, b, heading2, c.
class ListRowTest : public testing::Test {
protected:
    ListRowTest()
    {
        form_.SetBounds(0, 0, 300, 400);
        form_.Create(wndstyle::kPopup, u"Form", u"form", {0, 0, 300, 400}, nullptr, 0);
        list_ = new CSkinList;
        list_->SetAnchorStyle(anchor::kFill);
        form_.RegisterControl(list_);
        list_->Create(&form_);
        list_->SetUniformRows(0);
        list_->SetSingleSelection(1);
        list_->BeginUpdate();
        for (const char16_t* const id : {u"heading", u"a", u"b", u"heading2", u"c"})
            list_->InsertListItem(new CardRow(*list_, id, String(id).size() > 1, log_), -1);
        list_->EndUpdate(1);
        form_.RePositionSubControls();
        form_.ShowWindow(5);
        GetView().setFocus();
        Settle();
    }

    RowView& GetView() { return *static_cast<RowView*>(WidgetOf(list_)); }
    [[nodiscard]] QRect RectOf(int place)
    {
        return GetView().GetRowRect(GetView().GetModel().IndexOf(list_->GetRowAt(place)));
    }
    [[nodiscard]] QPoint ButtonOf(int place)
    {
        const QRect rect = RectOf(place);
        return {rect.right() - 15 - 16, rect.center().y()};
    }
    void Click(const QPoint& point, Qt::KeyboardModifiers keys = {})
    {
        QTest::mouseClick(GetView().viewport(), Qt::LeftButton, keys, point);
    }
    [[nodiscard]] String GetSelected() const
    {
        String ids;
        for (const CSkinListItem* const row : list_->GetAllSelectedItem())
            ids += row->GetID();
        return ids;
    }

    Desk desk_;
    String log_;
    CSkinForm form_;
    CSkinList* list_ = nullptr;
};

TEST_F(ListRowTest, EachRowHasItsOwnHeightAndWordsForScreenReaders)
{
    const int tops[] = {0, 30, 78, 126, 156};
    for (int place = 0; place < 5; ++place)
        EXPECT_EQ(RectOf(place).top(), tops[place]);
    EXPECT_EQ(RectOf(4).height(), 48);
    const QModelIndex index = GetView().GetModel().IndexOf(list_->GetRowAt(1));
    EXPECT_EQ(index.data(Qt::AccessibleTextRole).toString(), QStringLiteral("spoken a"));
    EXPECT_EQ(index.data(Qt::DisplayRole).toString(), QStringLiteral("a"));
}

TEST_F(ListRowTest, TheKeysPassOverHeadingsAndOneRowIsSelectedAtMost)
{
    Click(RectOf(2).center());
    EXPECT_EQ(GetSelected(), u"b");
    QTest::keyClick(&GetView(), Qt::Key_Down);
    EXPECT_EQ(GetSelected(), u"c");
    QTest::keyClick(&GetView(), Qt::Key_Home);
    EXPECT_EQ(GetSelected(), u"a");
    Click(RectOf(3).center());
    EXPECT_EQ(list_->GetCurrentRow()->GetID(), u"a");
    Click(RectOf(2).center(), Qt::ControlModifier);
    EXPECT_EQ(GetSelected(), u"b");
    QTest::keyClick(&GetView(), Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(GetSelected(), u"b");
}

TEST_F(ListRowTest, AClickOnTheButtonPressesItAndSelectsNothing)
{
    Click(RectOf(1).center());
    QTest::mousePress(GetView().viewport(), Qt::LeftButton, {}, ButtonOf(1));
    QTest::mouseRelease(GetView().viewport(), Qt::LeftButton, {}, ButtonOf(2));
    EXPECT_EQ(log_, u""); // It ended elsewhere.
    Click(ButtonOf(2));
    EXPECT_EQ(log_, u"b:button ");
    EXPECT_EQ(GetSelected(), u"a");
    QTest::mouseDClick(GetView().viewport(), Qt::LeftButton, {}, ButtonOf(2));
    EXPECT_EQ(log_.find(u"double"), String::npos); // That is two presses.
    QTest::mouseDClick(GetView().viewport(), Qt::LeftButton, {}, RectOf(1).center());
    EXPECT_NE(log_.find(u"a:double"), String::npos);
}

TEST_F(ListRowTest, ABoxIsTickedByItsControlAlone)
{
    auto* const check = new CSkinButton;
    check->SetSkinName(u"check");
    check->SetText(u"Tick me");
    form_.RegisterControl(check);
    check->CreatePeer();
    auto& box = *static_cast<QAbstractButton*>(WidgetOf(check));
    QAccessibleInterface* const access = QAccessible::queryAccessibleInterface(&box);
    EXPECT_EQ(access->role(), QAccessible::CheckBox);
    EXPECT_EQ(access->text(QAccessible::Name), QStringLiteral("Tick me"));
    QTest::keyClick(&box, Qt::Key_Space);
    EXPECT_FALSE(box.isChecked()); // Nobody listened.
    check->SetChecked(1);
    EXPECT_TRUE(access->state().checked);
}

// How much of a picture's line is ink, from the first dark pixel to the last.
int InkWidth(const QImage& picture, int top, int bottom)
{
    int first = picture.width();
    int last = 0;
    for (int y = top; y < bottom; ++y)
        for (int x = 0; x < picture.width(); ++x)
            if (qGray(picture.pixel(x, y)) < 128) {
                first = std::min(first, x);
                last = std::max(last, x);
            }
    return last - first;
}

TEST(Paragraph, CentredLinesAreAboutAsLongAsEachOther)
{
    const Desk desk;
    const QFont font = QApplication::font();
    const QString text = QStringLiteral("See what your friends listen to");
    const int width = QFontMetrics(font).horizontalAdvance(text) - 5; // "to" wraps alone.
    const int pitch = GetParagraphPitch(font);
    ASSERT_EQ(MeasureParagraph(font, text, width), 2 * pitch);
    QImage picture(width, 2 * pitch, QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setFont(font);
    DrawParagraph(painter, picture.rect(), text, TextSide::Centre);
    EXPECT_GT(InkWidth(picture, pitch, 2 * pitch), InkWidth(picture, 0, pitch) / 2);
}

TEST_F(ListRowTest, AParagraphAsksForTheHeightOfItsWidth)
{
    auto* const label = new CSkinLabel;
    label->SetMultiLine(1);
    label->SetText(u"word");
    label->SetAnchorStyle(anchor::kTop);
    form_.RegisterControl(label);
    label->CreatePeer();
    form_.RePositionSubControls();
    const int one = label->GetWantedSize().height;
    EXPECT_GT(one, QFontMetrics(QApplication::font()).height() * 1.1) << "lines stand apart";
    String text;
    for (int i = 0; i < 60; ++i)
        text += u"word ";
    label->SetText(text);
    EXPECT_GE(label->GetWantedSize().height, 4 * one);
}

} // namespace
} // namespace kivo::ui::qt
