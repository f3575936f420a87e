// Renders our drawings: the PNG files under the bound names at build time, and a sheet of all of
// them on both grounds, at true and at four times their size, to be looked at.
//   kivo_icons png SOURCE.svg TARGET.png [WIDTH HEIGHT]
//   kivo_icons sheet TARGET.png SOURCE.svg…
#include <QFileInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

namespace {

constexpr int kCellWidth = 150;
constexpr int kCellHeight = 104;
constexpr int kColumns = 8;
constexpr int kZoom = 4;

int Fail(const char* what, const QString& path)
{
    std::fprintf(stderr, "kivo_icons: %s: %s\n", what, qPrintable(path));
    return 1;
}

int WritePicture(const QStringList& arguments)
{
    QSvgRenderer drawing(arguments[2]);
    if (!drawing.isValid())
        return Fail("no drawing", arguments[2]);
    QSize size = drawing.defaultSize();
    if (arguments.size() > 5)
        size = QSize(arguments[4].toInt(), arguments[5].toInt());
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawing.setAspectRatioMode(Qt::KeepAspectRatio);
    drawing.render(&painter);
    painter.end();
    return picture.save(arguments[3]) ? 0 : Fail("can't write", arguments[3]);
}

QImage Tinted(QSvgRenderer& drawing, const QSize& size, const QColor& tint)
{
    QImage picture(size, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawing.render(&painter);
    if (tint.isValid()) {
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(picture.rect(), tint);
    }
    return picture;
}

int WriteSheet(const QStringList& arguments)
{
    const qsizetype count = arguments.size() - 3;
    const int rows = static_cast<int>((count + kColumns - 1) / kColumns);
    const QSize half(kColumns * kCellWidth, rows * kCellHeight);
    QImage sheet(half.width(), half.height() * 2, QImage::Format_RGB32);
    QPainter painter(&sheet);
    for (const bool dark : {false, true}) {
        const int top = dark ? half.height() : 0;
        painter.fillRect(0, top, half.width(), half.height(), QColor(dark ? 0x24211e : 0xf6f3ee));
        for (qsizetype i = 0; i < count; ++i) {
            QSvgRenderer drawing(arguments[i + 3]);
            if (!drawing.isValid())
                return Fail("no drawing", arguments[i + 3]);
            const QSize size = drawing.defaultSize();
            const QString name = QFileInfo(arguments[i + 3]).completeBaseName();
            const bool coloured = name.startsWith(QLatin1String("tunehive")) ||
                                  name.startsWith(QLatin1String("kivo")) ||
                                  name == QLatin1String("player") || name == QLatin1String("empty");
            const QColor tint = coloured ? QColor() : QColor(dark ? 0xefeae3 : 0x27231f);
            const int zoom = size.width() > 40 ? 1 : kZoom;
            const QImage large = Tinted(drawing, size.boundedTo(QSize(90, 80)) * zoom, tint);
            const QPoint at(static_cast<int>(i % kColumns) * kCellWidth + 6,
                            top + static_cast<int>(i / kColumns) * kCellHeight + 4);
            painter.drawImage(at, large);
            painter.drawImage(at + QPoint(large.width() + 8, 20),
                              Tinted(drawing, size.boundedTo(QSize(32, 32)), tint));
        }
    }
    painter.end();
    return sheet.save(arguments[2]) ? 0 : Fail("can't write", arguments[2]);
}

} // namespace

int main(int argc, char** argv)
{
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() >= 4 && arguments[1] == QLatin1String("png"))
        return WritePicture(arguments);
    if (arguments.size() >= 4 && arguments[1] == QLatin1String("sheet"))
        return WriteSheet(arguments);
    std::fputs(
        "kivo_icons png SOURCE.svg TARGET.png [WIDTH HEIGHT] | sheet TARGET.png SOURCE.svg…\n",
        stderr);
    return 2;
}
