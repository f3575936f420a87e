#pragma once

#include "player/IPage.h"
#include "shell/contracts/base/IPluginWindow.h"

#include <memory>

namespace kivo::ui {
class CSkinSplitter;
}

namespace kivo::tunehive {

class CLyricPanel;
class CMediaTree;
class CMediaTreePanel;
class CPlayerPanel;
class CToolPanel;
class CVolForm;
class TrackPickers;
class TuneHiveRemote;

// The page that the plug-in adds to the host's main form: player panel, tool panel, and a splitter
// with the tree of groups above and the picture below. Panels know it and nothing else of their
// neighbours. Thread: user interface.
class TuneHiveWindow : public IPluginWindow, public IPage {
public:
    // `parent` and `plugin` are borrowed.
    TuneHiveWindow(CWnd* parent, IPlugin* plugin);
    ~TuneHiveWindow() override;
    void Release() override;

    void ShowPage(int visible) override;
    int CreatePage() override;
    int ClosePage() override;
    [[nodiscard]] int GetPageWord() override;

    [[nodiscard]] IPlayingList* GetPlayingList() override;
    int GetCurrentTrackInfo(MediaInfo& info) override;
    int SetPaneMode(int mode) override;
    [[nodiscard]] int IsPaneVisible() override;
    void ShowVolForm(int action, int x, int y) override;
    void ForgetVolForm() override { volForm_ = nullptr; }
    [[nodiscard]] int GetPlayState() override;
    int PlaySelectedElsewhere() override;
    void ShowAddMenu() override;
    void LayOut() override;
    [[nodiscard]] IPlugin* GetPlugin() override { return plugin_; }

    void StopPlayer(); // As when playback ends, not by the user's stop button.
    void RemoveSign(); // Takes a sign that is out down; nothing before the panel exists.

    // Null before CreatePage and after the window's end.
    [[nodiscard]] CPlayerPanel* GetPlayerPanel() const { return playerPanel_; }
    [[nodiscard]] CLyricPanel* GetLyricPanel() const { return lyricPanel_; }
    [[nodiscard]] CVolForm* GetVolForm() const { return volForm_; } // Null after ClosePage too.
    [[nodiscard]] ui::CSkinSplitter* GetSplitter() const { return splitter_; }
    [[nodiscard]] CMediaTree* GetTree() const;
    [[nodiscard]] TuneHiveRemote* GetRemote() const { return remote_.get(); } // While it is open.

private:
    void CreateToolPanel();
    void CreateSplitter();
    void CreateTreePanel();
    void CreateLyricPanel();
    bool OpenPane();
    void ReleaseVolForm();

    IPlugin* plugin_;
    CPlayerPanel* playerPanel_ = nullptr;
    CMediaTreePanel* treePanel_ = nullptr;
    CLyricPanel* lyricPanel_ = nullptr;
    CToolPanel* toolPanel_ = nullptr;
    CVolForm* volForm_ = nullptr;
    ui::CSkinSplitter* splitter_ = nullptr;
    std::unique_ptr<TrackPickers> pickers_;
    std::unique_ptr<TuneHiveRemote> remote_;
};

} // namespace kivo::tunehive
