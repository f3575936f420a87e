#include "platform/ui/qt/WidgetPaint.h"

#include "platform/ui/qt/InputWatch.h"
#include "platform/ui/qt/KivoStyle.h"
#include "platform/ui/qt/Shapes.h"
#include "platform/ui/qt/SkinLook.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>
#include <QWidget>

namespace kivo::ui::qt {

namespace {

constexpr int kThumbWidth = 8;

} // namespace

bool HasKeyboardFocus(const QStyleOption& option)
{
    return option.state.testFlag(QStyle::State_HasFocus) && InputWatch::IsAtKeys();
}

void DrawField(QPainter& painter, const QStyleOption& option, const QWidget* widget)
{
    const QRectF rect = option.rect;
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    FillRounded(painter, rect.adjusted(0.5, 0.5, -0.5, -0.5), radius::kField, GetToken(u"base"));
    if (widget != nullptr && widget->property(kWrongProperty).toBool())
        DrawFrame(painter, rect, radius::kField, GetToken(u"danger"), 2.0);
    else if (enabled && option.state.testFlag(QStyle::State_HasFocus))
        DrawFrame(painter, rect, radius::kField, GetToken(u"mark"), 2.0);
    else
        DrawFrame(painter, rect, radius::kField, GetToken(enabled ? u"edge" : u"line"), 1.0);
}

void DrawButton(QPainter& painter, const QStyleOptionButton& option)
{
    const QRectF body =
        QRectF(option.rect).adjusted(kRingReach, kRingReach, -kRingReach, -kRingReach);
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    const bool pressed = option.state.testFlag(QStyle::State_Sunken);
    const bool hovered = enabled && option.state.testFlag(QStyle::State_MouseOver);
    const bool isDefault = option.features.testFlag(QStyleOptionButton::DefaultButton);
    if (isDefault && enabled) {
        QColor honey = GetToken(u"honey");
        if (pressed)
            honey = Mix(honey, Qt::black, 0.14);
        else if (hovered)
            honey = Mix(honey, Qt::white, 0.18);
        FillRounded(painter, body, radius::kButton, honey);
    } else {
        const char16_t* ground = pressed ? u"press" : (hovered ? u"hover" : u"raised");
        FillRounded(painter, body, radius::kButton, GetToken(enabled ? ground : u"window"));
        DrawFrame(painter, body, radius::kButton, GetToken(enabled ? u"edge" : u"line"), 1.0);
    }
    if (HasKeyboardFocus(option))
        DrawFrame(painter, option.rect, radius::kButton + kRingReach, GetToken(u"mark"), 2.0);
}

void DrawCheckBox(QPainter& painter, const QStyleOption& option)
{
    const QRectF box = option.rect;
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    const bool on = option.state.testFlag(QStyle::State_On);
    if (on) {
        FillRounded(painter, box, 4.0, GetToken(enabled ? u"mark" : u"off"));
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(GetToken(u"base"), 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const QPointF middle = box.center();
        painter.drawPolyline(QPolygonF{
            {middle + QPointF(-4.2, 0.2),
             middle + QPointF(-1.2, 3.2),
             middle + QPointF(4.2, -3.2)}
        });
        painter.restore();
        return;
    }
    FillRounded(painter, box.adjusted(0.5, 0.5, -0.5, -0.5), 4.0, GetToken(u"base"));
    DrawFrame(painter, box, 4.0, GetToken(enabled ? u"edge" : u"line"), 1.0);
}

void DrawMenuPanel(QPainter& painter, const QRect& rect)
{
    FillRounded(
        painter, QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5), radius::kPanel, GetToken(u"raised"));
    DrawFrame(painter, rect, radius::kPanel, GetToken(u"line"), 1.0);
}

void DrawMenuEntry(QPainter& painter, const QStyleOptionMenuItem& option)
{
    const QRect rect = option.rect;
    const bool mirrored = option.direction == Qt::RightToLeft;
    if (option.menuItemType == QStyleOptionMenuItem::Separator) {
        DrawHairline(painter, rect.adjusted(12, 0, -12, 0), GetToken(u"line"));
        return;
    }
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    const bool chosen = enabled && option.state.testFlag(QStyle::State_Selected);
    if (chosen)
        FillRounded(painter, rect, radius::kEntry, GetToken(u"sel"));
    QColor colour = GetToken(enabled ? u"text" : u"off");
    if (chosen && IsHighContrast())
        colour = GetToken(u"onhoney");
    if (option.checked) {
        const QRect place(rect.x() + 2, rect.y(), 16, rect.height());
        PaintPicture(painter,
                     QStyle::visualRect(option.direction, rect, place),
                     u"public\\check.png",
                     {},
                     colour);
    }
    painter.save();
    painter.setFont(option.font);
    painter.setPen(colour);
    const QStringList parts = option.text.split(QLatin1Char('\t'));
    const QRect text = QStyle::visualRect(
        option.direction, rect, rect.adjusted(kEntryText - kMenuEdge, 0, -kEntryEnd, 0));
    // Absolute: the painter's own direction would turn the sides once more.
    const int flags =
        Qt::AlignVCenter | Qt::AlignAbsolute | Qt::TextSingleLine | Qt::TextHideMnemonic;
    painter.drawText(text, flags | (mirrored ? Qt::AlignRight : Qt::AlignLeft), parts.value(0));
    if (parts.size() > 1) {
        painter.setPen(chosen ? colour : GetToken(enabled ? u"soft" : u"off"));
        painter.drawText(text, flags | (mirrored ? Qt::AlignLeft : Qt::AlignRight), parts[1]);
    }
    painter.restore();
    if (option.menuItemType == QStyleOptionMenuItem::SubMenu) {
        const qreal x = mirrored ? rect.x() + 12.0 : rect.x() + rect.width() - 12.0;
        DrawChevron(
            painter, QPointF(x, rect.y() + rect.height() / 2.0), /*down=*/false, mirrored, colour);
    }
}

void DrawScrollBar(QPainter& painter, const QStyleOptionSlider& option, const QRect& thumb)
{
    if (option.maximum <= option.minimum)
        return;
    const bool upright = option.orientation == Qt::Vertical;
    QRectF body = thumb;
    if (upright)
        body = QRectF(body.center().x() + 0.5 - kThumbWidth / 2.0,
                      body.y() + 2,
                      kThumbWidth,
                      body.height() - 4);
    else
        body = QRectF(body.x() + 2,
                      body.center().y() + 0.5 - kThumbWidth / 2.0,
                      body.width() - 4,
                      kThumbWidth);
    QColor colour = GetToken(u"edge");
    const bool active = option.activeSubControls.testFlag(QStyle::SC_ScrollBarSlider) &&
                        (option.state.testFlag(QStyle::State_MouseOver) ||
                         option.state.testFlag(QStyle::State_Sunken));
    colour.setAlphaF(active ? 1.0F : 0.7F);
    FillRounded(painter, body, kThumbWidth / 2.0, colour);
}

void DrawComboBox(QPainter& painter, const QStyleOptionComboBox& option, const QWidget* widget)
{
    DrawField(painter, option, widget);
    const bool mirrored = option.direction == Qt::RightToLeft;
    const qreal x = mirrored ? option.rect.x() + 18.0 : option.rect.right() - 17.0;
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    DrawChevron(painter,
                QPointF(x, option.rect.y() + option.rect.height() / 2.0),
                /*down=*/true,
                mirrored,
                GetToken(enabled ? u"text" : u"off"));
}

QIcon MakeMessageIcon(QChar sign, const char16_t* token)
{
    const qreal ratio = qApp->devicePixelRatio();
    QPixmap picture(QSize(kMessageIcon, kMessageIcon) * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF circle(3, 3, kMessageIcon - 6, kMessageIcon - 6);
    const QColor colour = GetToken(token);
    painter.setPen(QPen(colour, 2.0));
    painter.drawEllipse(circle);
    QFont font = QApplication::font();
    font.setPixelSize(17);
    font.setWeight(QFont::DemiBold);
    painter.setFont(font);
    painter.drawText(circle, Qt::AlignCenter, QString(sign));
    return QIcon(picture);
}

} // namespace kivo::ui::qt
