#pragma once

#include "shell/contracts/ui/SkinObject.h"

namespace kivo::ui {

// A text that the user only reads. Thread: user interface.
class KIVO_API CSkinLabel : public CSkinObject {
public:
    CSkinLabel();
    ~CSkinLabel() override;

    void SetAlignmentHor(int alignment); // See namespace align.
    [[nodiscard]] int GetAlignmentHor() const { return alignment_; }
    void SetMultiLine(int multiLine); // 0: one line. 1: wraps.
    [[nodiscard]] bool IsMultiLine() const { return multiLine_; }
    [[nodiscard]] SkinConfig* GetSkinConfig() { return &config_; }
    [[nodiscard]] const SkinConfig& GetConfig() const { return config_; }
    void SetTextColour(COLORREF colour); // A key, see COLORREF.
    [[nodiscard]] COLORREF GetTextColour() const { return colour_; }

    // The id of the field that it names, whose accessible name is then this text.
    void SetBuddy(const String& id) { buddy_ = id; }
    [[nodiscard]] const String& GetBuddy() const { return buddy_; }

protected:
    std::unique_ptr<IPeer> MakePeer() override;

private:
    String buddy_;
    SkinConfig config_;
    COLORREF colour_ = 0;
    int alignment_ = align::kLeading;
    bool multiLine_ = false;
};

} // namespace kivo::ui
