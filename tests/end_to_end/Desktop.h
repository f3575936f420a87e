#pragma once

#include "tests/end_to_end/KivoRun.h"
#include "tests/support/XScreen.h"

#include <QImage>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace kivo::test {

// Waits until `holds` does, for half a minute at most; false: it never did.
bool WaitUntil(const std::function<bool()>& holds);

// Something that shows, as a screen reader would name it. Lengths in pixels of the screen.
struct Seen {
    std::string kind; // "window", "control", "entry" of a menu, "group"; of a track its group.
    std::string name;
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    std::string state; // Words of "focused disabled active selected open".
    std::string value;

    [[nodiscard]] bool Is(const std::string& word) const;
};

// A user in front of an X display with a window manager: starts the program, sees where things are
// and works with real mouse and keys. Tests that use it fail where they see in vain, and leave a
// picture of the screen beside the test program.
class Desktop {
public:
    Desktop();
    Desktop(const Desktop&) = delete;
    Desktop& operator=(const Desktop&) = delete;
    ~Desktop();

    // False: what it needs isn't installed.
    [[nodiscard]] bool IsUp() const { return screen_.IsUp(); }

    // Starts the program and waits for its window. `variables` as in KivoRun::World.
    void Start(std::vector<std::string> arguments = {}, std::vector<std::string> variables = {});

    // Its status, once it has ended by itself; -1: it didn't.
    int WaitForEnd();
    void Signal(int number) { run_->Signal(number); }

    [[nodiscard]] bool HasOpen(const std::string& file) const; // Such as a song that plays.

    // Waits until it shows, and is enabled, and stands still. Fails the test if it never does.
    Seen Find(const std::string& kind, const std::string& name);
    [[nodiscard]] bool Sees(const std::string& kind, const std::string& name) const;
    [[nodiscard]] std::vector<Seen> Look() const;

    void Click(const std::string& kind, const std::string& name, int button = 1);
    void DoubleClick(const std::string& kind, const std::string& name);
    void Drag(const Seen& from, int x, int y) const; // Onto that place of the screen.
    void Press(const std::string& keys) const; // As xdotool names them: "ctrl+Right", "F2 Return".
    void Type(const std::string& text) const;
    std::string Do(const std::string& command) const; // xdotool's own words; its answer.

    QImage TakePicture(const std::string& file = "screen.png") const; // Null: there is none.
    [[nodiscard]] const MediaFolder& GetMedia() const { return media_; }
    [[nodiscard]] std::string ReadProfile(const std::string& file) const;

private:
    std::string Run(const std::vector<std::string>& command) const; // On the display; its output.
    [[nodiscard]] std::string GetSocket() const { return media_.GetPath("eyes"); }
    [[nodiscard]] std::optional<Seen> Peek(const std::string& kind, const std::string& name) const;

    MediaFolder media_;
    XScreen screen_;
    std::optional<KivoRun> run_;
};

} // namespace kivo::test
