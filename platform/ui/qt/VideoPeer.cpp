#include "platform/ui/qt/VideoPeer.h"

#include "platform/ui/qt/SkinLook.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "shell/contracts/common/Language.h"

#include <QCloseEvent>
#include <QMouseEvent>
#include <QPainter>

#include <cmath>

namespace kivo::ui::qt {

// Thread: user interface.
class VideoWidget final : public QWidget {
    Q_OBJECT

public:
    VideoWidget(IVideoSurface& surface, QWidget* parent)
        : QWidget(parent)
        , surface_(&surface)
        , home_(parent)
    {
        setAttribute(Qt::WA_OpaquePaintEvent);
        setAccessibleName(ToScreen(
            common::CMutiLanSupport::GetInstance()->GetStringViaID(u"STRID_TUNEHIVE_NAME_VIDEO")));
        hide();
    }

    void Detach() { surface_ = nullptr; }

    void SetPlace(const QRect& place)
    {
        place_ = place;
        if (!fullScreen_)
            setGeometry(place);
    }
    void SetShown(bool shown)
    {
        shown_ = shown;
        if (!fullScreen_)
            setVisible(shown);
        Report();
    }
    void SetFullScreen(bool on)
    {
        if (on == fullScreen_)
            return;
        fullScreen_ = on;
        if (on) {
            const QScreen* screen = home_ != nullptr ? home_->screen() : nullptr;
            setParent(nullptr, Qt::Window | Qt::FramelessWindowHint);
            if (screen != nullptr)
                setGeometry(screen->geometry());
            showFullScreen();
            activateWindow();
        } else {
            setWindowState(windowState() & ~Qt::WindowFullScreen);
            setParent(home_, Qt::Widget);
            setGeometry(place_);
            setVisible(shown_ && home_ != nullptr);
        }
        Report();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        if (surface_ == nullptr) {
            painter.fillRect(rect(), Qt::black);
            return;
        }
        const bool drawn = surface_->PaintFrame([this, &painter](const VideoFrame& frame) {
            const QImage image(
                frame.bits, frame.width, frame.height, frame.stride, QImage::Format_RGB32);
            const QSize pixels = GetPixels();
            if (image.size() == pixels) {
                painter.drawImage(QRectF(QPointF(), QSizeF(pixels) / devicePixelRatioF()), image);
                return;
            }
            // The last picture of another size, until the engine has drawn the next.
            painter.fillRect(rect(), Qt::black);
            const QSize size = image.size().scaled(this->size(), Qt::KeepAspectRatio);
            painter.drawImage(
                QRect(QPoint((width() - size.width()) / 2, (height() - size.height()) / 2), size),
                image);
        });
        if (drawn)
            return;
        const bool open = surface_->IsVideoOpen();
        painter.fillRect(rect(), open ? QColor(Qt::black) : GetToken(u"window"));
        if (!open)
            PaintPicture(painter, rect().adjusted(8, 8, -8, -8), u"player.png");
    }
    void resizeEvent(QResizeEvent* /*event*/) override { Report(); }
    void showEvent(QShowEvent* /*event*/) override { Report(); }
    void hideEvent(QHideEvent* /*event*/) override { Report(); }
    void closeEvent(QCloseEvent* event) override
    {
        event->ignore(); // It is hidden and shown by its player alone.
    }
    void mousePressEvent(QMouseEvent* event) override
    {
        if (surface_ != nullptr && event->button() == Qt::LeftButton)
            surface_->OnPress();
    }
    void mouseDoubleClickEvent(QMouseEvent* event) override
    {
        if (surface_ != nullptr && event->button() == Qt::LeftButton)
            surface_->OnDoubleClick();
    }

private:
    [[nodiscard]] QSize GetPixels() const
    {
        const qreal ratio = devicePixelRatioF();
        return {static_cast<int>(std::lround(width() * ratio)),
                static_cast<int>(std::lround(height() * ratio))};
    }
    void Report()
    {
        if (surface_ == nullptr)
            return;
        const QSize pixels = GetPixels();
        surface_->OnSurfaceChanged(pixels.width(), pixels.height(), isVisible());
    }

    IVideoSurface* surface_;
    QPointer<QWidget> home_;
    QRect place_;
    bool shown_ = false;
    bool fullScreen_ = false;
};

namespace {

class VideoPeer final : public VideoSurfacePeer {
public:
    explicit VideoPeer(VideoWidget* widget)
        : widget_(widget)
    {
    }
    VideoPeer(const VideoPeer&) = delete;
    VideoPeer& operator=(const VideoPeer&) = delete;
    ~VideoPeer() override
    {
        if (widget_ == nullptr)
            return;
        widget_->Detach();
        widget_->hide();
        widget_->deleteLater();
    }

    void MoveWindow(const Rect& bounds) override
    {
        if (widget_ != nullptr)
            widget_->SetPlace(ToQt(bounds));
    }
    void ShowWindow(bool visible) override
    {
        if (widget_ != nullptr)
            widget_->SetShown(visible);
    }
    void SetFullScreen(bool on) override
    {
        // Posted: the key or click that led here is still on its way to the window that goes.
        if (widget_ != nullptr)
            QMetaObject::invokeMethod(
                widget_,
                [widget = widget_.data(), on] { widget->SetFullScreen(on); },
                Qt::QueuedConnection);
    }
    void Update() override
    {
        if (widget_ != nullptr)
            widget_->update();
    }

private:
    QPointer<VideoWidget> widget_;
};

} // namespace

std::unique_ptr<VideoSurfacePeer> MakeVideoPeer(IVideoSurface& surface, CWnd* parent)
{
    QWidget* home = WindowWidgetOf(parent);
    return home == nullptr ? nullptr : std::make_unique<VideoPeer>(new VideoWidget(surface, home));
}

} // namespace kivo::ui::qt

#include "VideoPeer.moc"
