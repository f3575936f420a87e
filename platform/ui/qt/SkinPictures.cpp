#include "platform/ui/qt/QtText.h"
#include "platform/ui/qt/SkinLook.h"
#include "shell/contracts/framework/Files.h"

#include <QBuffer>
#include <QCache>
#include <QHash>
#include <QImageReader>
#include <QPaintDevice>
#include <QPainter>
#include <QSvgRenderer>

#include <cmath>
#include <memory>
#include <string>

// Pictures of the skin: a file is read once, what is painted is cached by file, part, size, ratio
// and colour.
namespace kivo::ui::qt {

namespace {

constexpr std::size_t kFileLimit = std::size_t{8} << 20U;
constexpr int kEdgeLimit = 4096;            // Device pixels.
constexpr qsizetype kCacheLimit = 8 * 1024; // KiB.

// A picture file: a drawing, or a bitmap of one or two pixels a unit.
struct PictureFile {
    std::unique_ptr<QSvgRenderer> drawing;
    QImage bitmap;
    int scale = 1;

    [[nodiscard]] bool IsEmpty() const { return !drawing && bitmap.isNull(); }
    [[nodiscard]] QSize GetSize() const
    {
        return drawing ? drawing->defaultSize() : bitmap.size() / scale;
    }
};

QByteArray ReadBytes(const String& path)
{
    std::string bytes;
    if (ReadFileBytes(path, bytes, kFileLimit) != ReadResult::Read)
        return {};
    return QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

QImage ReadBitmap(const String& path)
{
    QByteArray bytes = ReadBytes(path);
    QBuffer buffer(&bytes);
    if (bytes.isEmpty() || !buffer.open(QIODevice::ReadOnly))
        return {};
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    if (size.width() > kEdgeLimit || size.height() > kEdgeLimit)
        return {};
    return reader.read();
}

String WithEnding(const String& path, StringView ending)
{
    const std::size_t dot = path.rfind(u'.');
    const std::size_t slash = path.rfind(u'/');
    const bool hasDot = dot != String::npos && (slash == String::npos || dot > slash);
    return (hasDot ? path.substr(0, dot) : path) + String(ending);
}

PictureFile ReadPicture(const String& path)
{
    PictureFile file;
    const QByteArray svg = ReadBytes(WithEnding(path, u".svg"));
    if (!svg.isEmpty()) {
        auto drawing = std::make_unique<QSvgRenderer>(svg);
        const QSize size = drawing->defaultSize();
        if (drawing->isValid() && !size.isEmpty() && size.width() <= kEdgeLimit &&
            size.height() <= kEdgeLimit) {
            file.drawing = std::move(drawing);
            return file;
        }
    }
    const std::size_t dot = path.rfind(u'.');
    if (dot != String::npos) {
        file.bitmap = ReadBitmap(path.substr(0, dot) + u"@2x" + path.substr(dot));
        file.scale = 2;
    }
    if (file.bitmap.isNull()) {
        file.bitmap = ReadBitmap(path);
        file.scale = 1;
    }
    return file;
}

struct PictureStore {
    QHash<QString, std::shared_ptr<PictureFile>> files; // Shared by the calls that are drawing.
    QCache<QString, QPixmap> painted{kCacheLimit};

    static PictureStore& Get()
    {
        static PictureStore store;
        return store;
    }

    std::shared_ptr<PictureFile> Find(const String& file)
    {
        const QString key = ToQt(file);
        auto& entry = files[key];
        if (!entry)
            entry = std::make_shared<PictureFile>(
                ReadPicture(CSkinManager::GetInstance()->FindPicture(file)));
        return entry;
    }
};

QRectF PartOf(const PictureFile& file,
              const PictureRect& source,
              const SkinPicture& look,
              const QString& state)
{
    if (source.width > 0 && source.height > 0)
        return QRectF(source.left, source.top, source.width, source.height);
    const QSizeF size = file.GetSize();
    if (look.states.size() < 2)
        return {QPointF(), size};
    std::size_t place = 0;
    for (std::size_t index = 0; index < look.states.size(); ++index)
        if (look.states[index] == FromQt(state))
            place = index;
    const qreal width = size.width() / static_cast<qreal>(look.states.size());
    return QRectF(static_cast<qreal>(place) * width, 0, width, size.height());
}

QImage Draw(PictureFile& file, const QRectF& part, const QSize& pixels)
{
    QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const qreal x = pixels.width() / part.width();
    const qreal y = pixels.height() / part.height();
    if (file.drawing) {
        const QSizeF whole = file.GetSize();
        file.drawing->render(
            &painter, QRectF(-part.x() * x, -part.y() * y, whole.width() * x, whole.height() * y));
    } else {
        const qreal scale = file.scale;
        painter.drawImage(QRectF(QPointF(), QSizeF(pixels)),
                          file.bitmap,
                          QRectF(part.topLeft() * scale, part.size() * scale));
    }
    return image;
}

QPixmap GetPainted(const String& name,
                   const PictureRect& source,
                   const QSize& size,
                   qreal ratio,
                   const QColor& tint,
                   const QString& state)
{
    PictureStore& store = PictureStore::Get();
    const SkinPicture look = CSkinManager::GetInstance()->GetPicture(name);
    const QColor colour = tint.isValid() || look.tint.empty() ? tint : GetToken(look.tint);
    const bool mirrored = look.isMirrored && CSkinManager::GetInstance()->IsRightToLeft();
    const QString key = QStringLiteral("%1|%2,%3,%4,%5|%6x%7@%8|%9")
                            .arg(ToQt(name))
                            .arg(source.left)
                            .arg(source.top)
                            .arg(source.width)
                            .arg(source.height)
                            .arg(size.width())
                            .arg(size.height())
                            .arg(ratio)
                            .arg(look.tint.empty() ? QString() : colour.name()) +
                        (mirrored ? QStringLiteral("|m") : QString()) + state;
    if (const QPixmap* known = store.painted.object(key))
        return *known;
    const std::shared_ptr<PictureFile> file = store.Find(name);
    if (file->IsEmpty())
        return {};
    const QSize pixels(
        std::clamp(static_cast<int>(std::lround(size.width() * ratio)), 1, kEdgeLimit),
        std::clamp(static_cast<int>(std::lround(size.height() * ratio)), 1, kEdgeLimit));
    QImage image = Draw(*file, PartOf(*file, source, look, state), pixels);
    if (!look.tint.empty() && colour.isValid()) {
        QPainter painter(&image);
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(image.rect(), colour);
    }
    if (mirrored)
        image = image.mirrored(/*horizontally=*/true, /*vertically=*/false);
    auto pixmap = std::make_unique<QPixmap>(QPixmap::fromImage(image));
    pixmap->setDevicePixelRatio(ratio);
    QPixmap result = *pixmap;
    const qsizetype cost = 1 + qsizetype{pixels.width()} * pixels.height() / 256;
    store.painted.insert(key, pixmap.release(), cost);
    return result;
}

} // namespace

QSize GetPictureSize(const String& file, const PictureRect& source)
{
    if (file.empty())
        return {};
    const std::shared_ptr<PictureFile> picture = PictureStore::Get().Find(file);
    if (picture->IsEmpty())
        return {};
    const SkinPicture look = CSkinManager::GetInstance()->GetPicture(file);
    return PartOf(*picture, source, look, {}).size().toSize();
}

void PaintPicture(QPainter& painter,
                  const QRect& place,
                  const String& file,
                  const PictureRect& source,
                  const QColor& tint,
                  const QString& state)
{
    QSize size = GetPictureSize(file, source);
    if (size.isEmpty() || place.isEmpty())
        return;
    if (size.width() > place.width() || size.height() > place.height())
        size.scale(place.size(), Qt::KeepAspectRatio);
    if (size.isEmpty())
        return;
    const qreal ratio = painter.device()->devicePixelRatioF();
    const QPixmap pixmap = GetPainted(file, source, size, ratio, tint, state);
    const QPoint at(place.x() + (place.width() - size.width()) / 2,
                    place.y() + (place.height() - size.height()) / 2);
    painter.drawPixmap(QRect(at, size), pixmap);
}

QPixmap MakePicture(const String& file, const QSize& size, qreal ratio, const QColor& tint)
{
    return GetPainted(file, {}, size, ratio, tint, {});
}

void DropPictures()
{
    PictureStore& store = PictureStore::Get();
    store.painted.clear();
    store.files.clear();
}

} // namespace kivo::ui::qt
