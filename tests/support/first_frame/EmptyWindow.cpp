// What a window of the toolkit costs by itself: the measure for the start of the program. With an
// argument the window shows it, and so costs what the first font does.

#include <QApplication>
#include <QLabel>

int main(int argc, char** argv)
{
    const QApplication application(argc, argv);
    QWidget window;
    if (argc > 1)
        new QLabel(QString::fromUtf8(argv[1]), &window);
    window.resize(340, 680);
    window.show();
    return QApplication::exec();
}
