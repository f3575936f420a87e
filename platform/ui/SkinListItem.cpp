#include "shell/contracts/ui/SkinListItem.h"

#include "platform/ui/CellText.h"
#include "platform/ui/Layout.h"
#include "shell/contracts/ui/Canvas.h"
#include "shell/contracts/ui/SkinList.h"
#include "shell/contracts/ui/SkinManager.h"

#include <algorithm>
#include <limits>
#include <unordered_set>
#include <utility>

namespace kivo::ui {

struct CSkinListItem::Cell {
    const CellLook* look = nullptr;
    CellText text;
};

namespace {

constexpr COLORREF kSelectedRow = 0xFEEEDF;
constexpr int kRowPadding = 10;
constexpr int kPhotoSize = 16;
constexpr int kPhotoGap = 6;
constexpr int kTrailingPadding = 15;

struct LookHash {
    std::size_t operator()(const CellLook& look) const
    {
        const std::hash<String> hash;
        return hash(look.id) ^ (hash(look.skinClass) << 1) ^ (hash(look.picture) << 2) ^
               look.colour;
    }
};

// The looks in use, one of each; there are as many as kinds of cells, so they are kept.
const CellLook* Shared(const CellLook& look)
{
    static std::unordered_set<CellLook, LookHash> looks;
    return &*looks.insert(look).first;
}

} // namespace

CSkinListItem::CSkinListItem(CSkinList* list, const String& id)
    : list_(list)
{
    SetObjectID(id);
}

CSkinListItem::~CSkinListItem()
{
    SayGone();
}

void CSkinListItem::SayGone()
{
    if (!std::exchange(gone_, true) && list_ != nullptr)
        list_->OnRowGone(this);
}

void CSkinListItem::Clear()
{
    cells_.reset();
    cellCount_ = 0;
    cellState_ = RowCells::Made;
    CellsChanged();
}

void CSkinListItem::AddPhoto(int position,
                             const String& id,
                             const String& skinClass,
                             const String& path,
                             const String& /*extra*/,
                             const PictureRect& source,
                             int /*reserved*/)
{
    CellLook look;
    look.isPhoto = true;
    look.id = id;
    look.skinClass = skinClass;
    look.picture = path;
    look.source = source;
    AddCell(position, look, {}, {});
}

void CSkinListItem::AddLabel(int position,
                             const String& id,
                             const String& skinClass,
                             const String& text,
                             const String& tooltip,
                             const LOGFONT& font,
                             COLORREF colour,
                             COLORREF selectedColour,
                             int /*reserved*/)
{
    CellLook look;
    look.id = id;
    look.skinClass = skinClass;
    look.font = font;
    look.colour = colour;
    look.selectedColour = selectedColour;
    AddCell(position, look, text, tooltip == text ? StringView() : StringView(tooltip));
}

void CSkinListItem::AddCell(int position, const CellLook& look, StringView text, StringView tooltip)
{
    if (cellCount_ == std::numeric_limits<std::uint8_t>::max())
        return;
    auto cells = std::make_unique<Cell[]>(std::size_t{cellCount_} + 1);
    const auto place =
        static_cast<std::size_t>(position < 0 || position > cellCount_ ? cellCount_ : position);
    for (std::size_t index = 0; index < cellCount_; ++index)
        cells[index < place ? index : index + 1] = std::move(cells_[index]);
    cells[place] = Cell{Shared(look), CellText(text, tooltip)};
    cells_ = std::move(cells);
    ++cellCount_;
    CellsChanged();
}

void CSkinListItem::ModifyPhoto(const String& id,
                                const String& skinClass,
                                const String& path,
                                const String& /*extra*/,
                                const PictureRect& source)
{
    for (std::size_t index = 0; index < cellCount_; ++index) {
        Cell& cell = cells_[index];
        if (!cell.look->isPhoto || cell.look->id != id)
            continue;
        CellLook look = *cell.look;
        look.skinClass = skinClass;
        look.picture = path;
        look.source = source;
        cell.look = Shared(look);
        CellsChanged();
        return;
    }
}

const CSkinListItem::Cell* CSkinListItem::FindCell(const String& id) const
{
    for (std::size_t index = 0; index < cellCount_; ++index)
        if (cells_[index].look->id == id)
            return &cells_[index];
    return nullptr;
}

int CSkinListItem::GetCellCount()
{
    LookDirect();
    return cellCount_;
}

bool CSkinListItem::HasCell(const String& id)
{
    LookDirect();
    return FindCell(id) != nullptr;
}

String CSkinListItem::GetCellText(const String& id)
{
    LookDirect();
    const Cell* cell = FindCell(id);
    return cell != nullptr ? String(cell->text.GetText()) : String();
}

const CellLook* CSkinListItem::GetCellLook(const String& id)
{
    LookDirect();
    const Cell* cell = FindCell(id);
    return cell != nullptr ? cell->look : nullptr;
}

const CellLook* CSkinListItem::GetCellLookAt(int position)
{
    LookDirect();
    return position >= 0 && position < cellCount_ ? cells_[static_cast<std::size_t>(position)].look
                                                  : nullptr;
}

String CSkinListItem::GetCellTooltip(const String& id)
{
    LookDirect();
    return TooltipOf(id);
}

String CSkinListItem::GetViewTooltip(const String& id)
{
    LookFromView();
    return TooltipOf(id);
}

String CSkinListItem::TooltipOf(const String& id)
{
    const Cell* cell = FindCell(id);
    if (cell == nullptr)
        return {};
    const StringView tooltip = cell->text.GetTooltip();
    return !tooltip.empty() ? String(tooltip) : MakeTooltip(id);
}

String CSkinListItem::GetViewText(const String& id)
{
    LookFromView();
    const Cell* cell = FindCell(id);
    return cell != nullptr ? String(cell->text.GetText()) : String();
}

bool CSkinListItem::HasViewCell(const String& id)
{
    LookFromView();
    return FindCell(id) != nullptr;
}

void CSkinListItem::MarkDue()
{
    cells_.reset();
    cellCount_ = 0;
    cellState_ = RowCells::Due;
    CellsChanged();
}

void CSkinListItem::BuildNow()
{
    cellState_ = RowCells::Made; // First: what MakeCells asks of the row isn't a look.
    MakeCells();
    cellState_ = RowCells::Made;
    CellsChanged();
}

void CSkinListItem::LookDirect()
{
    if (cellState_ != RowCells::Made && !looking_)
        BuildNow();
}

void CSkinListItem::LookFromView()
{
    if (cellState_ != RowCells::Due || looking_)
        return;
    looking_ = true;
    MakeViewCells();
    looking_ = false;
    cellState_ = RowCells::Provisional;
}

void CSkinListItem::CellsChanged()
{
    if (!looking_ && list_ != nullptr)
        list_->OnRowChanged(this);
}

void CSkinListItem::MakeCells() {}

void CSkinListItem::MakeViewCells()
{
    MakeCells();
}

String CSkinListItem::MakeTooltip(const String& cellId)
{
    const Cell* cell = FindCell(cellId);
    return cell != nullptr ? String(cell->text.GetText()) : String();
}

int CSkinListItem::GetIndent() const
{
    return 0;
}

int CSkinListItem::GetWantedHeight(int /*lineHeight*/) const
{
    return 0;
}

String CSkinListItem::GetSpokenText()
{
    String text = GetViewText(u"text");
    const String length = GetViewText(u"length");
    return length.empty() ? text : text + u", " + length;
}

String CSkinListItem::GetButtonCell() const
{
    return {};
}

const std::vector<CSkinCell>& CSkinListItem::LayOutForView(Size size)
{
    LookFromView();
    SetBoundsRect({0, 0, size.width, size.height});
    std::vector<CSkinCell>& laidOut = list_->scratch_;
    laidOut.clear();
    for (std::size_t index = 0; index < cellCount_; ++index)
        laidOut.emplace_back(*cells_[index].look, cells_[index].text.GetText());
    list_->scratchRow_ = this;
    ReposControls();
    list_->scratchRow_ = nullptr;

    std::vector<DockItem> items;
    items.reserve(laidOut.size());
    for (const CSkinCell& cell : laidOut) {
        const Rect place = cell.GetBoundsRect();
        items.push_back({
            cell.GetAnchorStyle(), {WidthOf(place),     HeightOf(place)},
             Rect{                  },
             place
        });
    }
    const Rect margins = GetMargins();
    PlaceStrips(items,
                {GetIndent() + margins.left,
                 margins.top,
                 size.width - margins.right,
                 size.height - margins.bottom},
                /*gap=*/0);
    const bool mirrored = CSkinManager::GetInstance()->IsRightToLeft();
    for (std::size_t index = 0; index < laidOut.size(); ++index) {
        const Rect& place = items[index].place;
        const Rect shown = mirrored ? Mirror(place, size.width) : place;
        laidOut[index].SetBounds(shown.left, shown.top, WidthOf(shown), HeightOf(shown));
    }
    return laidOut;
}

void CSkinListItem::ReposControls()
{
    SetMargins(kRowPadding, 0, kTrailingPadding, 0);
    SetContentInset(0);
    CSkinCell* lastLabel = nullptr;
    for (CSkinCell& cell : list_->scratch_) {
        cell.SetMultiLine(0);
        cell.SetAnchorStyle(anchor::kLeft);
        if (cell.GetLook().isPhoto) {
            cell.SetBounds(0, 0, kPhotoSize + kPhotoGap, kPhotoSize);
        } else {
            cell.GetSkinConfig()->labelFlag = 1;
            lastLabel = &cell;
        }
    }
    if (lastLabel != nullptr)
        lastLabel->SetAnchorStyle(anchor::kFill);
}

CSkinCell* CSkinListItem::GetObjectW(const String& id) const
{
    if (list_->scratchRow_ != this)
        return nullptr;
    for (CSkinCell& cell : list_->scratch_)
        if (cell.GetLook().id == id)
            return &cell;
    return nullptr;
}

void CSkinListItem::SetMargins(int left, int top, int right, int bottom)
{
    marginLeft_ = static_cast<std::int16_t>(left);
    marginTop_ = static_cast<std::int16_t>(top);
    marginRight_ = static_cast<std::int16_t>(right);
    marginBottom_ = static_cast<std::int16_t>(bottom);
}

Rect CSkinListItem::GetMargins() const
{
    return {marginLeft_, marginTop_, marginRight_, marginBottom_};
}

void CSkinListItem::RenderSelf(ICanvas& canvas)
{
    if (selected_)
        canvas.FillRect(GetBoundsRect(), kSelectedRow);
}

void CSkinListItem::Refresh(int /*immediately*/)
{
    CellsChanged();
}

void CSkinListItem::SetSelected(int selected)
{
    if (selected_ == (selected != 0))
        return;
    selected_ = selected != 0;
    if (list_ != nullptr)
        list_->OnRowSelected(this);
}

int CSkinListItem::OnListEvent(CSkinList* /*list*/,
                               int /*context*/,
                               int event,
                               const String& /*text*/)
{
    if (event == static_cast<int>(RowEvent::DragOver))
        SetAcceptsDrop(1);
    return 0;
}

bool CSkinListItem::OnEditEnd(const String& /*oldText*/, const String& /*newText*/)
{
    return true;
}

void CSkinListItem::OnRenameKey() {}

void CSkinListItem::OnButtonCell() {}

int CSkinListItem::CanBeSelected()
{
    return 1;
}

int CSkinListItem::CanBeEdited()
{
    return 0;
}

} // namespace kivo::ui
