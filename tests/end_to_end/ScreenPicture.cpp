// Writes a picture of the whole X display to a file.

#include <QGuiApplication>
#include <QPixmap>
#include <QScreen>

int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    const QPixmap picture = QGuiApplication::primaryScreen()->grabWindow(0);
    return argc == 2 && picture.save(QString::fromLocal8Bit(argv[1]), "PNG") ? 0 : 1;
}
