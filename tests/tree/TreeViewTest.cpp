#include "medialib/IMediaLibManager.h"
#include "mediares/IMediaResManager.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Paths.h"
#include "shell/contracts/ui/SkinForm.h"
#include "tests/platform/ui_qt/Desk.h"
#include "tests/support/FakeHost.h"
#include "tests/support/TempFolder.h"
#include "tests/tree/DeadDisk.h"
#include "tree/MediaTree.h"
#include "tree/MediaTreeCategory.h"
#include "tree/MediaTreePanel.h"

#include <gtest/gtest.h>
#include <QHelpEvent>
#include <QMenu>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <sys/resource.h>

#include <functional>
#include <string>

namespace kivo::tunehive {
namespace {

// Of this thread: it holds on a busy machine.
double GetCpuMs()
{
    rusage usage{};
    getrusage(RUSAGE_THREAD, &usage);
    const auto ms = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_usec) / 1e3;
    };
    return ms(usage.ru_utime) + ms(usage.ru_stime);
}

// The page's own panel with the real tree in a real window, off-screen.
class TreeViewTest : public testing::Test {
protected:
    ~TreeViewTest() override
    {
        if (panel_ != nullptr)
            GetMediaLibManager()->StopWork(5000);
        form_.reset();
        host_.ReleasePosted();
        DestroyMediaResManager();
        DestroyMediaLibManager();
    }

    // Opens the page with tracks of these paths in "playing".
    void Open(const std::string& folder, int count)
    {
        std::string items = R"(<?xml version="1.0" encoding="utf-8" standalone="no" ?><Items>)";
        for (int i = 0; i < count; ++i)
            items += "<Item path=\"" + folder + std::to_string(i) + ".mp3\" name=\"\" />";
        folder_.Write("tunehive/playing.kvm", items + "</Items>");
        GetMediaResManager()->Init(folder_.GetPath() + u"tunehive/");
        GetMediaLibManager()->Initialize(folder_.GetPath() + u"tunehive/lib/");
        form_ = std::make_unique<ui::CSkinForm>();
        form_->SetBounds(0, 0, 340, 680);
        form_->Create(ui::wndstyle::kPopup, u"Main", u"kivo", Rect{}, nullptr, 0);
        panel_ = std::make_unique<CMediaTreePanel>(nullptr).release();
        panel_->SetAnchorStyle(ui::anchor::kFill);
        form_->RegisterControl(panel_);
        panel_->Build(form_.get());
        form_->ShowWindow(5);
        form_->RePositionSubControls();
        Turn();
    }
    void Turn()
    {
        ui::qt::Settle();
        host_.RunPosted();
        ui::qt::Settle();
    }

    [[nodiscard]] CMediaTree& GetTree() const { return *panel_->GetTree(); }
    [[nodiscard]] CMediaTreeCategory& GetPlaying() const
    {
        return *GetTree().FindCategory(u"playing");
    }
    [[nodiscard]] QTreeView& GetView() const
    {
        return *qobject_cast<QTreeView*>(ui::qt::WidgetOf(&GetTree()));
    }
    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(&GetView(), key, modifiers);
        Turn();
    }

    ui::qt::Desk desk_;
    test::FakeHost host_;
    test::TempFolder folder_;
    std::unique_ptr<ui::CSkinForm> form_;
    CMediaTreePanel* panel_ = nullptr; // The form's.
};

TEST_F(TreeViewTest, ADeadDiskNeverStopsTheWindow)
{
    constexpr int kTracks = 300;
    test::DeadDisk disk;
    Open("/dead/", kTracks);
    disk.WaitForAQuestion(); // The worker asks for the rows on screen, and hangs.
    ASSERT_EQ(GetPlaying().GetChildCount(), kTracks);
    EXPECT_EQ(GetPlaying().GetChild(0)->GetViewText(u"text"), u"0.mp3");

    Press(Qt::Key_End);
    Press(Qt::Key_Home);
    Press(Qt::Key_Down);
    Press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(GetTree().GetSelectedCount(), kTracks);
    QTest::keyClicks(&GetView(), QStringLiteral("250"));
    Turn();
    EXPECT_EQ(GetTree().GetCurrentRow(), GetPlaying().GetChild(250));
    Press(Qt::Key_F2);
    EXPECT_EQ(GetTree().GetEditedRow(), GetPlaying().GetChild(250));
    GetTree().EndEdit();
    const QPoint row = GetView().visualRect(GetView().currentIndex()).center();
    QHelpEvent tip(QEvent::ToolTip, row, GetView().viewport()->mapToGlobal(row));
    QCoreApplication::sendEvent(GetView().viewport(), &tip);
    QTimer::singleShot(0, [] {
        if (QWidget* const menu = QApplication::activePopupWidget())
            menu->close();
    });
    GetTree().OnContextMenu(GetTree().GetCurrentRow(), 0, 0);
    GetTree().RenameTrack(u"playing", GetPlaying().GetChild(1)->GetID(), u"renamed");
    GetTree().OnFilesDropped(&GetPlaying(), {u"/dead/new.mp3"});
    GetTree().DeleteTrack(u"playing", GetPlaying().GetChild(0)->GetID());
    Turn();
    GetTree().SaveAllGroups();
    EXPECT_EQ(GetPlaying().GetChildCount(), kTracks - 1);
    EXPECT_EQ(disk.CountOwnQuestions(), 0);
    // Only who wants to know at once asks the disk itself.
    static_cast<void>(GetPlaying().GetChild(2)->GetCellText(u"text"));
    EXPECT_GT(disk.CountOwnQuestions(), 0);

    // Once the disk answers, the rows say that their files have gone.
    disk.Answer();
    Press(Qt::Key_Home);
    while (GetPlaying().GetChild(0)->GetCellState() != ui::RowCells::Made)
        Turn();
    EXPECT_FALSE(GetPlaying().GetChild(0)->HasCell(u"length"));
    while (GetPlaying().GetChildCount() < kTracks)
        Turn(); // What was dropped comes as well.
}

// Ten times what each may take on the machine of the figures, at least.
TEST_F(TreeViewTest, LargeGroupsStayFarBelowTheirLimits)
{
    constexpr int kTracks = 100'000;
    const auto expectBelow = [this](double limitMs, const char* name, const auto& act) {
        const double start = GetCpuMs();
        act();
        ui::qt::Settle();
        EXPECT_LT(GetCpuMs() - start, limitMs) << name;
    };
    expectBelow(4000, "start", [&] { Open("/nowhere/", kTracks); });
    GetMediaLibManager()->StopWork(5000);
    Turn();
    const auto press = [this](Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&GetView(), key, modifiers);
    };
    expectBelow(300, "end", [&] { press(Qt::Key_End); });
    expectBelow(300, "home", [&] { press(Qt::Key_Home); });
    expectBelow(300, "fold", [&] { press(Qt::Key_Left); });
    expectBelow(300, "expand", [&] { press(Qt::Key_Right); });
    press(Qt::Key_Down);
    expectBelow(300, "select all", [&] { press(Qt::Key_A, Qt::ControlModifier); });
    ASSERT_EQ(GetTree().GetSelectedCount(), kTracks);
    GetTree().ClearAllSelected();

    std::vector<String> moved;
    for (int i = 50'000; i < 51'000; ++i)
        moved.push_back(GetPlaying().GetChild(i)->GetID());
    expectBelow(
        1000, "move", [&] { GetPlaying().ReorderRows(moved, GetPlaying().GetChild(0)->GetID()); });
    EXPECT_EQ(GetPlaying().GetChild(0)->GetID(), moved[0]);
    GetTree().BeginUpdate();
    for (int i = 0; i < kTracks; i += 5)
        GetPlaying().GetChild(i)->SetSelected(1);
    GetTree().EndUpdate(1);
    expectBelow(1000, "delete", [&] { GetTree().DeleteSelectedTracks(); });
    EXPECT_EQ(GetPlaying().GetChildCount(), kTracks - kTracks / 5);
    CStringArray added;
    for (int i = 0; i < 10'000; ++i)
        added.push_back(u"/nowhere/new/" + common::ToText(i));
    expectBelow(1000, "add", [&] { GetTree().AddPaths(u"playing", added); });
    expectBelow(1000, "the end of a track", [&] {
        String url;
        GetTree().BeginMoves();
        for (int i = 0; i < GetTree().GetPlayingCount(); ++i) {
            GetTree().GetNextURL(url, /*wrap=*/1);
            EXPECT_FALSE(PathFileExistsW(url));
        }
        GetTree().EndMoves();
    });
}

} // namespace
} // namespace kivo::tunehive
