#pragma once

#include "platform/ui/qt/QtDesktop.h"
#include "shell/contracts/ui/SkinForm.h"
#include "shell/contracts/ui/SkinTree.h"

#include <QPixmap>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>
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

// A group with a picture and a text, or a track with a text and a length.
class DeskRow final : public CSkinTreeItem {
public:
    DeskRow(CSkinTree& tree, const String& id, bool group);

    void BuildRow() override;
    void ReposControls() override;
    void RenderSelf(ICanvas& canvas) override;
    IMenu* GetRowMenu(const MenuDelegate& delegate) override;
    void OnRowCommand(IMenu* entry) override;
    void OnExpandChanged(CSkinTree* tree, int row, bool expanded) override;
    int OnListEvent(CSkinList* list, int context, int event, const String& text) override;
    bool OnEditEnd(const String& before, const String& after) override;
    void OnRenameKey() override;
    int CanBeSelected() override { return 1; }
    int CanBeEdited() override { return 1; }

    String text;
};

// A tree that writes down what it is told.
class DeskTree final : public CSkinTree {
public:
    int GetDragText(String& text) override;
    IMenu* GetMultiSelectMenu() override;
    IMenu* GetBlankAreaMenu() override;
    int OnBlankDragOver() override { return 1; }
    void OnBlankDrop(const String& text) override { log.push_back(u"blank " + text); }
    void OnDragFinished() override { log.emplace_back(u"drag end"); }

    DeskRow* AddGroup(const String& id);
    static DeskRow* AddTrack(DeskRow& group, const String& id);
    [[nodiscard]] std::vector<String> GetShown() const; // The ids on screen, from Qt's view.

    std::vector<String> log;
    bool refusesDrags = false; // As if what is selected could not be dragged.
};

// A main form with the page's panels as the build file describes them and a tree of samples.
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
    DeskTree& GetTree() { return *tree_; }
    void OpenPane(bool open);

private:
    std::unique_ptr<CSkinForm> form_;
    DeskTree* tree_ = nullptr;
};

// Lets the event loop turn until there is nothing to do.
void Settle();

// Acts on the menu that pops up next, and closes it.
void InMenu(const std::function<void(QMenu&)>& act);

// The widget's picture, once there is nothing to do.
QImage Grab(QWidget& widget);

} // namespace kivo::ui::qt
