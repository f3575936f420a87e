#include "host/FirstPaint.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <utility>

namespace kivo::host {

class FirstPaint::Filter final : public QObject {
public:
    Filter(std::function<void()> run, int longestMs)
        : run_(std::move(run))
    {
        timer_.setSingleShot(true);
        connect(&timer_, &QTimer::timeout, this, [this] {
            QCoreApplication::instance()->removeEventFilter(this);
            run_();
        });
        timer_.start(longestMs);
        QCoreApplication::instance()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject* object, QEvent* event) override
    {
        const auto* const widget = event->type() == QEvent::Paint && object->isWidgetType()
                                       ? static_cast<const QWidget*>(object)
                                       : nullptr;
        if (widget != nullptr && widget->isWindow()) {
            timer_.start(0); // Once this picture is out.
            QCoreApplication::instance()->removeEventFilter(this);
        }
        return false;
    }

private:
    std::function<void()> run_;
    QTimer timer_;
};

FirstPaint::FirstPaint(std::function<void()> run, int longestMs)
    : filter_(std::make_unique<Filter>(std::move(run), longestMs))
{
}

FirstPaint::~FirstPaint() = default;

} // namespace kivo::host
