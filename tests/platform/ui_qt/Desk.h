#pragma once

#include "platform/ui/qt/QtDesktop.h"
#include "shell/contracts/ui/SkinForm.h"
#include "tests/platform/ui/Rows.h"

#include <QImage>
#include <QWidget>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QAbstractButton;
class QMenu;

// What the tests of the peers stand on: Qt off-screen with the program's own skin, build file and
// texts, and controls as the program makes them.
namespace kivo::ui::qt {

struct DeskLook {
    const char* name = "light";
    bool dark = false;
    bool rightToLeft = false;
    bool highContrast = false;
    double fontScale = 1.0;
};

// Holds QtDesktop and the skin for one test.
class Desk {
public:
    explicit Desk(const DeskLook& look = {});
    Desk(const Desk&) = delete;
    Desk& operator=(const Desk&) = delete;
    ~Desk();

private:
    std::unique_ptr<QtDesktop> desktop_;
};

// The ids on screen, from Qt's view.
[[nodiscard]] std::vector<String> ShownIn(const CSkinTree& tree);

// A main form with the page's panels as the build file describes them and a tree.
class DeskPage {
public:
    explicit DeskPage(int width = 340, int height = 680);
    DeskPage(const DeskPage&) = delete;
    DeskPage& operator=(const DeskPage&) = delete;
    ~DeskPage();

    [[nodiscard]] QWidget* GetWindow() const;
    [[nodiscard]] QAbstractButton* GetButton(const String& id) const;
    [[nodiscard]] CSkinObject* Find(const String& id) const
    {
        return form_->FindControlRecusive(id);
    }
    CSkinForm& GetForm() { return *form_; }
    TestTree& GetTree() { return *tree_; }
    void OpenPane(bool open);

private:
    std::unique_ptr<CSkinForm> form_;
    TestTree* tree_ = nullptr;
};

// Lets the event loop turn until there is nothing to do.
void Settle();

// Acts on the menu that pops up next, and closes it.
void InMenu(const std::function<void(QMenu&)>& act);

// The widget's picture, once there is nothing to do.
QImage Grab(QWidget& widget);

} // namespace kivo::ui::qt
