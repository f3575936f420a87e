// A video on the whole page: the real plug-in and engine in the real main form, off-screen.

#include "shell/contracts/common/Text.h"
#include "shell/contracts/desktop/TuneHiveRemote.h"
#include "tests/page/Stage.h"

#include <gtest/gtest.h>
#include <QPainter>
#include <QTest>

#include <set>

namespace kivo::test {
namespace {

constexpr int kPlaying = 3;

// What the middle of the picture's place shows.
enum class Ground { Page, Black, Red, Other };

Ground GroundOf(const QColor& colour)
{
    if (colour.red() > 200 && colour.green() < 60 && colour.blue() < 60)
        return Ground::Red;
    if (colour.red() + colour.green() + colour.blue() < 30)
        return Ground::Black;
    return colour.lightness() > 200 ? Ground::Page : Ground::Other;
}

class VideoTest : public testing::Test {
public:
    void PlayRed() const
    {
        ASSERT_TRUE(stage.Play({KIVO_TEST_MEDIA "red.mp4"}));
        ASSERT_TRUE(Stage::WaitUntil([&] { return IsRed(); }));
    }
    [[nodiscard]] static QWidget* FindVideo()
    {
        return Stage::FindNamed(u"STRID_TUNEHIVE_NAME_VIDEO");
    }
    [[nodiscard]] static QImage Grab(QWidget& video)
    {
        return video.grab().toImage().convertToFormat(QImage::Format_RGB32);
    }
    [[nodiscard]] static bool IsRed()
    {
        QWidget* const video = FindVideo();
        return video != nullptr &&
               GroundOf(Grab(*video).pixelColor(video->rect().center())) == Ground::Red;
    }
    // Of the red area in the middle; the rest has to be black.
    [[nodiscard]] static QSize GetPictureSize(QWidget& video)
    {
        const QImage image = Grab(video);
        const QPoint middle = image.rect().center();
        int width = 0;
        for (int x = 0; x < image.width(); ++x)
            width += GroundOf(image.pixelColor(x, middle.y())) == Ground::Red ? 1 : 0;
        int height = 0;
        for (int y = 0; y < image.height(); ++y)
            height += GroundOf(image.pixelColor(middle.x(), y)) == Ground::Red ? 1 : 0;
        return {width, height};
    }
    // The picture fills its place in one direction and is as wide as 4 to 3.
    static void ExpectItsShape(QWidget& video)
    {
        EXPECT_TRUE(Stage::WaitUntil([&] {
            const QSize size = GetPictureSize(video);
            const bool fills =
                size.width() >= video.width() - 1 || size.height() >= video.height() - 1;
            return fills && std::abs(3 * size.width() - 4 * size.height()) <= 8;
        })) << GetPictureSize(video).width()
            << " x " << GetPictureSize(video).height() << " in " << video.width() << " x "
            << video.height();
    }
    // Drags the splitter's bar by so many pixels, in steps, and looks after each.
    template <class Look>
    static void DragSplitter(int distance, Look look)
    {
        QWidget* const bar = Stage::FindNamed(u"STRID_TUNEHIVE_NAME_SPLITTER");
        ASSERT_NE(bar, nullptr);
        const QPoint grip = bar->rect().center();
        QTest::mousePress(bar, Qt::LeftButton, {}, grip);
        constexpr int kSteps = 5;
        for (int step = 0; step < kSteps; ++step) {
            QTest::mouseMove(bar, grip + QPoint(0, distance / kSteps));
            look();
        }
        QTest::mouseRelease(bar, Qt::LeftButton, {}, grip);
    }

    Stage stage{Look(), {}, 420, 760};
};

TEST_F(VideoTest, TheFirstPictureComesWithoutAFlash)
{
    // What the place shows, without repeats, from the start to well into the film.
    std::vector<Ground> shown;
    stage.GetRemote().Open({u"" KIVO_TEST_MEDIA "red.mp4"}, u"playing", /*playFirst=*/true);
    ASSERT_TRUE(Stage::WaitUntil([&] {
        QWidget* const video = FindVideo();
        if (video == nullptr)
            return false;
        const Ground ground = GroundOf(Grab(*video).pixelColor(2 * video->rect().center() / 3));
        if (shown.empty() || shown.back() != ground)
            shown.push_back(ground);
        return stage.GetRemote().GetPosition() > 0.5;
    }));
    ASSERT_FALSE(shown.empty());
    EXPECT_EQ(shown.back(), Ground::Red);
    for (const Ground ground : shown)
        EXPECT_NE(ground, Ground::Other);
    EXPECT_EQ(std::set<Ground>(shown.begin(), shown.end()).size(), shown.size())
        << "None comes twice.";
}

TEST_F(VideoTest, FollowsTheSplitterAtEveryDragAndKeepsItsShape)
{
    PlayRed();
    QWidget& video = *FindVideo();
    ExpectItsShape(video);
    int height = video.height();
    DragSplitter(-200, [&] {
        EXPECT_GT(video.height(), height);
        height = video.height();
        ExpectItsShape(video);
    });
    DragSplitter(150, [&] {
        EXPECT_LT(video.height(), height);
        height = video.height();
        ExpectItsShape(video);
    });
    stage.GetWindow().resize(600, 700);
    Stage::Turn(50);
    ExpectItsShape(video);
    EXPECT_EQ(stage.GetRemote().GetState(), kPlaying);
}

TEST_F(VideoTest, GoesWithThePaneWhileTheSoundGoesOn)
{
    PlayRed();
    QWidget* const button = Stage::FindNamed(u"STRID_TUNEHIVE_TIP_CLOSEPANE");
    ASSERT_NE(button, nullptr);
    QTest::mouseClick(button, Qt::LeftButton, {}, button->rect().center());
    EXPECT_EQ(FindVideo(), nullptr);
    const double position = stage.GetRemote().GetPosition();
    EXPECT_TRUE(Stage::WaitUntil([&] { return stage.GetRemote().GetPosition() > position + 0.3; }));
    EXPECT_EQ(stage.GetRemote().GetState(), kPlaying);
    QWidget* const pane = Stage::FindNamed(u"STRID_TUNEHIVE_TIP_PANE");
    ASSERT_NE(pane, nullptr);
    QTest::mouseClick(pane, Qt::LeftButton, {}, pane->rect().center());
    EXPECT_TRUE(Stage::WaitUntil([] { return IsRed(); }));
}

TEST_F(VideoTest, FillsTheScreenByDoubleClickAndComesBackByEscapeOrAnother)
{
    PlayRed();
    const QSize small = FindVideo()->size();
    for (const bool byKey : {true, false}) {
        SCOPED_TRACE(byKey);
        QWidget* video = FindVideo();
        // Through the window, as the window system does.
        QTest::mouseDClick(video->window()->windowHandle(),
                           Qt::LeftButton,
                           {},
                           video->mapTo(video->window(), video->rect().center()));
        Stage::Turn(100);
        video = FindVideo();
        ASSERT_NE(video, nullptr);
        EXPECT_TRUE(video->isFullScreen());
        ExpectItsShape(*video);
        if (byKey)
            QTest::keyClick(video->windowHandle(), Qt::Key_Escape);
        else
            QTest::mouseDClick(video->windowHandle(), Qt::LeftButton, {}, video->rect().center());
        Stage::Turn(100);
        video = FindVideo();
        ASSERT_NE(video, nullptr);
        EXPECT_FALSE(video->isFullScreen());
        EXPECT_EQ(video->size(), small);
        ExpectItsShape(*video);
    }
    EXPECT_EQ(stage.GetRemote().GetState(), kPlaying);
}

TEST_F(VideoTest, ThePaneKeepsItsHeightFromTrackToTrack)
{
    const std::string media = KIVO_TEST_MEDIA;
    ASSERT_TRUE(stage.Play({media + "red.mp4", media + "tone.mp3", media + "long.mp4"}));
    ASSERT_TRUE(Stage::WaitUntil([] { return IsRed(); }));
    DragSplitter(-120, [] {});
    const int height = FindVideo()->height();
    for (const char* track : {"tone.mp3", "long.mp4"}) {
        SCOPED_TRACE(track);
        stage.GetRemote().Next();
        Stage::Turn(30); // The old one's end is told.
        ASSERT_TRUE(Stage::WaitUntil([&] {
            return stage.GetRemote().GetState() == kPlaying &&
                   stage.GetRemote().GetPath().ends_with(common::PathToText(track));
        }));
        ASSERT_NE(FindVideo(), nullptr);
        EXPECT_EQ(FindVideo()->height(), height);
    }
}

} // namespace
} // namespace kivo::test
