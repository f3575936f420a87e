#pragma once

#include "medialib/MediaInfo.h"
#include "shell/contracts/ui/SkinTreeItem.h"

#include <cstdint>

namespace kivo::tunehive {

class CMediaTree;

// The row of one track. It holds nothing of the track but its SID and whether it is current: each
// time it is built it asks the group and the library. Thread: user interface.
class CMediaTreeItem final : public ui::CSkinTreeItem {
public:
    CMediaTreeItem(CMediaTree* tree, const String& sid);

    void SetPlaying(bool playing); // Marks it as the current row, and builds it.
    [[nodiscard]] bool IsPlaying() const { return playing_; }
    [[nodiscard]] String GetGroupID() const; // Empty without a parent.
    [[nodiscard]] const String& GetSID() const { return GetID(); }
    void GetStoredName(String& name) const; // Untouched when there is none.
    void GetStoredPath(String& path) const;

    // What a look at the disk found out: whether the file is there. A row that shows what was known
    // is built from it, without touching the disk again.
    void OnLookedUp(bool exists);

    void RenderSelf(ui::ICanvas& canvas) override;
    void ReposControls() override;
    void BuildRow() override;
    int OnListEvent(ui::CSkinList* list, int context, int event, const String& text) override;
    bool OnEditEnd(const String& oldText, const String& newText) override;
    ui::IMenu* GetRowMenu(const ui::MenuDelegate& delegate) override;
    void OnRowCommand(ui::IMenu* entry) override;
    void OnRenameKey() override;
    void OnExpandChanged(ui::CSkinTree* /*tree*/, int /*row*/, bool /*expanded*/) override {}
    int CanBeSelected() override { return 1; }
    int CanBeEdited() override { return 1; }

protected:
    void MakeCells() override;
    void MakeViewCells() override;
    String MakeTooltip(const String& cellId) override;

private:
    enum class FileState : std::uint8_t { Unknown, There, Gone };

    [[nodiscard]] CMediaTree& GetMediaTree() const;
    [[nodiscard]] MediaInfo GetStoredRecord() const;
    void MakeCellsFrom(const MediaInfo& info, const MediaInfo& stored, bool isValid);
    void RunPlayCommand();
    void OpenTrack();

    bool playing_ = false;
    bool usesKnown_ = false; // Cells are being made from what is known.
    FileState file_ = FileState::Unknown;
};

} // namespace kivo::tunehive
