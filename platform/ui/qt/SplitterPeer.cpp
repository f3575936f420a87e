#include "platform/ui/qt/ControlPeers.h"
#include "platform/ui/qt/InputWatch.h"
#include "platform/ui/qt/Shapes.h"
#include "platform/ui/qt/SkinLook.h"
#include "platform/ui/qt/WidgetAccess.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "shell/contracts/ui/SkinSplitter.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace kivo::ui::qt {

namespace {

constexpr int kHandReach = 2; // The bar shows 5 pixels and takes 9.
constexpr int kGripLength = 28;
constexpr int kGripHeight = 2;
constexpr int kKeyStep = 16;

} // namespace

// The bar between the panes. Thread: user interface.
class SplitterBar final : public QWidget, public IValueWidget {
    Q_OBJECT

public:
    SplitterBar(CSkinSplitter& splitter, QWidget* parent)
        : QWidget(parent)
        , splitter_(&splitter)
    {
        setFocusPolicy(Qt::TabFocus);
        setCursor(Qt::SplitVCursor);
        setAttribute(Qt::WA_Hover);
    }

    void Detach() { splitter_ = nullptr; }

    [[nodiscard]] ValueOfWidget GetValueNow() const override
    {
        if (splitter_ == nullptr)
            return {};
        const int size = splitter_->GetFixedPaneSize();
        return {0, splitter_->GetHeight(), size, QString::number(size)};
    }
    void SetValueByReader(int value) override
    {
        if (splitter_ != nullptr)
            splitter_->SetFixedPaneSize(value);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        const QRect bar = rect().adjusted(0, kHandReach, 0, -kHandReach);
        painter.fillRect(bar, GetToken(u"window"));
        const QRectF grip(bar.x() + (bar.width() - kGripLength) / 2.0,
                          bar.y() + (bar.height() - kGripHeight) / 2.0,
                          kGripLength,
                          kGripHeight);
        FillRounded(painter, grip, kGripHeight / 2.0, GetToken(u"edge"));
        if (hasFocus() && InputWatch::IsAtKeys())
            DrawFrame(painter, rect(), 4.0, GetToken(u"mark"), 2.0);
    }
    void mousePressEvent(QMouseEvent* event) override
    {
        if (splitter_ == nullptr || event->button() != Qt::LeftButton)
            return;
        start_ = event->globalPosition().toPoint().y();
        dragging_ = true;
        splitter_->OnBarDragBegin();
    }
    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (splitter_ != nullptr && dragging_)
            splitter_->OnBarDragged(event->globalPosition().toPoint().y() - start_);
    }
    void mouseReleaseEvent(QMouseEvent* /*event*/) override { dragging_ = false; }
    void keyPressEvent(QKeyEvent* event) override
    {
        const int key = event->key();
        if (splitter_ != nullptr && (key == Qt::Key_Up || key == Qt::Key_Down))
            splitter_->OnBarKey(key == Qt::Key_Up ? -kKeyStep : kKeyStep);
        else
            QWidget::keyPressEvent(event);
    }
    void focusInEvent(QFocusEvent* event) override
    {
        QWidget::focusInEvent(event);
        update();
    }

private:
    CSkinSplitter* splitter_;
    int start_ = 0;
    bool dragging_ = false;
};

namespace {

class SplitterWidget final : public QWidget {
public:
    SplitterWidget(CSkinSplitter& splitter, QWidget* parent)
        : QWidget(parent)
        , bar_(new SplitterBar(splitter, this))
    {
    }

    void Detach() { bar_->Detach(); }
    [[nodiscard]] SplitterBar* GetBar() const { return bar_; }

private:
    SplitterBar* bar_;
};

class SplitterPeer final : public WidgetPeer<IPeer, CSkinSplitter, SplitterWidget> {
public:
    SplitterPeer(CSkinSplitter& splitter, SplitterWidget* widget)
        : WidgetPeer(splitter, widget)
    {
        WatchTooltip(splitter, *widget->GetBar());
        Apply(Change::Name);
        Apply(Change::Bar);
        Apply(Change::Visible);
    }

    void Apply(Change change) override
    {
        WidgetPeer::Apply(change);
        if (widget_ == nullptr)
            return;
        if (change == Change::Name || change == Change::Tooltip) {
            widget_->GetBar()->setAccessibleName(ToScreen(control_.GetAccessibleName()));
            widget_->setAccessibleName({});
        }
        if (change == Change::Bounds)
            PlaceBar();
    }
    void SetFocus() override
    {
        if (widget_ != nullptr)
            widget_->GetBar()->setFocus(Qt::OtherFocusReason);
    }

protected:
    void ApplyOwn(Change change) override
    {
        if (change == Change::Bar)
            PlaceBar();
        widget_->GetBar()->update();
    }

private:
    void PlaceBar()
    {
        SplitterBar* bar = widget_->GetBar();
        const Rect place = control_.GetBarRect();
        bar->setGeometry(ToQt(place).adjusted(0, -kHandReach, 0, kHandReach));
        bar->setVisible(control_.IsBarVisible() && HeightOf(place) > 0);
        bar->raise(); // Its reach lies over the panes.
    }
};

} // namespace

std::unique_ptr<IPeer> MakeSplitterPeer(CSkinSplitter& splitter)
{
    return std::make_unique<SplitterPeer>(splitter,
                                          new SplitterWidget(splitter, ParentWidgetOf(splitter)));
}

} // namespace kivo::ui::qt

#include "SplitterPeer.moc"
