#include "platform/ui/qt/KivoStyle.h"

#include "platform/ui/qt/InputWatch.h"
#include "platform/ui/qt/Shapes.h"
#include "platform/ui/qt/SkinLook.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QComboBox>
#include <QIcon>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPushButton>
#include <QScrollBar>
#include <QStyleOption>

#include <algorithm>

namespace kivo::ui::qt {

namespace {

constexpr int kEntryHeight = 28;
constexpr int kEntryText = 26; // Where an entry's text begins.
constexpr int kEntryEnd = 16;
constexpr int kSeparatorHeight = 9;
constexpr int kMenuEdge = 5;
constexpr int kFieldHeight = 34;
constexpr int kButtonHeight = 32;
constexpr int kRingReach = 4; // What the focus ring needs around a button.
constexpr int kThumbWidth = 8;
constexpr int kScrollBar = 12;
constexpr int kBox = 18;
constexpr int kMessageIcon = 32;
constexpr int kChoiceText = 8; // Where the text of a box's list begins, as in its field.

int GrownHeight(int height, const QFontMetrics& metrics)
{
    return std::max(height, metrics.height() + 10);
}

// Our rows leave room for the scroll bar at their end; other lists don't.
bool LiesOnRows(const QWidget* bar)
{
    for (const QWidget* area = bar; area != nullptr; area = area->parentWidget()) {
        if (qobject_cast<const QAbstractScrollArea*>(area) != nullptr)
            return area->property(kRowsProperty).toBool();
    }
    return false;
}

// The open list of a box; its entries are as high as those of a menu.
bool IsChoiceList(const QWidget* widget)
{
    return widget != nullptr && widget->parentWidget() != nullptr &&
           widget->parentWidget()->inherits("QComboBoxPrivateContainer");
}

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

// A button of Qt's own dialogs; the toolkit's buttons draw themselves.
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
        DrawFrame(
            painter, body.adjusted(-4, -4, 4, 4), radius::kButton + 4, GetToken(u"mark"), 2.0);
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

// What a message box is about, in a circle.
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

} // namespace

KivoStyle::KivoStyle()
    : QProxyStyle(QStringLiteral("Fusion"))
{
}

void KivoStyle::polish(QWidget* widget)
{
    QProxyStyle::polish(widget);
    if (qobject_cast<QMenu*>(widget) != nullptr) {
        widget->setAttribute(Qt::WA_TranslucentBackground); // For the round corners.
        widget->setWindowFlag(Qt::NoDropShadowWindowHint);
        widget->setWindowFlag(Qt::FramelessWindowHint);
    }
    if (qobject_cast<QScrollBar*>(widget) != nullptr) {
        widget->setAttribute(Qt::WA_OpaquePaintEvent, false); // It lies on what it scrolls.
        widget->setAttribute(Qt::WA_Hover);
    }
    if (qobject_cast<QComboBox*>(widget) != nullptr)
        widget->setAttribute(Qt::WA_Hover);
}

void KivoStyle::drawPrimitive(PrimitiveElement element,
                              const QStyleOption* option,
                              QPainter* painter,
                              const QWidget* widget) const
{
    switch (element) {
    case PE_PanelLineEdit:
        if (qobject_cast<const QLineEdit*>(widget) != nullptr &&
            static_cast<const QStyleOptionFrame*>(option)->lineWidth == 0)
            break;
        DrawField(*painter, *option, widget);
        return;
    case PE_FrameLineEdit: return; // Drawn with the panel.
    case PE_FrameFocusRect:
        if (HasKeyboardFocus(*option) && !IsChoiceList(widget))
            DrawFrame(*painter, option->rect, radius::kEntry, GetToken(u"mark"), 2.0);
        return;
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck: DrawCheckBox(*painter, *option); return;
    case PE_PanelMenu: DrawMenuPanel(*painter, option->rect); return;
    case PE_FrameMenu: return;
    case PE_PanelTipLabel: painter->fillRect(option->rect, GetToken(u"tip")); return;
    default: break;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void KivoStyle::drawControl(ControlElement element,
                            const QStyleOption* option,
                            QPainter* painter,
                            const QWidget* widget) const
{
    switch (element) {
    case CE_PushButtonBevel:
        if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
            DrawButton(*painter, *button);
            return;
        }
        break;
    case CE_PushButtonLabel:
        if (const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option)) {
            QStyleOptionButton label(*button);
            const bool honey = button->features.testFlag(QStyleOptionButton::DefaultButton) &&
                               button->state.testFlag(State_Enabled);
            label.palette.setColor(QPalette::ButtonText, GetToken(honey ? u"onhoney" : u"text"));
            label.state.setFlag(State_HasFocus, false);
            painter->save();
            QFont font = painter->font();
            font.setWeight(honey ? QFont::DemiBold : QFont::Medium);
            painter->setFont(font);
            QProxyStyle::drawControl(element, &label, painter, widget);
            painter->restore();
            return;
        }
        break;
    case CE_MenuItem:
        if (const auto* entry = qstyleoption_cast<const QStyleOptionMenuItem*>(option)) {
            DrawMenuEntry(*painter, *entry);
            return;
        }
        break;
    case CE_MenuEmptyArea: return;
    default: break;
    }
    QProxyStyle::drawControl(element, option, painter, widget);
}

void KivoStyle::drawComplexControl(ComplexControl control,
                                   const QStyleOptionComplex* option,
                                   QPainter* painter,
                                   const QWidget* widget) const
{
    if (control == CC_ScrollBar) {
        if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option)) {
            DrawScrollBar(
                *painter, *bar, subControlRect(CC_ScrollBar, option, SC_ScrollBarSlider, widget));
            return;
        }
    }
    if (control == CC_ComboBox) {
        if (const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option)) {
            DrawComboBox(*painter, *box, widget);
            return;
        }
    }
    QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QSize KivoStyle::sizeFromContents(ContentsType type,
                                  const QStyleOption* option,
                                  const QSize& contents,
                                  const QWidget* widget) const
{
    switch (type) {
    case CT_MenuItem:
        if (const auto* entry = qstyleoption_cast<const QStyleOptionMenuItem*>(option)) {
            if (entry->menuItemType == QStyleOptionMenuItem::Separator)
                return {contents.width(), kSeparatorHeight};
            const QFontMetrics metrics(entry->font);
            const bool hasKeys = entry->text.contains(QLatin1Char('\t'));
            const int width =
                metrics.size(Qt::TextHideMnemonic, entry->text.section(u'\t', 0, 0)).width() +
                (hasKeys ? metrics.horizontalAdvance(entry->text.section(u'\t', 1)) + 24 : 0);
            return {width + kEntryText - kMenuEdge + kEntryEnd + 8,
                    GrownHeight(kEntryHeight, metrics)};
        }
        break;
    case CT_PushButton: {
        const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
        return {std::max(size.width(), 72) + 2 * kRingReach,
                GrownHeight(kButtonHeight, option->fontMetrics) + 2 * kRingReach};
    }
    case CT_ItemViewItem: {
        const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
        return IsChoiceList(widget)
                   ? QSize(size.width(), GrownHeight(kEntryHeight, option->fontMetrics))
                   : size;
    }
    case CT_LineEdit:
    case CT_ComboBox: {
        const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
        return {size.width(), GrownHeight(kFieldHeight, option->fontMetrics)};
    }
    default: break;
    }
    return QProxyStyle::sizeFromContents(type, option, contents, widget);
}

int KivoStyle::pixelMetric(PixelMetric metric,
                           const QStyleOption* option,
                           const QWidget* widget) const
{
    switch (metric) {
    case PM_MenuPanelWidth: return 0;
    case PM_MenuHMargin:
    case PM_MenuVMargin: return kMenuEdge;
    case PM_FocusFrameHMargin:
        if (IsChoiceList(widget))
            return kChoiceText;
        break;
    case PM_MessageBoxIconSize: return kMessageIcon;
    case PM_ScrollBarExtent: return kScrollBar;
    case PM_ScrollView_ScrollBarOverlap: return LiesOnRows(widget) ? kScrollBar : 0;
    case PM_ScrollBarSliderMin: return 28;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight: return kBox;
    case PM_CheckBoxLabelSpacing: return 8;
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
    case PM_ButtonDefaultIndicator: return 0;
    case PM_SubMenuOverlap: return -2;
    case PM_ToolTipLabelFrameWidth: return 6;
    default: break;
    }
    return QProxyStyle::pixelMetric(metric, option, widget);
}

QRect KivoStyle::subControlRect(ComplexControl control,
                                const QStyleOptionComplex* option,
                                SubControl part,
                                const QWidget* widget) const
{
    if (control == CC_ScrollBar) {
        const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
        if (bar != nullptr) {
            const bool upright = bar->orientation == Qt::Vertical;
            const QRect groove = bar->rect;
            const int length = upright ? groove.height() : groove.width();
            const int range = bar->maximum - bar->minimum;
            int thumb = length;
            if (range > 0) {
                const qint64 whole = qint64{range} + bar->pageStep;
                thumb =
                    static_cast<int>(qint64{bar->pageStep} * length / std::max<qint64>(whole, 1));
                thumb = std::clamp(thumb, std::min(28, length), length);
            }
            const int start = sliderPositionFromValue(
                bar->minimum, bar->maximum, bar->sliderPosition, length - thumb, bar->upsideDown);
            const auto cut = [&](int from, int size) {
                const QRect rect =
                    upright ? QRect(groove.x(), groove.y() + from, groove.width(), size)
                            : QRect(groove.x() + from, groove.y(), size, groove.height());
                return visualRect(upright ? Qt::LeftToRight : bar->direction, groove, rect);
            };
            switch (part) {
            case SC_ScrollBarSlider: return cut(start, thumb);
            case SC_ScrollBarGroove: return groove;
            case SC_ScrollBarSubPage: return cut(0, start);
            case SC_ScrollBarAddPage: return cut(start + thumb, length - start - thumb);
            default: return {};
            }
        }
    }
    if (control == CC_ComboBox && part == SC_ComboBoxEditField)
        return visualRect(option->direction, option->rect, option->rect.adjusted(8, 2, -32, -2));
    if (control == CC_ComboBox && part == SC_ComboBoxArrow)
        return visualRect(
            option->direction,
            option->rect,
            QRect(option->rect.right() - 32, option->rect.y(), 32, option->rect.height()));
    return QProxyStyle::subControlRect(control, option, part, widget);
}

QIcon KivoStyle::standardIcon(StandardPixmap picture,
                              const QStyleOption* option,
                              const QWidget* widget) const
{
    switch (picture) {
    case SP_MessageBoxQuestion: return MakeMessageIcon(u'?', u"mark");
    case SP_MessageBoxInformation: return MakeMessageIcon(u'i', u"mark");
    case SP_MessageBoxWarning: return MakeMessageIcon(u'!', u"mark");
    case SP_MessageBoxCritical: return MakeMessageIcon(u'!', u"danger");
    default: return QProxyStyle::standardIcon(picture, option, widget);
    }
}

int KivoStyle::styleHint(StyleHint hint,
                         const QStyleOption* option,
                         const QWidget* widget,
                         QStyleHintReturn* returned) const
{
    switch (hint) {
    case SH_Menu_Mask:
    case SH_ToolTip_Mask:
        if (auto* mask = qstyleoption_cast<QStyleHintReturnMask*>(returned)) {
            const qreal corner = hint == SH_Menu_Mask ? radius::kPanel : radius::kEntry;
            mask->region = MakeRoundMask(option->rect, corner);
            return 1;
        }
        break;
    case SH_UnderlineShortcut:
    case SH_ComboBox_Popup:
    case SH_EtchDisabledText:
    case SH_ItemView_ActivateItemOnSingleClick:
    case SH_ScrollBar_Transient:
    case SH_Widget_Animate:
    case SH_Widget_Animation_Duration: return 0;
    default: break;
    }
    return QProxyStyle::styleHint(hint, option, widget, returned);
}

} // namespace kivo::ui::qt
