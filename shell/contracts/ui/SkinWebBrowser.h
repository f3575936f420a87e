#pragma once

#include "shell/contracts/base/Delegate.h"
#include "shell/contracts/ui/SkinWnd.h"
#include "shell/contracts/ui/UrlTranslateHandler.h"

namespace kivo::ui {

// The events of a browser, by dispatch id.
enum class BrowserEvent : int {
    DownloadBegin = 106,
    NewWindow2 = 251, // Behind TranslateUrl of the handler; set `cancel` and no window opens.
    DocumentComplete = 259,
};

struct BrowserEventArgs {
    int controlId = 0;
    BrowserEvent event = BrowserEvent::DocumentComplete;
    bool cancel = false;
};

// An embedded web browser of http and https pages. A new window never opens inside the program: one
// that isn't cancelled goes to the user's browser. Thread: user interface.
class KIVO_API CSkinWebBrowser : public CSkinWnd {
public:
    static void InitControlContainer();   // Nothing is needed before the first browser.
    static void UninitControlContainer(); // Nothing.

    CSkinWebBrowser();
    ~CSkinWebBrowser() override;

    // The create step. `flags` is 0x84. 1: done. 0: the browser module is missing or refuses.
    int Create(const String& name,
               unsigned style,
               const Rect& bounds,
               CWnd* parent,
               int id,
               unsigned flags);

    // Option bits; all are set at first, and none has an effect here.
    void SetOptions(unsigned options) { options_ = options; }
    [[nodiscard]] unsigned GetOptions() const { return options_; }

    void SetTranslateHandler(UrlTranslateHandler* handler) { handler_ = handler; } // Borrowed.
    void SetEventListener(const Delegate<BrowserEventArgs*>& listener) { listener_ = listener; }

    void Navigate(const String& url); // http and https alone; anything else does nothing.
    [[nodiscard]] const String& GetURL() const { return url_; } // The last one asked for.

    // Reports of the peer.
    void OnNavigation(const String& url); // The page itself is about to go there.
    void OnLoadStarted();
    void OnLoadFinished();
    bool OnNewWindow(const String& url); // True: cancelled. May destroy the browser.

protected:
    std::unique_ptr<IPeer> MakePeer() override;

private:
    void Fire(BrowserEventArgs& args);

    UrlTranslateHandler* handler_ = nullptr;
    Delegate<BrowserEventArgs*> listener_;
    String url_;
    unsigned options_ = 0xFFU;
};

} // namespace kivo::ui
