#include "tests/end_to_end/Desktop.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace kivo::test {
namespace {

// A clip of 4 : 3 whose left half is red and whose right half is blue, where a picture shows it.
struct Clip {
    QRect red;
    QRect blue;

    [[nodiscard]] QRect GetPlace() const { return red.united(blue); }
    [[nodiscard]] bool IsThere() const { return !red.isEmpty() && !blue.isEmpty(); }
};

Clip FindClip(const QImage& picture)
{
    const auto add = [](QRect& place, int x, int y) { place = place.united(QRect(x, y, 1, 1)); };
    Clip clip;
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb pixel = picture.pixel(x, y);
            if (qRed(pixel) > 220 && qGreen(pixel) < 40 && qBlue(pixel) < 40)
                add(clip.red, x, y);
            if (qBlue(pixel) > 220 && qGreen(pixel) < 40 && qRed(pixel) < 40)
                add(clip.blue, x, y);
        }
    return clip;
}

bool IsBlack(const QImage& picture, int x, int y)
{
    return picture.rect().contains(x, y) && qGray(picture.pixel(x, y)) < 8;
}

// Both halves in their places and in their shape.
void ExpectShape(const Clip& clip)
{
    ASSERT_TRUE(clip.IsThere());
    const QRect place = clip.GetPlace();
    EXPECT_LT(clip.red.right(), clip.blue.left());
    EXPECT_NEAR(clip.red.top(), clip.blue.top(), 2);
    EXPECT_NEAR(clip.red.bottom(), clip.blue.bottom(), 2);
    // Where the halves meet, enlarging mixes them.
    EXPECT_NEAR(clip.red.width(), clip.blue.width(), 4 + place.width() / 50.0);
    EXPECT_NEAR(place.width(), place.height() * 4.0 / 3.0, 4);
}

// Black beside it, as high as it is.
void ExpectBars(const QImage& picture, const Clip& clip)
{
    const QRect place = clip.GetPlace();
    for (const int y : {place.top() + 1, place.center().y(), place.bottom() - 1}) {
        EXPECT_TRUE(IsBlack(picture, place.left() - 4, y)) << y;
        EXPECT_TRUE(IsBlack(picture, place.right() + 4, y)) << y;
    }
}

std::string MakeClip(const MediaFolder& media)
{
    return media.Encode("clip.mp4",
                        "-f lavfi -i color=red:size=80x120:rate=25:duration=120 "
                        "-f lavfi -i color=blue:size=80x120:rate=25:duration=120 "
                        "-filter_complex hstack -c:v libx264 -preset ultrafast -pix_fmt yuv420p");
}

// The page as --screenshot shows it while the file plays.
QImage TakeScreenshot(const MediaFolder& media, const std::string& file, const std::string& ratio)
{
    const std::string path = media.GetPath("form.png");
    KivoRun run({"--profile", media.GetPath("p"), "--screenshot", path, file},
                {"", {"QT_SCALE_FACTOR=" + ratio}, 0});
    EXPECT_EQ(run.WaitForEnd(30), 0) << run.GetErrors();
    return QImage(QString::fromStdString(path));
}

TEST(Picture, WithoutADisplayItStandsInThePageAtEachDensity)
{
    const MediaFolder media;
    const std::string file = MakeClip(media);
    int height = 0;
    for (const char* const ratio : {"1", "1.5", "2"}) {
        SCOPED_TRACE(ratio);
        const QImage picture = TakeScreenshot(media, file, ratio);
        EXPECT_EQ(picture.size(), QSize(340, 680) * std::atof(ratio));
        const Clip clip = FindClip(picture);
        ExpectShape(clip);
        ExpectBars(picture, clip);
        if (height == 0)
            height = clip.GetPlace().height();
        EXPECT_NEAR(clip.GetPlace().height(), height * std::atof(ratio), 3);
    }
}

// A cover picture is no video: the pane stays closed. Of what can't play there is a picture too.
TEST(Picture, IsTakenOfWhatShowsNoVideo)
{
    const MediaFolder media;
    media.Get().Write("text.mp3", "no music");
    media.Encode("song.mp3",
                 "-f lavfi -i sine=duration=60 -f lavfi -i color=red:size=300x300:duration=1 "
                 "-map 0 -map 1 -frames:v 1 -c:v mjpeg -disposition:v attached_pic");
    for (const char* const name : {"song.mp3", "text.mp3"}) {
        const QImage picture = TakeScreenshot(media, media.GetPath(name), "1");
        EXPECT_FALSE(picture.isNull());
        EXPECT_TRUE(FindClip(picture).red.isEmpty());
    }
}

class PictureOnX11 : public testing::Test {
protected:
    void SetUp() override
    {
        if (!desktop_.IsUp())
            GTEST_SKIP() << "Xvfb, openbox or xdotool isn't installed";
        file_ = MakeClip(desktop_.GetMedia());
    }

    // The clip on the screen, once `isRight` says so of it.
    Clip WaitForClip(const std::function<bool(const Clip&)>& isRight)
    {
        Clip clip;
        EXPECT_TRUE(WaitUntil([&] {
            picture_ = desktop_.TakePicture();
            clip = FindClip(picture_);
            return clip.IsThere() && isRight(clip);
        }));
        ExpectShape(clip);
        return clip;
    }
    bool WaitUntilItIsGone()
    {
        return WaitUntil([this] { return !FindClip(desktop_.TakePicture()).IsThere(); });
    }

    Desktop desktop_;
    std::string file_;
    QImage picture_;
};

TEST_F(PictureOnX11, IsShownResizedHiddenShownAgainAndFillsTheScreen)
{
    desktop_.Start({file_});
    const Clip first = WaitForClip([](const Clip&) { return true; });
    ExpectBars(picture_, first);

    // Paused: nothing but the page itself draws it anew.
    desktop_.Click("control", "Pause");
    desktop_.Find("control", "Play");
    const Seen bar = desktop_.Find("control", "Height of the picture");
    desktop_.Drag(bar, bar.x + 60, bar.y - 60);
    const int height = first.GetPlace().height();
    const Clip larger =
        WaitForClip([height](const Clip& clip) { return clip.GetPlace().height() > height + 30; });
    ExpectBars(picture_, larger);

    desktop_.Click("control", "Close the picture");
    EXPECT_TRUE(WaitUntilItIsGone());
    desktop_.Click("control", "Show or hide the picture");
    WaitForClip([&](const Clip& clip) { return clip.GetPlace() == larger.GetPlace(); });

    desktop_.Click("control", "Play");
    desktop_.Find("control", "Pause");
    desktop_.Press("F11");
    const Clip full = WaitForClip([](const Clip& clip) { return clip.GetPlace().height() > 900; });
    EXPECT_NEAR(full.GetPlace().center().x(), picture_.width() / 2.0, 2);
    EXPECT_NEAR(full.GetPlace().center().y(), picture_.height() / 2.0, 2);
    EXPECT_NEAR(full.GetPlace().width(), picture_.width(), 2);
    desktop_.Press("Escape");
    WaitForClip([&](const Clip& clip) { return clip.GetPlace() == larger.GetPlace(); });
    desktop_.Press("alt+F4"); // It plays on meanwhile.
    EXPECT_EQ(desktop_.WaitForEnd(), 0);
}

} // namespace
} // namespace kivo::test
