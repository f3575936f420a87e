#pragma once

#include "shell/contracts/ui/Menu.h"
#include "shell/contracts/ui/RowEvent.h"
#include "shell/contracts/ui/SkinCell.h"
#include "shell/contracts/ui/SkinObject.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace kivo::ui {

class CSkinList;

// How a row stands to its cells.
enum class RowCells : std::uint8_t {
    Made,        // They are what the row has to say.
    Due,         // There are none; they are made when somebody looks.
    Provisional, // The view made what it could without a file; the rest is still due.
};

// A row: an id, some fields and its cells; no widget, ever. A row that may have to touch a file for
// its cells lets BuildRow call MarkDue, and is then asked in one of two ways. A direct look (each
// getter of cells here) calls MakeCells at once. The view's look (painting, tooltip, type-ahead, a
// screen reader) calls MakeViewCells, which must never touch a file, and the row stays due until
// BuildNow. Thread: user interface.
class KIVO_API CSkinListItem : public CSkinObject {
public:
    CSkinListItem(CSkinList* list, const String& id); // The list outlives the row.
    ~CSkinListItem() override;

    [[nodiscard]] const String& GetID() const { return GetObjectID(); }
    [[nodiscard]] CSkinList* GetList() const { return list_; }

    // Cells. A position past the end appends; `reserved` is 0, `extra` is empty.
    void Clear();
    void AddPhoto(int position,
                  const String& id,
                  const String& skinClass,
                  const String& path,
                  const String& extra,
                  const PictureRect& source,
                  int reserved);
    // An empty tooltip is asked for by MakeTooltip when it is shown; one equal to the text costs
    // nothing. The second colour is that of a selected row.
    void AddLabel(int position,
                  const String& id,
                  const String& skinClass,
                  const String& text,
                  const String& tooltip,
                  const LOGFONT& font,
                  COLORREF colour,
                  COLORREF selectedColour,
                  int reserved);
    void ModifyPhoto(const String& id,
                     const String& skinClass,
                     const String& path,
                     const String& extra,
                     const PictureRect& source); // Nothing if there is no such photo.

    // Direct looks. Empty or null without such a cell.
    [[nodiscard]] int GetCellCount();
    [[nodiscard]] bool HasCell(const String& id);
    [[nodiscard]] String GetCellText(const String& id);
    [[nodiscard]] const CellLook* GetCellLook(const String& id);
    [[nodiscard]] const CellLook* GetCellLookAt(int position);
    [[nodiscard]] String GetCellTooltip(const String& id); // As added, else MakeTooltip.

    // Looks of the view: painting, and what a user may ask of any row in passing (its tooltip, its
    // menu, its editor). They never wait for a file.
    [[nodiscard]] String GetViewText(const String& id);
    [[nodiscard]] bool HasViewCell(const String& id);
    [[nodiscard]] String GetViewTooltip(const String& id); // As added, else MakeTooltip.
    // Lays the cells out in an area of that size, by ReposControls and the anchor styles, mirrored
    // in right-to-left windows. The cells live until the next layout in the list.
    // The row's bounds become (0, 0, width, height).
    [[nodiscard]] const std::vector<CSkinCell>& LayOutForView(Size size);
    [[nodiscard]] virtual int GetIndent() const; // Pixels in front of the margins. The base: 0.
    // Its height where a line of the desktop's font has `lineHeight` pixels; 0: the usual one.
    // Asked for in a list whose rows are not uniform. The base: 0.
    [[nodiscard]] virtual int GetWantedHeight(int lineHeight) const;
    // What a screen reader says. The base: the cells "text" and "length".
    [[nodiscard]] virtual String GetSpokenText();
    // The photo that is a button, by its cell's id; empty: none. A click on it calls OnButtonCell
    // and neither selects the row nor counts as a double click. The base: none.
    [[nodiscard]] virtual String GetButtonCell() const;

    void MarkDue();  // Drops the cells; they are made at the next look.
    void BuildNow(); // Makes the cells, whatever they were, and has the row painted anew.
    [[nodiscard]] RowCells GetCellState() const { return cellState_; }
    [[nodiscard]] bool IsDue() const { return cellState_ != RowCells::Made; }

    // Sets anchors and places of the cells through GetObjectW, and margins and inset. The base puts
    // photos 16 x 16 at the leading edge, 10 from it and 6 apart, and lets the last label fill the
    // rest. Inside it alone GetObjectW gives cells.
    virtual void ReposControls();
    [[nodiscard]] CSkinCell* GetObjectW(const String& id) const; // Null: no such cell.
    void SetContentInset(int inset) { contentInset_ = static_cast<std::int16_t>(inset); }
    [[nodiscard]] int GetContentInset() const { return contentInset_; }
    void SetMargins(int left, int top, int right, int bottom);
    [[nodiscard]] Rect GetMargins() const;

    // The base fills a selected row.
    void RenderSelf(ICanvas& canvas) override;
    void Refresh(int immediately = 0) override; // This row is painted anew.

    void SetSelected(int selected);
    [[nodiscard]] int GetSelected() const { return selected_ ? 1 : 0; }
    [[nodiscard]] bool IsSelected() const { return selected_; }
    void SetMultiSelectable(int on) { multiSelectable_ = on != 0; } // 1 at first.
    [[nodiscard]] bool IsMultiSelectable() const { return multiSelectable_; }
    void SetAcceptsDrop(int accepts) { acceptsDrop_ = accepts != 0; }
    [[nodiscard]] int GetAcceptsDrop() const { return acceptsDrop_ ? 1 : 0; }

    virtual void BuildRow() = 0; // Makes the cells anew, or marks them due.

    // `context` has no meaning here. May destroy the row. The base: DragOver accepts the drop, all
    // else does nothing. The result has no meaning.
    virtual int OnListEvent(CSkinList* list, int context, int event, const String& text);
    virtual bool OnEditEnd(const String& oldText, const String& newText); // True: accepted.
    virtual IMenu* GetRowMenu(const MenuDelegate& delegate) = 0; // The caller's; null: none.
    virtual void OnRowCommand(IMenu* entry) = 0;
    virtual void OnRenameKey();  // F2 on the row. The base does nothing.
    virtual void OnButtonCell(); // May destroy the row. The base does nothing.
    // 1: the user may select it. In a plain list the keys pass over a row that says 0. The base: 1.
    virtual int CanBeSelected();
    virtual int CanBeEdited(); // 1: its text may be edited in place. The base: 0.

protected:
    virtual void MakeCells();     // For a row that marks itself due. The base does nothing.
    virtual void MakeViewCells(); // The same without touching a file. The base calls MakeCells.
    virtual String MakeTooltip(const String& cellId); // The base: the cell's text.

private:
    friend class CSkinList;
    friend class CSkinTree;
    friend class CSkinTreeItem;
    struct Cell;

    void AddCell(int position, const CellLook& look, StringView text, StringView tooltip);
    [[nodiscard]] const Cell* FindCell(const String& id) const;
    [[nodiscard]] String TooltipOf(const String& id);
    void LookDirect();
    void LookFromView();
    void CellsChanged();
    void SayGone();

    CSkinList* list_;
    std::unique_ptr<Cell[]> cells_;
    std::int16_t marginLeft_ = 0;
    std::int16_t marginTop_ = 0;
    std::int16_t marginRight_ = 0;
    std::int16_t marginBottom_ = 0;
    std::int16_t contentInset_ = 0;
    std::uint8_t cellCount_ = 0;
    RowCells cellState_ = RowCells::Made;
    bool selected_ = false;
    bool multiSelectable_ = true;
    bool acceptsDrop_ = false;
    bool looking_ = false; // The view looks: what it makes is no change.
    bool gone_ = false;
};

} // namespace kivo::ui
