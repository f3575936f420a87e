// kivo_pictures OUTDIR MEDIADIR LOOK [SCENE…]: takes a picture of everything that a user meets on
// the first day, in one look of the desktop. `scripts/pictures` goes through all looks.

#include "tests/page/Scenes.h"

#include <QDir>
#include <QElapsedTimer>
#include <QPainter>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <cstdio>

namespace kivo::test {
namespace {

constexpr Look kLooks[] = {
  // Name, dark, high contrast, right to left, scale of the font, language.
    {"light",         false, false, false, 1.0, "en"   },
    {"dark",          true,  false, false, 1.0, "en"   },
    {"rtl",           false, false, true,  1.0, "en"   },
    {"dark-rtl",      true,  false, true,  1.0, "en"   },
    {"font150",       false, false, false, 1.5, "en"   },
    {"contrast",      false, true,  false, 1.0, "en"   },
    {"dark-contrast", true,  true,  false, 1.0, "en"   },
    {"german",        false, false, false, 1.0, "de"   },
    {"chinese",       false, false, false, 1.0, "zh_CN"},
};

// All that shows, as it lies on the screen.
QImage TakePicture(const Stage& stage)
{
    QList<QWidget*> shown;
    QRect whole = stage.GetWindow().geometry();
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        if (!widget->isVisible() || widget == &stage.GetWindow())
            continue;
        shown.append(widget);
        whole = whole.united(widget->geometry());
    }
    std::stable_sort(shown.begin(), shown.end(), [](const QWidget* a, const QWidget* b) {
        return a->width() * a->height() > b->width() * b->height();
    });
    shown.prepend(&stage.GetWindow());
    const qreal ratio = stage.GetWindow().devicePixelRatioF();
    const bool isAlone = shown.size() == 1;
    const QRect canvas = isAlone ? whole : whole.adjusted(-16, -16, 16, 16);
    QImage picture((QSizeF(canvas.size()) * ratio).toSize(), QImage::Format_RGB32);
    picture.setDevicePixelRatio(ratio);
    picture.fill(QColor(0x8E8A84));
    QPainter painter(&picture);
    for (QWidget* const widget : shown)
        painter.drawPixmap(widget->geometry().topLeft() - canvas.topLeft(), widget->grab());
    return picture;
}

void Take(const Look& look, const Scene& scene, const QDir& folder)
{
    constexpr int kSettled = 1200; // Milliseconds; menus and forms are open by then.
    constexpr int kLongestAct = 12000;
    const int width = static_cast<int>(scene.width * look.fontScale);
    Stage stage(look, scene.groups, width > 0 ? std::max(width, 280) : 0, scene.height);
    Stage::Turn(400); // The rows' lengths have come.
    bool isTaken = false;
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        TakePicture(stage).save(folder.filePath(QString::fromLatin1(scene.name) + ".png"));
        isTaken = true;
        stage.CloseAllModal();
        QTest::keyClick(stage.GetWindow().windowHandle(), Qt::Key_Escape); // Ends a drag.
    });
    // From the act on: it may wait in a loop of its own until its menu or form is closed.
    QTimer::singleShot(0, [&] {
        scene.act(stage);
        if (!isTaken && !timer.isActive())
            timer.start(kSettled);
    });
    QTimer watch;
    QElapsedTimer clock;
    clock.start();
    QObject::connect(&watch, &QTimer::timeout, [&] {
        const bool waits = QApplication::activePopupWidget() != nullptr ||
                           QApplication::activeModalWidget() != nullptr ||
                           clock.elapsed() > kLongestAct; // In a drag, say.
        if (!isTaken && !timer.isActive() && waits)
            timer.start(kSettled);
    });
    watch.start(50);
    Stage::WaitUntil([&] { return isTaken; }, 30000);
    Stage::Turn(50);
}

int Run(int argc, char** argv)
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 4) {
        std::fprintf(stderr, "usage: kivo_pictures OUTDIR MEDIADIR LOOK [SCENE...]\n");
        return 2;
    }
    const Look* const look =
        std::find_if(std::begin(kLooks), std::end(kLooks), [&](const Look& one) {
            return arguments[3] == QLatin1String(one.name);
        });
    if (look == std::end(kLooks)) {
        std::fprintf(stderr, "pictures: there is no look \"%s\"\n", qPrintable(arguments[3]));
        return 2;
    }
    SetUpFonts(qEnvironmentVariable("KIVO_PICTURE_FONT", "DejaVu Sans").toUtf8(), look->fontScale);
    const QDir folder(arguments[1]);
    QDir().mkpath(folder.path());
    for (const Scene& scene : MakeScenes(arguments[2].toStdString() + "/")) {
        if (arguments.size() > 4 && !arguments.mid(4).contains(QLatin1String(scene.name)))
            continue;
        Take(*look, scene, folder);
    }
    return 0;
}

} // namespace
} // namespace kivo::test

int main(int argc, char** argv)
{
    return kivo::test::Run(argc, argv);
}
