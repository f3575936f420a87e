#include "platform/ui/qt/VideoPeer.h"

#include "platform/ui/qt/SkinLook.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "tests/platform/ui_qt/Desk.h"

#include <gtest/gtest.h>
#include <QTest>

#include <cmath>

namespace kivo::ui::qt {
namespace {

// A surface that paints two colours side by side in exactly its size.
class TwoColours final : public IVideoSurface {
public:
    void OnSurfaceChanged(int newWidth, int newHeight, bool newVisible) override
    {
        width = newWidth;
        height = newHeight;
        visible = newVisible;
    }
    bool PaintFrame(const std::function<void(const VideoFrame&)>& paint) override
    {
        if (!hasFrame || width <= 0 || height <= 0)
            return false;
        std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width) *
                                          static_cast<std::size_t>(height));
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                       static_cast<std::size_t>(x)] = x < width / 2 ? 0xFFD01010U : 0xFF1010D0U;
        VideoFrame frame;
        frame.bits = reinterpret_cast<const std::uint8_t*>(pixels.data());
        frame.width = width;
        frame.height = height;
        frame.stride = width * 4;
        paint(frame);
        return true;
    }
    [[nodiscard]] bool IsVideoOpen() const override { return isOpen; }
    void OnPress() override { ++presses; }
    void OnDoubleClick() override { ++doubleClicks; }

    int width = -1;
    int height = -1;
    int presses = 0;
    int doubleClicks = 0;
    bool visible = false;
    bool hasFrame = true;
    bool isOpen = true;
};

class VideoPeerTest : public testing::Test {
protected:
    VideoPeerTest()
    {
        form.Create(wndstyle::kPopup, u"Form", u"Form", {0, 0, 300, 200}, nullptr, 0);
        form.ShowWindow(5);
        peer = MakeVideoPeer(surface, &form);
    }

    QColor ColourAt(int x, int y)
    {
        const QImage picture = Grab(*WidgetOf(&form));
        const qreal ratio = picture.devicePixelRatio();
        return picture.pixelColor(static_cast<int>(x * ratio), static_cast<int>(y * ratio));
    }

public:
    const Desk desk;
    CSkinForm form;
    TwoColours surface;
    std::unique_ptr<VideoSurfacePeer> peer;
};

TEST_F(VideoPeerTest, ShowsTheFrameInItsPlaceAtFullSharpness)
{
    ASSERT_NE(peer, nullptr);
    EXPECT_FALSE(surface.visible);
    peer->MoveWindow({50, 20, 250, 120});
    peer->ShowWindow(true);
    Settle();
    EXPECT_TRUE(surface.visible);
    const qreal ratio = WidgetOf(&form)->devicePixelRatioF();
    EXPECT_EQ(surface.width, std::lround(200 * ratio));
    EXPECT_EQ(surface.height, std::lround(100 * ratio));
    EXPECT_EQ(ColourAt(60, 70), QColor(0xD01010));
    EXPECT_EQ(ColourAt(240, 70), QColor(0x1010D0));
    EXPECT_EQ(ColourAt(40, 70), GetToken(u"window"));
    peer->ShowWindow(false);
    Settle();
    EXPECT_FALSE(surface.visible);
    peer->ShowWindow(true);
    EXPECT_EQ(ColourAt(240, 70), QColor(0x1010D0));
}

TEST_F(VideoPeerTest, IsBlackForAnOpenVideoAndThePageElsewhere)
{
    surface.hasFrame = false;
    peer->MoveWindow({0, 0, 300, 200});
    peer->ShowWindow(true);
    EXPECT_EQ(ColourAt(5, 5), QColor(Qt::black));
    surface.isOpen = false;
    peer->Update();
    EXPECT_EQ(ColourAt(5, 5), GetToken(u"window"));
    EXPECT_EQ(ColourAt(150, 85), GetToken(u"honey")) << "the comb's middle cell";
}

TEST_F(VideoPeerTest, HearsTheMouseAndComesBackFromFullScreen)
{
    peer->MoveWindow({0, 0, 300, 200});
    peer->ShowWindow(true);
    QWidget* widget = WidgetOf(&form)->childAt(100, 100);
    ASSERT_NE(widget, nullptr);
    QTest::mouseDClick(widget, Qt::LeftButton);
    EXPECT_EQ(surface.doubleClicks, 1);
    QTest::mouseClick(widget, Qt::LeftButton);
    EXPECT_GE(surface.presses, 1);
    peer->SetFullScreen(true);
    Settle();
    EXPECT_TRUE(widget->isFullScreen());
    EXPECT_GT(surface.width, 300);
    peer->SetFullScreen(false);
    Settle();
    EXPECT_EQ(WidgetOf(&form)->childAt(100, 100), widget);
    EXPECT_EQ(widget->geometry(), QRect(0, 0, 300, 200));
    EXPECT_TRUE(surface.visible);
    EXPECT_EQ(MakeVideoPeer(surface, nullptr), nullptr); // It needs a window to be in.
}

} // namespace
} // namespace kivo::ui::qt
