#pragma once

#include "shell/contracts/ui/SkinForm.h"
#include "shell/contracts/ui/SkinWebBrowser.h"
#include "shell/contracts/ui/UrlTranslateHandler.h"

namespace kivo::tunehive {

// What the music cabinet asks of the page. Thread: user interface.
class IMusicCabOwner {
public:
    virtual void StopPlayer() = 0;
    virtual void AddTrack(const String& group,
                          const String& url,
                          const String& name,
                          int allowDuplicate,
                          String& sid) = 0;
    virtual void PlayTrack(const String& group, const String& sid) = 0;

    // 1: confirmed, and the three texts are the user's choice. The form may be gone afterwards.
    virtual int ShowAddURLForm(CWnd* parent, String& group, String& url, String& name) = 0;

protected:
    ~IMusicCabOwner() = default;
};

// A form with a browser on the music server's page. Some links of the page are commands: they add a
// track or play one. All other new-window links go to the user's browser. It frees itself when the
// user closes it. Thread: user interface.
class CMusicCabForm : public ui::CSkinForm, public ui::UrlTranslateHandler {
public:
    // The owner is borrowed; null: music links do nothing.
    explicit CMusicCabForm(IMusicCabOwner* owner = nullptr);

    int Create(CWnd* parent); // 1: the window is there. The browser may be missing all the same.
    [[nodiscard]] bool HasBrowser() const { return browser_ != nullptr; }
    int OnBuildControlAfter() override;
    int OnSysButton(const String& button) override;
    int TranslateUrl(int reserved, const String& url, String& replacement) override;

private:
    void OnBrowserEvent(ui::BrowserEventArgs* args);
    void OnNewWindow(ui::BrowserEventArgs& args);
    void RunMusicLink(const String& url, const String& fields);

    ui::CSkinWebBrowser* browser_ = nullptr; // Released with the form's controls.
    String lastURL_;
    IMusicCabOwner* owner_;
};

} // namespace kivo::tunehive
