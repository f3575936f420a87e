#include "tests/end_to_end/Desktop.h"

#include <gtest/gtest.h>

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <utility>

namespace kivo::test {
namespace {

namespace fs = std::filesystem;

class FirstDay : public testing::Test {
protected:
    void SetUp() override
    {
        if (!desktop_.IsUp())
            GTEST_SKIP() << "Xvfb, openbox or xdotool isn't installed";
    }

    void Stop()
    {
        desktop_.Signal(SIGTERM);
        EXPECT_EQ(desktop_.WaitForEnd(), 0);
    }

    void MakeMusic() const
    {
        fs::create_directories(desktop_.GetMedia().GetPath("album"));
        for (const auto& [file, title] : {std::pair("a.mp3", "Alpha"),
                                          std::pair("album/b.mp3", "Beta"),
                                          std::pair("album/c.mp3", "Gamma"),
                                          std::pair("album/d.mp3", "Delta")})
            desktop_.GetMedia().Make(file, 60, std::string("-b:a 64k -metadata title=") + title);
    }

    // In the desktop's own dialog: what is typed is what is chosen.
    void ChooseInDialog(const std::string& paths)
    {
        const auto isReady = [this] {
            for (const Seen& seen : desktop_.Look())
                if (seen.name == "File name:" || seen.name == "Directory:")
                    if (seen.Is("focused"))
                        return true;
            return false;
        };
        EXPECT_TRUE(WaitUntil(isReady));
        desktop_.Type(paths);
        desktop_.Press("Return");
    }

    void ChooseEntry(const std::string& button, const std::string& entry)
    {
        desktop_.Click("control", button);
        desktop_.Click("entry", entry);
    }

    void ClickAt(const Seen& seen, double part) const
    {
        desktop_.Do("mousemove --sync " +
                    std::to_string(seen.x + static_cast<int>(seen.width * part)) + " " +
                    std::to_string(seen.y + seen.height / 2) + " click 1");
    }

    void Unfold(const std::string& group)
    {
        constexpr double kFoldPicture = 18; // From the row's edge.
        const Seen row = desktop_.Find("group", group);
        if (!row.Is("open"))
            ClickAt(row, kFoldPicture / row.width);
    }

    // Of a value such as "1:05".
    int GetSeconds(const std::string& control)
    {
        int minutes = 0;
        int seconds = 0;
        const std::string value = desktop_.Find("control", control).value;
        return std::sscanf(value.c_str(), "%d:%d", &minutes, &seconds) == 2 ? minutes * 60 + seconds
                                                                            : -1;
    }

    // The file is open, the position moves on, and the button pauses.
    void ExpectPlaying(const std::string& file)
    {
        const std::string path = desktop_.GetMedia().GetPath(file);
        EXPECT_TRUE(WaitUntil([&] { return desktop_.HasOpen(path); })) << file;
        EXPECT_TRUE(WaitUntil([this] { return GetSeconds("Position") > 0; }));
        desktop_.Find("control", "Pause");
    }

    static std::string GetLine(const std::string& text, const std::string& beginning)
    {
        const std::size_t start = text.find(beginning);
        return start == std::string::npos ? "" : text.substr(start, text.find('\n', start) - start);
    }

    // What the evening left: the order, the new name, the new group with its track, and no trace of
    // the deleted one but in "Playing".
    void ExpectOnDisk()
    {
        const auto at = [](const std::string& text, const std::string& part) {
            const std::size_t place = text.find(part);
            EXPECT_NE(place, std::string::npos) << part << " in\n" << text;
            return place;
        };
        const std::string mine = desktop_.ReadProfile("tunehive/mine.kvm");
        EXPECT_LT(at(mine, "c.mp3"), at(mine, "a.mp3"));
        at(mine, "Gamma ray");
        for (const char* const gone : {"b.mp3", "d.mp3"})
            EXPECT_EQ(mine.find(gone), std::string::npos) << gone;
        const std::string playing = desktop_.ReadProfile("tunehive/playing.kvm");
        EXPECT_LT(at(playing, "b.mp3"), at(playing, "a.mp3"));
        at(desktop_.ReadProfile("tunehive/ginfo.xml"), "Evening");
        std::string users;
        for (const std::string& file : desktop_.GetMedia().Get().List())
            if (file.find("tunehive/user") != std::string::npos)
                users += desktop_.GetMedia().Get().Read(file);
        at(users, "d.mp3");
        settings_ = desktop_.ReadProfile("host.ini");
        at(settings_, "volume=");
        EXPECT_EQ(settings_.find("volume=60\n"), std::string::npos) << "it was turned up";
    }

    // The frame's, above the window.
    void DoubleClickTitle()
    {
        const Seen window = desktop_.Find("window", "kivo");
        desktop_.Do("mousemove --sync " + std::to_string(window.x + 90) + " " +
                    std::to_string(window.y - 8) + " click --repeat 2 --delay 60 1");
    }

    Desktop desktop_;
    std::string settings_; // The program's own, after the first day.
};

void ExpectSamePlace(const Seen& one, const Seen& other)
{
    EXPECT_EQ(one.x, other.x);
    EXPECT_EQ(one.y, other.y);
    EXPECT_EQ(one.width, other.width);
    EXPECT_EQ(one.height, other.height);
}

TEST_F(FirstDay, FromTheEmptyPageToTheNextMorning)
{
    MakeMusic();
    desktop_.Start();

    // A folder by the button of the empty page, then a file by the menu.
    desktop_.Click("control", "Add a folder…");
    ChooseInDialog(desktop_.GetMedia().GetPath("album"));
    for (const char* const title : {"Beta", "Gamma", "Delta"})
        desktop_.Find("My media", title);
    EXPECT_FALSE(desktop_.Sees("control", "Drop your music here"));
    ChooseEntry("Add music", "Files…");
    desktop_.Find("window", "Add files");
    desktop_.Press("Down"); // From "Playing" to "My media".
    desktop_.Click("control", "OK");
    ChooseInDialog(desktop_.GetMedia().GetPath("a.mp3"));
    desktop_.Find("My media", "Alpha");

    // Two tracks are played, paused, sought in, and stepped through.
    desktop_.DoubleClick("My media", "Alpha");
    ExpectPlaying("a.mp3");
    desktop_.DoubleClick("My media", "Beta");
    ExpectPlaying("album/b.mp3");
    desktop_.Click("control", "Pause");
    desktop_.Find("control", "Play");
    const std::string paused = desktop_.Find("control", "Position").value;
    ClickAt(desktop_.Find("control", "Position"), 0.5);
    EXPECT_TRUE(WaitUntil([&] { return GetSeconds("Position") >= 25; }));
    EXPECT_NE(desktop_.Find("control", "Position").value, paused);
    desktop_.Press("space");
    desktop_.Find("control", "Pause");
    desktop_.Press("ctrl+Left");
    ExpectPlaying("a.mp3");
    desktop_.Press("ctrl+Right");
    ExpectPlaying("album/b.mp3");
    desktop_.Click("control", "Volume");
    desktop_.Press("Up Up Up Up Escape");
    desktop_.Click("control", "Stop");
    desktop_.Find("control", "Play");

    // A track gets another name, a group is made, and tracks move: by the menu, and by hand.
    desktop_.Click("My media", "Gamma");
    desktop_.Press("F2");
    desktop_.Type("Gamma ray");
    desktop_.Press("Return");
    desktop_.Find("My media", "Gamma ray");
    ChooseEntry("Add music", "New group");
    desktop_.Type("Evening");
    desktop_.Press("Return");
    desktop_.Find("group", "Evening");
    desktop_.Click("My media", "Delta", /*button=*/3);
    desktop_.Click("entry", "Move to group");
    desktop_.Click("entry", "Evening");
    EXPECT_TRUE(WaitUntil([this] { return !desktop_.Sees("My media", "Delta"); }));
    Unfold("Evening");
    desktop_.Find("Evening", "Delta");
    Unfold("Playing");
    const Seen first = desktop_.Find("Playing", "Alpha");
    desktop_.Drag(desktop_.Find("Playing", "Beta"), first.x + 60, first.y + 4);
    EXPECT_TRUE(WaitUntil([&] { return desktop_.Find("Playing", "Beta").y == first.y; }));

    // One is deleted, and the program left by its menu.
    desktop_.Click("My media", "Beta");
    desktop_.Press("Delete");
    EXPECT_TRUE(WaitUntil([this] { return !desktop_.Sees("My media", "Beta"); }));
    EXPECT_TRUE(fs::exists(desktop_.GetMedia().GetPath("album/b.mp3"))) << "the file stays";
    ChooseEntry("Menu", "Quit");
    EXPECT_EQ(desktop_.WaitForEnd(), 0);
    ExpectOnDisk();

    // The next morning.
    desktop_.Start();
    Unfold("My media");
    EXPECT_LT(desktop_.Find("My media", "Gamma ray").y, desktop_.Find("My media", "Alpha").y);
    EXPECT_FALSE(desktop_.Sees("My media", "Beta"));
    Unfold("Evening");
    Unfold("Playing");
    EXPECT_LT(desktop_.Find("Playing", "Beta").y, desktop_.Find("Playing", "Alpha").y);
    desktop_.DoubleClick("Evening", "Delta");
    ExpectPlaying("album/d.mp3");
    Stop();
    for (const char* const line : {"volume=", "window.left=", "window.top=", "window.width="})
        EXPECT_EQ(GetLine(desktop_.ReadProfile("host.ini"), line), GetLine(settings_, line));
}

TEST_F(FirstDay, TheWindowComesBackAsItWas)
{
    desktop_.Start();
    desktop_.Do("getactivewindow windowsize --sync 420 760 windowmove --sync 300 120");
    desktop_.Click("control", "Show or hide the picture");
    const Seen bar = desktop_.Find("control", "Height of the picture");
    desktop_.Drag(bar, bar.x + 60, bar.y - 80);
    EXPECT_TRUE(WaitUntil(
        [&] { return desktop_.Find("control", "Height of the picture").y <= bar.y - 70; }));
    desktop_.Click("control", "Volume");
    desktop_.Find("control", "Volume");
    desktop_.Press("Up Up Up Up");
    desktop_.Press("Escape");
    const Seen window = desktop_.Find("window", "kivo");
    const Seen pane = desktop_.Find("control", "Picture");
    Stop();

    desktop_.Start();
    ExpectSamePlace(desktop_.Find("window", "kivo"), window);
    desktop_.Click("control", "Show or hide the picture");
    ExpectSamePlace(desktop_.Find("control", "Picture"), pane);

    // Its own size and place survive a day on which it filled the screen.
    DoubleClickTitle();
    const auto isLarge = [this] { return desktop_.Find("window", "kivo").width > 1200; };
    EXPECT_TRUE(WaitUntil(isLarge));
    Stop();
    desktop_.Start();
    EXPECT_TRUE(WaitUntil(isLarge));
    DoubleClickTitle();
    EXPECT_TRUE(WaitUntil([&] { return !isLarge(); }));
    ExpectSamePlace(desktop_.Find("window", "kivo"), window);
}

} // namespace
} // namespace kivo::test
