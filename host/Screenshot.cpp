#include "host/Screenshot.h"

#include "shell/contracts/common/Text.h"
#include "shell/contracts/framework/Files.h"

#include <QApplication>
#include <QBuffer>
#include <QElapsedTimer>
#include <QImage>
#include <QPixmap>
#include <QTimer>
#include <QWidget>

#include <utility>

namespace kivo::host {

namespace {

constexpr int kPeriodMs = 100;
constexpr int kAlikeNeeded = 4;      // So many looks in a row must be the same picture.
constexpr qint64 kLongestMs = 10000; // What still moves by then is taken as it is.

// The largest window that shows; null: there is none.
QWidget* FindForm()
{
    QWidget* largest = nullptr;
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        const auto area = [](const QWidget* one) { return one->width() * one->height(); };
        if (widget->isVisible() && (largest == nullptr || area(widget) > area(largest)))
            largest = widget;
    }
    return largest;
}

bool Write(const QImage& picture, const std::string& path)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    if (picture.isNull() || !picture.save(&buffer, "PNG"))
        return false;
    const std::string bytes = buffer.data().toStdString();
    return WriteFileDurably(common::PathToText(path), bytes) != 0;
}

} // namespace

struct Screenshot::Impl {
    void Look()
    {
        QWidget* const form = FindForm();
        QImage now = form != nullptr ? form->grab().toImage() : QImage();
        alike = !now.isNull() && now == last ? alike + 1 : 1;
        last = std::move(now);
        if (alike < kAlikeNeeded && clock.elapsed() < kLongestMs)
            return;
        timer.stop();
        done(Write(last, path));
    }

    std::string path;
    std::function<void(bool)> done;
    QImage last;
    int alike = 0;
    QElapsedTimer clock;
    QTimer timer;
};

Screenshot::Screenshot(std::string path, std::function<void(bool)> done)
    : impl_(std::make_unique<Impl>())
{
    impl_->path = std::move(path);
    impl_->done = std::move(done);
    QObject::connect(&impl_->timer, &QTimer::timeout, [this] { impl_->Look(); });
}

Screenshot::~Screenshot() = default;

void Screenshot::Start()
{
    if (impl_->timer.isActive() || impl_->clock.isValid())
        return;
    impl_->clock.start();
    impl_->timer.start(kPeriodMs);
}

} // namespace kivo::host
