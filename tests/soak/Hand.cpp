#include "tests/soak/Hand.h"

#include "shell/contracts/common/Text.h"
#include "shell/contracts/desktop/TuneHiveRemote.h"

#include <QAbstractButton>
#include <QDropEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <QUrl>
#include <QWheelEvent>

#include <utility>

namespace kivo::test {

namespace {

constexpr std::size_t kMostTracks = 300; // More than these and the hand begins to remove.

} // namespace

// How often, beside the others.
const Hand::Deed Hand::kDeeds[] = {
    {"play a row",     10, &Hand::PlayRow     },
    {"skip",           10, &Hand::Skip        },
    {"keys",           6,  &Hand::PressKeys   },
    {"seek",           6,  &Hand::Seek        },
    {"add files",      4,  &Hand::AddFiles    },
    {"add a folder",   1,  &Hand::AddFolder   },
    {"drop files",     2,  &Hand::DropFiles   },
    {"remove rows",    5,  &Hand::RemoveRows  },
    {"drag rows",      4,  &Hand::DragRows    },
    {"open a menu",    3,  &Hand::OpenMenu    },
    {"press a button", 6,  &Hand::PressButton },
    {"wheel",          3,  &Hand::TurnWheel   },
    {"splitter",       2,  &Hand::MoveSplitter},
    {"resize",         1,  &Hand::Resize      },
};

Hand::Hand(Stage& stage, std::vector<std::string> files, std::string folder, unsigned seed)
    : stage_(stage)
    , files_(std::move(files))
    , folder_(std::move(folder))
    , chance_(seed)
    , counts_(std::size(kDeeds))
{
}

int Hand::Pick(int count)
{
    return count > 0 ? std::uniform_int_distribution(0, count - 1)(chance_) : 0;
}

void Hand::Act()
{
    if (GetTracks().size() > kMostTracks) {
        RemoveRows();
        return;
    }
    std::vector<int> weights;
    for (const Deed& deed : kDeeds)
        weights.push_back(deed.weight);
    const std::size_t chosen =
        std::discrete_distribution<std::size_t>(weights.begin(), weights.end())(chance_);
    ++counts_[chosen];
    (this->*kDeeds[chosen].run)();
}

std::vector<Hand::Count> Hand::GetCounts() const
{
    std::vector<Count> counts;
    for (std::size_t i = 0; i < std::size(kDeeds); ++i)
        counts.push_back({kDeeds[i].name, counts_[i]});
    return counts;
}

std::vector<QModelIndex> Hand::GetTracks() const
{
    std::vector<QModelIndex> tracks;
    const QAbstractItemModel& model = *stage_.GetTree().model();
    for (int group = 0; group < model.rowCount(); ++group) {
        const QModelIndex parent = model.index(group, 0);
        for (int row = 0; row < model.rowCount(parent); ++row)
            tracks.push_back(model.index(row, 0, parent));
    }
    return tracks;
}

QPoint Hand::PickPlace()
{
    const QWidget& rows = *stage_.GetTree().viewport();
    return {30 + Pick(rows.width() - 60), Pick(rows.height())};
}

void Hand::Click(const QPoint& place, Qt::KeyboardModifiers modifiers)
{
    QTest::mouseClick(stage_.GetTree().viewport(), Qt::LeftButton, modifiers, place);
}

void Hand::PlayRow()
{
    const std::vector<QModelIndex> tracks = GetTracks();
    if (tracks.empty())
        return;
    const QModelIndex& track =
        tracks[static_cast<std::size_t>(Pick(static_cast<int>(tracks.size())))];
    stage_.GetTree().scrollTo(track);
    QTest::mouseDClick(stage_.GetTree().viewport(),
                       Qt::LeftButton,
                       {},
                       stage_.GetTree().visualRect(track).center());
}

void Hand::Skip()
{
    const int times = Pick(6) == 0 ? 20 : 1;
    for (int i = 0; i < times; ++i) {
        if (Pick(4) == 0)
            stage_.GetRemote().Previous();
        else
            stage_.GetRemote().Next();
    }
}

void Hand::PressKeys()
{
    constexpr Qt::Key kKeys[] = {Qt::Key_Space,
                                 Qt::Key_Space,
                                 Qt::Key_Down,
                                 Qt::Key_Up,
                                 Qt::Key_PageDown,
                                 Qt::Key_Home,
                                 Qt::Key_End,
                                 Qt::Key_Return,
                                 Qt::Key_Left,
                                 Qt::Key_Right,
                                 Qt::Key_Tab,
                                 Qt::Key_F11,
                                 Qt::Key_F2,
                                 Qt::Key_A,
                                 Qt::Key_Escape};
    QWidget* const focus = QApplication::focusWidget();
    QTest::keyPress(focus != nullptr ? focus : &stage_.GetWindow(),
                    kKeys[Pick(static_cast<int>(std::size(kKeys)))]);
}

void Hand::Seek()
{
    stage_.GetRemote().Seek(stage_.GetRemote().GetLength() * Pick(110) / 100.0);
}

void Hand::AddFiles()
{
    std::vector<String> items;
    for (int i = 0; i <= Pick(8); ++i)
        items.push_back(common::PathToText(
            files_[static_cast<std::size_t>(Pick(static_cast<int>(files_.size())))]));
    stage_.GetRemote().Open(items, Pick(2) == 0 ? u"mine" : u"playing", Pick(2) == 0);
}

void Hand::AddFolder()
{
    stage_.GetRemote().Open(
        {common::PathToText(folder_)}, Pick(2) == 0 ? u"mine" : u"playing", Pick(2) == 0);
}

void Hand::DropFiles()
{
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QString::fromStdString(
        Pick(4) == 0 ? folder_
                     : files_[static_cast<std::size_t>(Pick(static_cast<int>(files_.size())))]))});
    QWidget* const rows = stage_.GetTree().viewport();
    const QPoint place = PickPlace();
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(rows, &enter);
    QDragMoveEvent move(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(rows, &move);
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(rows, &drop);
}

void Hand::RemoveRows()
{
    const std::vector<QModelIndex> tracks = GetTracks();
    if (tracks.empty())
        return;
    const int count = tracks.size() > kMostTracks ? 200 : 1 + Pick(6);
    const int first = Pick(static_cast<int>(tracks.size()));
    QTreeView& tree = stage_.GetTree();
    tree.setFocus();
    tree.scrollTo(tracks[static_cast<std::size_t>(first)]);
    Click(tree.visualRect(tracks[static_cast<std::size_t>(first)]).center());
    for (int i = 1; i < count; ++i)
        QTest::keyPress(&tree, Qt::Key_Down, Qt::ShiftModifier);
    QTest::keyPress(&tree, Qt::Key_Delete);
}

// The drag waits in a loop of its own for what the timers do.
void Hand::DragRows()
{
    QWidget& rows = *stage_.GetTree().viewport();
    QWindow* const window = stage_.GetWindow().windowHandle();
    const QPoint to = PickPlace();
    const QPoint goal = rows.mapTo(&stage_.GetWindow(), to);
    QTimer::singleShot(90, window, [=] { QTest::mouseRelease(window, Qt::LeftButton, {}, goal); });
    QTimer::singleShot(140, window, [=] { QTest::keyClick(window, Qt::Key_Escape); });
    stage_.StartDrag(PickPlace(), to, /*stepMs=*/20);
    QTest::mouseRelease(&rows, Qt::LeftButton, {}, to);
}

// Whatever opens is ended by the watch that the driver keeps.
void Hand::OpenMenu()
{
    stage_.OpenMenuAt(PickPlace());
}

void Hand::PressButton()
{
    QList<QAbstractButton*> buttons;
    for (QAbstractButton* const button : stage_.GetWindow().findChildren<QAbstractButton*>())
        if (button->isVisible() && button->isEnabled())
            buttons.append(button);
    if (buttons.isEmpty())
        return;
    QTest::mouseClick(buttons[Pick(static_cast<int>(buttons.size()))], Qt::LeftButton);
}

void Hand::TurnWheel()
{
    QList<QWidget*> widgets;
    for (QWidget* const widget : stage_.GetWindow().findChildren<QWidget*>())
        if (widget->isVisible())
            widgets.append(widget);
    QWidget* const widget = widgets[Pick(static_cast<int>(widgets.size()))];
    const QPointF place = widget->rect().center();
    QWheelEvent turn(place,
                     widget->mapToGlobal(place),
                     {},
                     QPoint(0, 120 * (Pick(9) - 4)),
                     Qt::NoButton,
                     Qt::NoModifier,
                     Qt::NoScrollPhase,
                     /*inverted=*/false);
    QApplication::sendEvent(widget, &turn);
}

void Hand::MoveSplitter()
{
    for (QWidget* const bar : stage_.GetWindow().findChildren<QWidget*>()) {
        if (!bar->isVisible() || bar->cursor().shape() != Qt::SplitVCursor)
            continue;
        const QPoint grip = bar->rect().center();
        QTest::mousePress(bar, Qt::LeftButton, {}, grip);
        for (int step = 0; step < 5; ++step)
            QTest::mouseMove(bar, grip + QPoint(0, Pick(81) - 40));
        QTest::mouseRelease(bar, Qt::LeftButton, {}, grip);
        return;
    }
}

void Hand::Resize()
{
    stage_.GetWindow().resize(320 + Pick(500), 420 + Pick(500));
}

void Hand::CleanUp()
{
    stage_.GetRemote().Stop();
    QTreeView& tree = stage_.GetTree();
    constexpr int kTries = 60;
    for (int i = 0; i < kTries && !GetTracks().empty(); ++i) {
        tree.setFocus();
        tree.expandAll();
        tree.scrollTo(GetTracks().front());
        Click(tree.visualRect(GetTracks().front()).center());
        QTest::keyPress(&tree, Qt::Key_End, Qt::ShiftModifier);
        QTest::keyPress(&tree, Qt::Key_Delete);
        Stage::Turn(100);
    }
}

} // namespace kivo::test
