#pragma once

#include "shell/contracts/ui/Menu.h"
#include "shell/contracts/ui/SkinPanel.h"

namespace kivo::tunehive {

class CMediaTree;
class CMediaTreePanel;
class ITrackPickers;

// The strip of buttons above the tree: add, delete and play mode, each with a menu. Its add
// commands ask for the group, unlike those of the tree. Thread: user interface.
class CToolPanel : public ui::CSkinPanel {
public:
    explicit CToolPanel(ITrackPickers* pickers); // Borrowed; may be null.

    void Build(CWnd* parent); // Without a node in the build file nothing is built.
    void SetTreePanel(const CMediaTreePanel* panel); // Borrowed.
    int OnBuildControlAfter() override;

    void ShowAddMenu();
    virtual void DoMenuCommand(ui::IMenu* entry);

private:
    void OnButton(ui::CSkinObject* sender, void* data);
    void OnSelectedSome(bool some);
    void ShowDeleteMenu();
    void ShowModeMenu();
    void Popup(ui::IMenu* menu);
    void AddFilesByDialog();
    void AddFolderByDialog();
    void AddURLByDialog();
    [[nodiscard]] CMediaTree* GetTree() const;
    [[nodiscard]] ui::MenuDelegate GetMenuDelegate();

    ITrackPickers* pickers_;
    const CMediaTreePanel* treePanel_ = nullptr;
    CWnd* parent_ = nullptr;
    ui::CSkinObject* addButton_ = nullptr;
    ui::CSkinObject* deleteButton_ = nullptr;
    ui::CSkinObject* modeButton_ = nullptr;
    ui::CSkinObject* settingsButton_ = nullptr;
};

} // namespace kivo::tunehive
