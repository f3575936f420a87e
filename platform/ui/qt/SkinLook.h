#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/base/String.h"
#include "shell/contracts/ui/SkinManager.h"
#include "shell/contracts/ui/Types.h"

#include <QColor>
#include <QFont>
#include <QPalette>
#include <QPixmap>

class QPainter;

// What the skin says, in Qt's terms: colours, fonts, pictures. Where the skin is silent the
// desktop's palette and font hold. Thread: user interface.
namespace kivo::ui::qt {

// The colour of a class of skin.xml ("mark", "soft", …) or of a palette role of that name. With
// high contrast the desktop's palette stands for it.
[[nodiscard]] KIVO_API QColor GetToken(StringView name);

// The ground of a class; no valid colour: it has none.
[[nodiscard]] QColor GetGround(StringView className);

[[nodiscard]] QColor Resolve(const SkinColour& colour);

// The text colour and font that belong to a key; the classes are asked in their order. The font is
// the desktop's, scaled and weighted by `font` and by what the skin says of the key.
struct TextLook {
    QColor colour;
    QFont font;
};
[[nodiscard]] TextLook
GetTextLook(const LOGFONT& font, std::initializer_list<StringView> classes, COLORREF key);

// The desktop's font by factor and weight (0: its own). A smaller one has at least 11 pixels.
[[nodiscard]] KIVO_API QFont GetScaledFont(double scale, int weight);

// Whether the desktop asks for high contrast. Set by the desktop side.
void SetHighContrast(bool on);
[[nodiscard]] bool IsHighContrast();

// The palette that goes with the classes, for dialogs, menus and fields of Qt's own. `desktop` is
// the desktop's own, which holds with high contrast and where the skin is silent.
[[nodiscard]] QPalette MakePalette(const QPalette& desktop);

// Pictures by their name in the skin: sharp at each density, tinted and mirrored as the skin says.
// `tint` overrides the skin's; an invalid one leaves it. Drawings (SVG) go before bitmaps.
[[nodiscard]] KIVO_API QSize GetPictureSize(const String& file, const PictureRect& source);
KIVO_API void PaintPicture(QPainter& painter,
                           const QRect& place, // Centred in it; scaled down if it is larger.
                           const String& file,
                           const PictureRect& source = {},
                           const QColor& tint = {},
                           const QString& state = {});
[[nodiscard]] KIVO_API QPixmap MakePicture(const String& file,
                                           const QSize& size,
                                           qreal ratio,
                                           const QColor& tint = {});

void DropPictures(); // The skin or the screen is another.

} // namespace kivo::ui::qt
