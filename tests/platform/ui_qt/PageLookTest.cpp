#include "platform/ui/qt/SkinLook.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "shell/contracts/ui/SkinButton.h"
#include "shell/contracts/ui/SkinSlider.h"
#include "tests/platform/ui_qt/Desk.h"
#include "tests/support/CaseName.h"

#include <gtest/gtest.h>
#include <QAbstractButton>
#include <QTreeView>

namespace kivo::ui::qt {
namespace {

class PageLook : public testing::TestWithParam<DeskLook> {};

// The middle of a control, as the page's picture shows it.
QColor ColourAt(const QImage& picture, QWidget& page, QWidget& widget, const QPoint& point)
{
    const qreal ratio = picture.devicePixelRatio();
    const QPoint place = widget.mapTo(&page, point);
    return picture.pixelColor(
        QPoint(static_cast<int>(place.x() * ratio), static_cast<int>(place.y() * ratio)));
}

TEST_P(PageLook, ShowsTheSkinsColours)
{
    const Desk desk(GetParam());
    DeskPage page;
    static_cast<CSkinButton*>(page.Find(u"LyricBtn"))->SetChecked(1);
    page.Find(u"DelBtn")->SetEnabled(0);
    page.OpenPane(true);
    const QImage picture = Grab(*page.GetWindow());

    QWidget& window = *page.GetWindow();
    QWidget& play = *WidgetOf(page.Find(u"PauseBtn"));
    EXPECT_EQ(ColourAt(picture, window, play, QPoint(play.width() / 2, 12)), GetToken(u"honey"));
    auto& view = *static_cast<QTreeView*>(WidgetOf(page.Find(u"PlayList")));
    EXPECT_EQ(
        ColourAt(picture, window, *view.viewport(), QPoint(140, view.viewport()->height() - 3)),
        GetToken(u"base"));
    QWidget& pane = *WidgetOf(page.Find(u"PhotoDefault"));
    EXPECT_EQ(ColourAt(picture, window, pane, QPoint(4, 4)), GetToken(u"window"));
}

constexpr DeskLook kLooks[] = {
    {"light",      false, false, false, 1.0},
    {"dark",       true,  false, false, 1.0},
    {"rtl",        false, true,  false, 1.0},
    {"dark_rtl",   true,  true,  false, 1.0},
    {"contrast",   false, false, true,  1.0},
    {"large_font", false, false, false, 1.5},
};

INSTANTIATE_TEST_SUITE_P(Looks, PageLook, testing::ValuesIn(kLooks), test::CaseName<DeskLook>);

} // namespace
} // namespace kivo::ui::qt
