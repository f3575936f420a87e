#include "platform/ui/qt/RowPainter.h"

#include "platform/ui/qt/QtText.h"
#include "platform/ui/qt/Shapes.h"
#include "platform/ui/qt/SkinLook.h"
#include "platform/ui/qt/TextLine.h"
#include "shell/contracts/base/Beyond.h"
#include "shell/contracts/ui/Canvas.h"
#include "shell/contracts/ui/SkinList.h"

#include <QFontInfo>
#include <QPainter>

#include <algorithm>
#include <vector>

namespace kivo::ui::qt {

namespace {

constexpr int kRowHeight = 28;
constexpr int kSelectionEdge = 3;
constexpr int kGonePicture = 12;
constexpr int kButtonSide = 32;
constexpr int kTrailing = 15; // What a row leaves free at its end.
constexpr int kTextGap = 6;   // Between a text and a strip that has grown into it.
constexpr char16_t kLengthCell[] = u"length";

// Fills the row's whole width, whatever the row calls its bounds.
class RowCanvas final : public ICanvas {
public:
    RowCanvas(QPainter& painter, const QRect& place, const String& listClass)
        : painter_(painter)
        , place_(place)
        , listClass_(listClass)
    {
    }

    [[nodiscard]] bool IsFilled() const { return filled_; }

    void FillRect(const Rect& /*rect*/, COLORREF colour) override
    {
        const SkinColour known = CSkinManager::GetInstance()->GetColour({listClass_}, colour);
        painter_.fillRect(place_, Resolve(known));
        filled_ = true;
    }
    void DrawChannel(const Rect& /*channel*/, int /*played*/) override {}
    [[nodiscard]] bool HasThumb(int /*hover*/) const override { return false; }
    void DrawThumb(const Rect& /*thumb*/, int /*hover*/, bool /*ghost*/) override {}

private:
    QPainter& painter_;
    QRect place_;
    const String& listClass_;
    bool filled_ = false;
};

// A cell as it is painted: where in the view, and how.
struct PlacedCell {
    const CSkinCell* cell = nullptr;
    QRect place;
    TextLook look;
};

TextLook GetCellLook(const CSkinCell& cell, const CSkinList& list, bool selected)
{
    const CellLook& look = cell.GetLook();
    TextLook text = GetTextLook(look.font,
                                {look.skinClass, list.GetSkinName()},
                                selected ? look.selectedColour : look.colour);
    if (selected && IsHighContrast())
        text.colour = GetToken(u"onhoney");
    return text;
}

// With a larger font the strip of a length grows to the width of "00:00", into the text beside it.
void GrowLength(std::vector<PlacedCell>& cells)
{
    const auto isLength = [](const PlacedCell& placed) {
        return placed.cell->GetLook().id == kLengthCell && !placed.cell->GetLook().isPhoto;
    };
    const auto length = std::find_if(cells.begin(), cells.end(), isLength);
    if (length == cells.end())
        return;
    const int wanted =
        QFontMetrics(length->look.font).horizontalAdvance(QStringLiteral("00:00")) + 1;
    const int missing = wanted - length->place.width();
    if (missing <= 0)
        return;
    const bool atRight = CSkinManager::GetInstance()->IsRightToLeft() == false;
    if (atRight)
        length->place.setLeft(length->place.left() - missing);
    else
        length->place.setRight(length->place.right() + missing);
    for (PlacedCell& placed : cells) {
        if (isLength(placed) || !placed.place.intersects(length->place))
            continue;
        if (atRight)
            placed.place.setRight(length->place.left() - kTextGap);
        else
            placed.place.setLeft(length->place.right() + kTextGap);
    }
}

std::vector<PlacedCell> LayOut(const QRect& place, const CSkinList& list, CSkinListItem& row)
{
    std::vector<PlacedCell> placed;
    const std::vector<CSkinCell>& cells = row.LayOutForView({place.width(), place.height()});
    placed.reserve(cells.size());
    for (const CSkinCell& cell : cells) {
        PlacedCell entry;
        entry.cell = &cell;
        entry.place = ToQt(cell.GetBoundsRect()).translated(place.topLeft());
        if (!cell.GetLook().isPhoto)
            entry.look = GetCellLook(cell, list, row.IsSelected());
        placed.push_back(entry);
    }
    GrowLength(placed);
    return placed;
}

// A photo stands at the leading edge of its strip.
void PaintPhoto(QPainter& painter, const PlacedCell& placed)
{
    const CellLook& look = placed.cell->GetLook();
    const QSize size = GetPictureSize(look.picture, look.source);
    QRect place = placed.place;
    if (!size.isEmpty() && size.width() < place.width()) {
        if (CSkinManager::GetInstance()->IsRightToLeft())
            place.setLeft(place.right() + 1 - size.width());
        else
            place.setWidth(size.width());
    }
    PaintPicture(painter, place, look.picture, look.source);
}

void PaintText(QPainter& painter, const PlacedCell& placed, const QColor& colour)
{
    const QString text = ToScreen(placed.cell->GetText());
    QFont font = placed.look.font;
    const bool isLength = placed.cell->GetLook().id == kLengthCell;
    if (isLength) {
        // Never cut: a length that is too wide is painted smaller.
        const int width = QFontMetrics(font).horizontalAdvance(text);
        if (width > placed.place.width() && width > 0)
            font.setPixelSize(
                std::max(7, QFontInfo(font).pixelSize() * placed.place.width() / width));
    }
    painter.setFont(font);
    painter.setPen(colour);
    DrawLine(painter, placed.place, text, SideOf(placed.cell->GetAlignmentHor()), !isLength);
}

bool IsTrackWithoutFile(const CSkinList& list, const std::vector<PlacedCell>& cells, bool isGroup)
{
    return IsBeyond() && !isGroup && list.GetSkinName() == u"tunehive" && !cells.empty() &&
           std::none_of(cells.begin(), cells.end(), [](const PlacedCell& placed) {
               return placed.cell->GetLook().id == kLengthCell;
           });
}

void PaintGone(QPainter& painter, const QRect& place, const QColor& tint)
{
    const bool mirrored = CSkinManager::GetInstance()->IsRightToLeft();
    const int x =
        mirrored ? place.left() + kTrailing : place.right() + 1 - kTrailing - kGonePicture;
    PaintPicture(
        painter, QRect(x, place.top(), kGonePicture, place.height()), u"gone.png", {}, tint);
}

void PaintSelectionEdge(QPainter& painter, const QRect& place)
{
    const bool mirrored = CSkinManager::GetInstance()->IsRightToLeft();
    const int x = mirrored ? place.right() + 1 - kSelectionEdge : place.left();
    painter.fillRect(QRect(x, place.top(), kSelectionEdge, place.height()), GetToken(u"mark"));
}

bool IsButton(const PlacedCell& placed, const CSkinListItem& row)
{
    const CellLook& look = placed.cell->GetLook();
    return look.isPhoto && look.id == row.GetButtonCell();
}

// The wash of a row's button: that of the other flat ones, and a hint of it in a selected row.
void PaintButtonWash(QPainter& painter, const QRect& cell, const RowState& state, bool isSelected)
{
    if (!isSelected && !state.isButtonHovered && !state.isButtonDown)
        return;
    const int side = std::min({kButtonSide, cell.width(), cell.height()});
    QRect square(0, 0, side, side);
    square.moveCenter(cell.center());
    FillRounded(
        painter, square, radius::kButton, GetToken(state.isButtonDown ? u"press" : u"hover"));
}

} // namespace

int GetLineHeight()
{
    return QFontMetrics(GetScaledFont(1.0, 0)).height();
}

int GetRowHeight()
{
    return std::max(kRowHeight, GetLineHeight() + 10);
}

void PaintRow(QPainter& painter,
              const QRect& place,
              const CSkinList& list,
              CSkinListItem& row,
              const RowState& state)
{
    std::vector<PlacedCell> cells = LayOut(place, list, row);
    RowCanvas canvas(painter, place, list.GetSkinName());
    row.RenderSelf(canvas);
    if (state.isHovered && IsBeyond() && !canvas.IsFilled())
        painter.fillRect(place, GetToken(u"window"));
    const bool gone = IsTrackWithoutFile(list, cells, state.isGroup);
    QColor soft = GetToken(u"soft");
    if (row.IsSelected() && IsHighContrast())
        soft = GetToken(u"onhoney");
    for (PlacedCell& placed : cells) {
        if (placed.cell->GetLook().isPhoto) {
            if (IsButton(placed, row)) {
                PaintButtonWash(painter, placed.place, state, row.IsSelected());
                PaintPicture(painter, placed.place, placed.cell->GetLook().picture);
                continue;
            }
            PaintPhoto(painter, placed);
            continue;
        }
        if (gone) {
            const int room = kGonePicture + kTextGap;
            if (CSkinManager::GetInstance()->IsRightToLeft())
                placed.place.setLeft(placed.place.left() + room);
            else
                placed.place.setRight(placed.place.right() - room);
        }
        PaintText(painter, placed, gone ? soft : placed.look.colour);
    }
    if (gone)
        PaintGone(painter, place, soft);
    if (row.IsSelected())
        PaintSelectionEdge(painter, place);
    if (state.isFocused)
        DrawFrame(painter, place, 0.0, GetToken(u"mark"), 1.0);
}

bool FindTextCell(const QRect& place,
                  const CSkinList& list,
                  CSkinListItem& row,
                  const char16_t* id,
                  QRect& cell,
                  QFont& font)
{
    for (const PlacedCell& placed : LayOut(place, list, row)) {
        if (placed.cell->GetLook().id != id || placed.cell->GetLook().isPhoto)
            continue;
        cell = placed.place;
        font = placed.look.font;
        return true;
    }
    return false;
}

QRect FindButton(const QRect& place, const CSkinList& list, CSkinListItem& row)
{
    if (row.GetButtonCell().empty())
        return {};
    for (const PlacedCell& placed : LayOut(place, list, row))
        if (IsButton(placed, row))
            return placed.place;
    return {};
}

std::u16string
CellUnder(const QRect& place, const CSkinList& list, CSkinListItem& row, const QPoint& point)
{
    for (const PlacedCell& placed : LayOut(place, list, row))
        if (placed.place.contains(point) &&
            (!placed.cell->GetLook().isPhoto || IsButton(placed, row)))
            return placed.cell->GetLook().id;
    return u"text";
}

} // namespace kivo::ui::qt
