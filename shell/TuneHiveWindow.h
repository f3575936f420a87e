#pragma once

#include "forms/MusicCabForm.h"
#include "player/IPage.h"
#include "shell/contracts/base/IPluginWindow.h"
#include "shell/contracts/base/LifeToken.h"

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
class TuneHiveWindow : public IPluginWindow, public IPage, public IMusicCabOwner {
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
    void OnVolFormShown(bool shown) override;
    [[nodiscard]] int GetPlayState() override;
    int PlaySelectedElsewhere() override;
    void ShowAddMenu() override;
    void LayOut() override;
    [[nodiscard]] IPlugin* GetPlugin() override { return plugin_; }

    void StopPlayer() override; // As when playback ends, not by the user's stop button.
    // To the tree; nothing without one.
    void AddTrack(const String& group,
                  const String& url,
                  const String& name,
                  int allowDuplicate,
                  String& sid) override;
    void ExpandGroup(const String& group) const;
    void PlayTrack(const String& group, const String& sid) override;

    int ShowAddURLForm(CWnd* parent, String& group, String& url, String& name) override;
    void OpenMusicCabinet(); // Or brings the open one to the front. Says what is missing.
    void RemoveSign();       // Takes a sign that is out down; nothing before the panel exists.

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
    void CloseMusicCabinet();

    IPlugin* plugin_;
    CPlayerPanel* playerPanel_ = nullptr;
    CMediaTreePanel* treePanel_ = nullptr;
    CLyricPanel* lyricPanel_ = nullptr;
    CToolPanel* toolPanel_ = nullptr;
    CVolForm* volForm_ = nullptr;
    ui::CSkinSplitter* splitter_ = nullptr;
    CMusicCabForm* cabinet_ = nullptr; // Frees itself when the user closes it;
    LifeWatch cabinetLife_;            // whether it still stands.
    std::unique_ptr<TrackPickers> pickers_;
    std::unique_ptr<TuneHiveRemote> remote_;
};

} // namespace kivo::tunehive
