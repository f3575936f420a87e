#pragma once

#include "shell/contracts/base/Export.h"
#include "shell/contracts/ui/Types.h"

namespace kivo::ui {

// The constants of a cell, shared by all rows that have one like it.
struct CellLook {
    bool isPhoto = false;
    String id;
    String skinClass;
    String picture; // Of a photo.
    PictureRect source;
    LOGFONT font;
    COLORREF colour = 0;
    COLORREF selectedColour = 0;
    friend bool operator==(const CellLook&, const CellLook&) = default;
};

// One cell of a row while the row is laid out. It lives in the list's scratch pad and dies at the
// next layout of any row of that list. Thread: user interface.
class KIVO_API CSkinCell {
public:
    CSkinCell(const CellLook& look, StringView text)
        : look_(&look)
        , text_(text)
    {
    }

    [[nodiscard]] const CellLook& GetLook() const { return *look_; }
    [[nodiscard]] StringView GetText() const { return text_; } // Of a label; plain text.

    void SetAnchorStyle(int style) { anchorStyle_ = style; }
    [[nodiscard]] int GetAnchorStyle() const { return anchorStyle_; }
    void SetBounds(int left, int top, int width, int height)
    {
        bounds_ = {left, top, left + width, top + height};
    }
    [[nodiscard]] Rect GetBoundsRect() const { return bounds_; }    // After the layout: in the row.
    void SetAlignmentHor(int alignment) { alignment_ = alignment; } // See namespace align.
    [[nodiscard]] int GetAlignmentHor() const { return alignment_; }
    void SetMultiLine(int multiLine) { multiLine_ = multiLine != 0; }
    [[nodiscard]] bool IsMultiLine() const { return multiLine_; }
    [[nodiscard]] SkinConfig* GetSkinConfig() { return &config_; }
    [[nodiscard]] const SkinConfig& GetConfig() const { return config_; }

private:
    const CellLook* look_;
    StringView text_;
    Rect bounds_;
    SkinConfig config_;
    int anchorStyle_ = anchor::kNone;
    int alignment_ = align::kLeading;
    bool multiLine_ = false;
};

} // namespace kivo::ui
