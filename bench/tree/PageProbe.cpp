#include "bench/tree/PageProbe.h"

#include "bench/support/Measure.h"
#include "host/Program.h"
#include "shell/contracts/common/Text.h"
#include "shell/contracts/ui/SkinForm.h"
#include "shell/contracts/ui/SkinTree.h"
#include "shell/contracts/ui/SkinWndManager.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTimer>
#include <QTreeView>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <utility>
#include <vector>

namespace kivo::bench {

namespace {

constexpr int kRepeats = 5;
constexpr int kSettleMs = 300;

double GetCpuMs()
{
    return 1000 * GetCpuSeconds();
}

double GetOwnCpuMs()
{
    return 1000 * GetThreadSeconds();
}

void Print(const char* name, double value)
{
    std::printf("%s %.2f\n", name, value);
    std::fflush(stdout);
}

// Watches the tree's viewport being painted. A frame counts when the turn of the loop that painted
// it is over.
class Probe final : public QObject {
public:
    Probe(ProbeTask task, double start)
        : task_(task)
        , start_(start)
    {
    }

    bool eventFilter(QObject* object, QEvent* event) override
    {
        if (event->type() != QEvent::Paint || !FindTree(object))
            return false;
        const bool isFirst = paints_++ == 0;
        const bool isSettled = !settled_ && AreRowsMade();
        settled_ = settled_ || isSettled;
        if (isFirst || isSettled)
            QTimer::singleShot(
                0, this, [this, isFirst, isSettled] { OnFrame(isFirst, isSettled); });
        return false;
    }

    [[nodiscard]] double GetSinceStart() const { return 1000 * (GetSeconds() - start_); }

private:
    // True: the object is the viewport of a tree that shows all there is to show.
    bool FindTree(QObject* object)
    {
        if (view_ == nullptr) {
            auto* const view = qobject_cast<QTreeView*>(object->parent());
            ui::CSkinForm* const form = ui::CSkinWndManager::GetInstance()->GetMainForm();
            if (view == nullptr || view->viewport() != object || form == nullptr)
                return false;
            tree_ = dynamic_cast<ui::CSkinTree*>(form->FindControlRecusive(u"PlayList"));
            if (tree_ == nullptr || tree_->GetRowCount() == 0)
                return false;
            view_ = view;
        }
        return object == view_->viewport();
    }

    [[nodiscard]] bool AreRowsMade() const
    {
        const int height = view_->visualRect(view_->indexAt(QPoint(1, 1))).height();
        if (height <= 0)
            return false;
        const int shown = std::min(view_->viewport()->height() / height + 1, tree_->GetRowCount());
        for (int place = 0; place < shown; ++place)
            if (tree_->GetRowAt(place)->GetCellState() != ui::RowCells::Made)
                return false;
        return true;
    }

    void OnFrame(bool isFirst, bool isSettled)
    {
        if (isFirst) {
            Print("painted", GetSinceStart());
            Print("painted-cpu", GetCpuMs());
            Print("painted-own-cpu", GetOwnCpuMs());
        }
        if (!isSettled)
            return;
        Print("settled", GetSinceStart());
        Print("settled-cpu", GetCpuMs());
        Print("settled-own-cpu", GetOwnCpuMs());
        Print("resident", GetMemoryMb());
        Print("proportional", GetSharedMemoryMb());
        QTimer::singleShot(kSettleMs, this, [this] { RunTask(); });
    }

    void RunTask()
    {
        if (task_ == ProbeTask::Steps)
            RunSteps();
        if (task_ == ProbeTask::Leave) {
            RunLeave();
            return;
        }
        // The steps' tracks need not be saved.
        std::fflush(stdout);
        std::_Exit(0);
    }

    struct Times {
        double wall;
        double cpu; // Of this thread.
    };

    // From the start of an act to the end of the turn that painted what came of it.
    [[nodiscard]] Times TimeToFrame(const std::function<void()>& act) const
    {
        QCoreApplication::processEvents();
        const int before = paints_;
        const double start = GetSeconds();
        const double cpu = GetOwnCpuMs();
        act();
        while (paints_ == before)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return {1000 * (GetSeconds() - start), GetOwnCpuMs() - cpu};
    }

    void Report(const char* name,
                const std::function<void()>& prepare,
                const std::function<void()>& act,
                int repeats = kRepeats)
    {
        std::vector<double> wall;
        std::vector<double> cpu;
        for (int i = 0; i < repeats; ++i) {
            prepare();
            view_->viewport()->update();
            const Times times = TimeToFrame(act);
            wall.push_back(times.wall);
            cpu.push_back(times.cpu);
        }
        const auto middle = static_cast<std::size_t>(repeats / 2);
        std::sort(wall.begin(), wall.end());
        std::sort(cpu.begin(), cpu.end());
        Print(name, wall[middle]);
        Print((std::string(name) + "-cpu").c_str(), cpu[middle]);
    }

    void Press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QKeyEvent press(QEvent::KeyPress, key, modifiers);
        QApplication::sendEvent(view_, &press);
    }

    [[nodiscard]] ui::CSkinTreeItem& GetGroup() const { return *tree_->GetRoot()->GetChild(0); }

    void RunSteps()
    {
        const auto nothing = [] {};
        const auto toGroup = [this] {
            tree_->ClearAllSelected();
            Press(Qt::Key_Home);
        };
        Report(
            "expand",
            [&] {
                toGroup();
                Press(Qt::Key_Left);
            },
            [&] { Press(Qt::Key_Right); });
        Report("end", toGroup, [&] { Press(Qt::Key_End); });
        Report(
            "home", [&] { Press(Qt::Key_End); }, [&] { Press(Qt::Key_Home); });
        const auto toTrack = [&] {
            toGroup();
            Press(Qt::Key_Down);
        };
        Report("select-all", toTrack, [&] { Press(Qt::Key_A, Qt::ControlModifier); });
        toTrack();
        Report("move-1000-to-top", nothing, [&] { MoveToTop(); });
        Report(
            "delete-fifth", [&] { SelectFifth(); }, [&] { Press(Qt::Key_Delete); }, 1);
        Report(
            "add-10000", nothing, [&] { Add(); }, 3);
    }

    void SelectFifth()
    {
        tree_->BeginUpdate();
        tree_->ClearAllSelected();
        for (int i = 0; i < GetGroup().GetChildCount(); i += 5)
            GetGroup().GetChild(i)->SetSelected(1);
        tree_->SetCurrentRow(GetGroup().GetChild(0));
        tree_->EndUpdate(1);
    }

    // As a drag of a thousand tracks from the middle does it, from the drop on.
    void MoveToTop()
    {
        const int middle = GetGroup().GetChildCount() / 2;
        String text = u"KIVO2006TREEDRAG";
        for (int i = 0; i < std::min(1000, middle); ++i)
            text += u":playing#" + GetGroup().GetChild(middle + i)->GetID();
        ui::CSkinTreeItem* const first = GetGroup().GetChild(0);
        tree_->OnDragOver(first);
        tree_->OnTextDropped(first, text);
    }

    void Add()
    {
        CStringArray paths;
        for (int i = 0; i < 10'000; ++i)
            paths.push_back(u"/nowhere/new/" + common::ToText(i) + u".mp3");
        const int before = GetGroup().GetChildCount();
        tree_->OnFilesDropped(&GetGroup(), paths);
        while (GetGroup().GetChildCount() == before) // The worker looks for folders among them.
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }

    // Ends the program as a logout does, with one track renamed.
    void RunLeave()
    {
        ui::CSkinTreeItem* const row = GetGroup().GetChild(0);
        if (row != nullptr)
            row->OnEditEnd(String(), u"renamed " + common::ToText(static_cast<int>(GetCpuMs())));
        Print("leaving-cpu", GetCpuMs());
        Print("leaving", GetSinceStart());
        static_cast<void>(std::raise(SIGTERM));
    }

    ProbeTask task_;
    double start_; // Of GetSeconds.
    QTreeView* view_ = nullptr;
    ui::CSkinTree* tree_ = nullptr;
    int paints_ = 0;
    bool settled_ = false;
};

Probe* probe = nullptr;

void WatchApplication()
{
    if (probe == nullptr)
        return;
    Print("toolkit", probe->GetSinceStart());
    QCoreApplication::instance()->installEventFilter(probe);
    // Without a display the program keeps its form hidden.
    QTimer::singleShot(0, probe, [] {
        if (ui::CSkinForm* const form = ui::CSkinWndManager::GetInstance()->GetMainForm())
            form->ShowWindow(/*command=*/5);
    });
}
Q_COREAPP_STARTUP_FUNCTION(WatchApplication)

} // namespace

int RunProbe(const std::string& profile, ProbeTask task, double start)
{
    Probe watched(task, start);
    probe = &watched;
    Print("main", watched.GetSinceStart());
    host::Options options;
    options.profile = profile;
    const int status = host::Program(std::move(options)).Run();
    probe = nullptr;
    return status;
}

} // namespace kivo::bench
