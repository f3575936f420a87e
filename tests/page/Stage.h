#pragma once

#include "shell/contracts/base/String.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QTreeView>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace kivo {
class ITuneHiveRemote;
}

// The program's main form with the real plug-in in it, off-screen, for tests that walk the whole
// page and for the pictures of it. Everything is found by the name that a screen reader says.
// Thread: user interface.
namespace kivo::test {

struct Look {
    const char* name = "light";
    bool dark = false;
    bool highContrast = false;
    bool rightToLeft = false;
    double fontScale = 1.0;
    const char* locale = "en";
};

struct StageTrack {
    std::string path; // Or an address.
    std::string name; // What the user calls it; empty: as its file says.
};
struct StageGroup {
    std::string id; // "playing", "mine", or one of the user's.
    std::string name;
    std::vector<StageTrack> tracks;
};

// Before the first widget; `font` is a family.
void SetUpFonts(const char* font, double scale);

// The text of that id, as the page says it.
[[nodiscard]] QString Say(const char16_t* id);

// The program between its start and its end, on a profile with the groups given.
class Stage {
public:
    Stage(const Look& look, const std::vector<StageGroup>& groups, int width = 0, int height = 0);
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;
    ~Stage(); // In the way in which the program stops.

    [[nodiscard]] QWidget& GetWindow() const;
    [[nodiscard]] QTreeView& GetTree() const;
    [[nodiscard]] ITuneHiveRemote& GetRemote() const;

    // The widget of that accessible name, in any window that shows, but no label; null: none.
    [[nodiscard]] static QWidget* Find(const QString& name);
    [[nodiscard]] static QWidget* FindNamed(const char16_t* id) { return Find(Say(id)); }

    [[nodiscard]] QModelIndex FindRow(const QString& text) const; // Invalid: not on the page.
    [[nodiscard]] QPoint PlaceOf(const QString& text) const;      // In the tree's viewport.

    // Adds the files to "playing" and plays the first. False: it didn't start.
    [[nodiscard]] bool Play(const std::vector<std::string>& paths) const;

    // Turns the event loop until it is so. False: it wasn't within `milliseconds`.
    static bool WaitUntil(const std::function<bool()>& isSo, int milliseconds = 10000);
    static void Turn(int milliseconds); // Turns the event loop for that long.

    // Does it as soon as it can be done, which it says itself, from inside whatever loop then runs:
    // a menu or form waits in its own. Closes all windows when it can't be done for seconds.
    static void Once(const std::function<bool()>& tryIt);

    // Presses the mouse on a row and drags it to a place of the tree's viewport, where it stays,
    // `stepMs` for each of three steps. A drag of rows waits in a loop of its own.
    void StartDrag(const QPoint& from, const QPoint& to, int stepMs) const;

    // Of the tree's viewport.
    void OpenMenuAt(const QPoint& place,
                    QContextMenuEvent::Reason reason = QContextMenuEvent::Mouse) const;

    // Ends whatever is modal: forms, menus, boxes.
    void CloseAllModal();

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace kivo::test
