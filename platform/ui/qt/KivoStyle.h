#pragma once

#include <QProxyStyle>

namespace kivo::ui::qt {

// Fusion with our corners, frames, focus and menus, for the widgets that Qt brings: dialogs, menus,
// fields, boxes, scroll bars. Its colours are GetToken's. Thread: user interface.
class KivoStyle final : public QProxyStyle {
    Q_OBJECT

public:
    KivoStyle();

    using QProxyStyle::polish;
    void polish(QWidget* widget) override;
    void drawPrimitive(PrimitiveElement element,
                       const QStyleOption* option,
                       QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element,
                     const QStyleOption* option,
                     QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control,
                            const QStyleOptionComplex* option,
                            QPainter* painter,
                            const QWidget* widget) const override;
    [[nodiscard]] QSize sizeFromContents(ContentsType type,
                                         const QStyleOption* option,
                                         const QSize& contents,
                                         const QWidget* widget) const override;
    [[nodiscard]] int pixelMetric(PixelMetric metric,
                                  const QStyleOption* option,
                                  const QWidget* widget) const override;
    [[nodiscard]] QRect subControlRect(ComplexControl control,
                                       const QStyleOptionComplex* option,
                                       SubControl part,
                                       const QWidget* widget) const override;
    [[nodiscard]] QIcon standardIcon(StandardPixmap picture,
                                     const QStyleOption* option,
                                     const QWidget* widget) const override;
    int styleHint(StyleHint hint,
                  const QStyleOption* option,
                  const QWidget* widget,
                  QStyleHintReturn* returned) const override;
};

// The name of the property by which a field is marked wrong.
inline constexpr char kWrongProperty[] = "kivoWrong";

// The name of the property of a list whose scroll bar lies on its rows.
inline constexpr char kRowsProperty[] = "kivoRows";

} // namespace kivo::ui::qt
