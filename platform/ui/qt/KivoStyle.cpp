#include "platform/ui/qt/KivoStyle.h"

#include "platform/ui/qt/Shapes.h"
#include "platform/ui/qt/SkinLook.h"
#include "platform/ui/qt/WidgetPaint.h"

#include <QAbstractScrollArea>
#include <QComboBox>
#include <QIcon>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOption>

#include <algorithm>

namespace kivo::ui::qt {

namespace {

constexpr int kEntryHeight = 28;
constexpr int kSeparatorHeight = 9;
constexpr int kFieldHeight = 34;
constexpr int kButtonHeight = 32;
constexpr int kScrollBar = 12;
constexpr int kShortestThumb = 28;
constexpr int kBox = 18;
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

// Without arrows: the thumb takes its share of the whole length.
QRect ScrollBarPart(const QStyleOptionSlider& bar, QStyle::SubControl part)
{
    const bool upright = bar.orientation == Qt::Vertical;
    const QRect groove = bar.rect;
    const int length = upright ? groove.height() : groove.width();
    const int range = bar.maximum - bar.minimum;
    int thumb = length;
    if (range > 0) {
        const qint64 whole = qint64{range} + bar.pageStep;
        thumb = static_cast<int>(qint64{bar.pageStep} * length / std::max<qint64>(whole, 1));
        thumb = std::clamp(thumb, std::min(kShortestThumb, length), length);
    }
    const int start = QStyle::sliderPositionFromValue(
        bar.minimum, bar.maximum, bar.sliderPosition, length - thumb, bar.upsideDown);
    const auto cut = [&](int from, int size) {
        const QRect rect = upright ? QRect(groove.x(), groove.y() + from, groove.width(), size)
                                   : QRect(groove.x() + from, groove.y(), size, groove.height());
        return QStyle::visualRect(upright ? Qt::LeftToRight : bar.direction, groove, rect);
    };
    switch (part) {
    case QStyle::SC_ScrollBarSlider: return cut(start, thumb);
    case QStyle::SC_ScrollBarGroove: return groove;
    case QStyle::SC_ScrollBarSubPage: return cut(0, start);
    case QStyle::SC_ScrollBarAddPage: return cut(start + thumb, length - start - thumb);
    default: return {};
    }
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
    case PM_ScrollBarSliderMin: return kShortestThumb;
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
    if (control == CC_ScrollBar)
        if (const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option))
            return ScrollBarPart(*bar, part);
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
