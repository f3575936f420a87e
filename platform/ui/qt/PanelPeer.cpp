#include "platform/ui/qt/PanelPeer.h"

#include "platform/ui/qt/KivoStyle.h"
#include "platform/ui/qt/Shapes.h"
#include "platform/ui/qt/SkinLook.h"
#include "platform/ui/qt/TextLine.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "shell/contracts/ui/SkinLabel.h"
#include "shell/contracts/ui/SkinPhoto.h"
#include "shell/contracts/ui/SWColorEdit.h"

#include <QLabel>
#include <QPainter>
#include <QPaintEvent>

#include <algorithm>

namespace kivo::ui::qt {

namespace {

// The ground of a panel, a page or a bare window, in the colour of its class.
class GroundWidget final : public QWidget {
public:
    GroundWidget(const CSkinObject& control, QWidget* parent)
        : QWidget(parent)
        , control_(&control)
    {
    }

    void Detach() { control_ = nullptr; }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        if (control_ == nullptr)
            return;
        const QColor ground = GetGround(control_->GetSkinName());
        QPainter painter(this);
        if (control_->GetSkinName() == u"hairline")
            DrawHairline(painter, rect(), ground);
        else if (ground.isValid())
            painter.fillRect(event->rect(), ground);
    }

private:
    const CSkinObject* control_;
};

using PanelPeer = WidgetPeer<IPeer, CSkinObject, GroundWidget>;

class BareWindowPeer final : public WindowPeer<IWindowPeer, CSkinWnd, GroundWidget> {
public:
    using WindowPeer::WindowPeer;

protected:
    void ApplyOwn(Change change) override
    {
        if (change == Change::Cursor)
            ApplyCursor(*widget_, control_.GetCursor());
        else
            widget_->update();
    }
};

// The width that a control which fills its strip gets from the nearest object above that has one.
int GetRoomWithin(const CSkinObject& control)
{
    int taken = 0;
    for (const CSkinObject* one = &control; one->GetParent() != nullptr; one = one->GetParent()) {
        const CSkinObject& parent = *one->GetParent();
        const Rect margin = one->GetMargin();
        const Rect padding = parent.GetPadding();
        taken += margin.left + margin.right + padding.left + padding.right;
        if (parent.GetWidth() > 0)
            return parent.GetWidth() - taken;
    }
    return 0;
}

// A label: Qt's for screen readers, painted by us.
class LabelWidget final : public QLabel {
public:
    LabelWidget(const CSkinLabel& control, QWidget* parent)
        : QLabel(parent)
        , control_(&control)
    {
        setTextFormat(Qt::PlainText); // Before any text.
    }

    void Detach() { control_ = nullptr; }

    [[nodiscard]] QSize sizeHint() const override
    {
        if (control_ == nullptr)
            return {};
        const QFont font = GetLook().font;
        if (control_->IsMultiLine()) // Any width does; the height is for the one it will get.
            return {GetPictureRoom() + 1, GetParagraphHeight(font)};
        const QString text = ToLine(ToScreen(control_->GetText()));
        return {MeasureWidth(font, text) + 1 + GetPictureRoom(), QFontMetrics(font).height()};
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        if (control_ == nullptr)
            return;
        const TextLook look = GetLook();
        QPainter painter(this);
        painter.setFont(look.font);
        painter.setPen(isEnabled() ? look.colour : GetToken(u"off"));
        QRect place = rect();
        const QString text = ToScreen(control_->GetText());
        const bool manyLines = IsManyLines(look.font, text);
        if (const int room = GetPictureRoom(); room > 0) {
            const int line = manyLines ? GetParagraphPitch(look.font) : height();
            const QRect icon = QStyle::visualRect(
                layoutDirection(), rect(), QRect(0, 0, room - kPictureGap, line));
            PaintPicture(painter, icon, control_->GetPicture());
            place = QStyle::visualRect(layoutDirection(), rect(), rect().adjusted(room, 0, 0, 0));
        }
        if (manyLines)
            DrawParagraph(painter, place, text, GetSide());
        else
            DrawLine(painter, place, text, GetSide(), /*elided=*/true);
    }

private:
    static constexpr int kPictureGap = 8;
    static constexpr int kLeastWidth = 60; // Below it no layout has been yet.

    [[nodiscard]] TextLook GetLook() const
    {
        return GetTextLook(
            control_->GetFont(), {control_->GetSkinName()}, control_->GetTextColour());
    }
    // A text too long for one line wraps where there is room for a second.
    [[nodiscard]] bool IsManyLines(const QFont& font, const QString& text) const
    {
        return control_->IsMultiLine() ||
               (height() >= 2 * GetParagraphPitch(font) &&
                QFontMetrics(font).horizontalAdvance(text) > width() - GetPictureRoom());
    }
    [[nodiscard]] int GetParagraphHeight(const QFont& font) const
    {
        const int width = GetRoomWithin(*control_) - GetPictureRoom();
        if (width < kLeastWidth)
            return 2 * GetParagraphPitch(font);
        return MeasureParagraph(font, ToScreen(control_->GetText()), width);
    }
    [[nodiscard]] int GetPictureRoom() const
    {
        const QSize size = GetPictureSize(control_->GetPicture(), {});
        return size.isEmpty() ? 0 : size.width() + kPictureGap;
    }
    [[nodiscard]] TextSide GetSide() const { return SideOf(control_->GetAlignmentHor()); }

    const CSkinLabel* control_;
};

class LabelPeer final : public WidgetPeer<IPeer, CSkinLabel, LabelWidget> {
public:
    LabelPeer(CSkinLabel& label, LabelWidget* widget)
        : WidgetPeer(label, widget)
    {
        WatchTooltip(label, *widget);
        ApplyOwn(Change::Text);
        ApplyOwn(Change::Visible);
    }
    ~LabelPeer() override { MarkField(/*wrong=*/false); }

    void Apply(Change change) override
    {
        WidgetPeer::Apply(change);
        if (change == Change::Visible && widget_ != nullptr)
            MarkField(control_.IsSetVisible());
    }

protected:
    void ApplyOwn(Change change) override
    {
        if (change == Change::Text) {
            QString text = ToScreen(control_.GetText());
            widget_->setText(text.replace(u'&', QLatin1String("&&")));
            ApplyCommon(control_, *widget_, Change::Name, reach_);
        }
        widget_->update();
        widget_->updateGeometry();
    }

private:
    // An error line marks the field above it.
    void MarkField(bool wrong)
    {
        if (control_.GetSkinName() != u"error" || control_.GetParent() == nullptr)
            return;
        const CSkinObject* strip = &control_;
        const CSkinObject* parent = control_.GetParent();
        const CSkinObject* field = nullptr;
        while (parent != nullptr && field == nullptr) {
            for (const CSkinObject* sibling : parent->GetControls()) {
                if (sibling == strip)
                    break;
                if (dynamic_cast<const CSWColorEdit*>(sibling) != nullptr)
                    field = sibling;
            }
            strip = parent;
            parent = parent->GetParent();
        }
        if (QWidget* widget = WidgetOf(field)) {
            widget->setProperty(kWrongProperty, wrong);
            widget->update();
        }
    }
};

class PhotoWidget final : public QLabel {
public:
    PhotoWidget(const CSkinPhoto& control, QWidget* parent)
        : QLabel(parent)
        , control_(&control)
    {
    }

    void Detach() { control_ = nullptr; }
    [[nodiscard]] QSize sizeHint() const override
    {
        return control_ == nullptr ? QSize()
                                   : GetPictureSize(control_->GetPicture(), control_->GetSource());
    }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        if (control_ == nullptr)
            return;
        QPainter painter(this);
        const QColor ground = GetGround(control_->GetSkinName());
        if (ground.isValid())
            painter.fillRect(event->rect(), ground);
        const QRect place = rect().width() > 2 * kEdge && rect().height() > 2 * kEdge
                                ? rect().adjusted(kEdge, kEdge, -kEdge, -kEdge)
                                : rect();
        PaintPicture(
            painter, IsSmall() ? rect() : place, control_->GetPicture(), control_->GetSource());
    }

private:
    static constexpr int kEdge = 8; // A picture that has to shrink keeps off the edges.

    [[nodiscard]] bool IsSmall() const
    {
        const QSize size = sizeHint();
        return size.width() <= width() - 2 * kEdge && size.height() <= height() - 2 * kEdge;
    }

    const CSkinPhoto* control_;
};

class PhotoPeer final : public WidgetPeer<IPeer, CSkinPhoto, PhotoWidget> {
public:
    PhotoPeer(CSkinPhoto& photo, PhotoWidget* widget)
        : WidgetPeer(photo, widget)
    {
        WatchTooltip(photo, *widget);
    }
};

template <class Peer>
std::unique_ptr<Peer> Shown(std::unique_ptr<Peer> peer)
{
    peer->Apply(Change::Visible);
    return peer;
}

} // namespace

std::unique_ptr<IPeer> MakePanelPeer(CSkinObject& panel)
{
    return Shown(
        std::make_unique<PanelPeer>(panel, new GroundWidget(panel, ParentWidgetOf(panel))));
}

std::unique_ptr<IWindowPeer> MakeWindowPeer(CSkinWnd& window)
{
    auto* widget = new GroundWidget(
        window, window.IsTopLevel() ? OwnerWidgetOf(window) : ParentWidgetOf(window));
    if (window.IsTopLevel())
        widget->setWindowFlag(Qt::Window);
    return Shown(std::make_unique<BareWindowPeer>(window, widget));
}

std::unique_ptr<IPeer> MakeLabelPeer(CSkinLabel& label)
{
    return Shown(std::make_unique<LabelPeer>(label, new LabelWidget(label, ParentWidgetOf(label))));
}

std::unique_ptr<IPeer> MakePhotoPeer(CSkinPhoto& photo)
{
    return Shown(std::make_unique<PhotoPeer>(photo, new PhotoWidget(photo, ParentWidgetOf(photo))));
}

} // namespace kivo::ui::qt
