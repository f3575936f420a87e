#include "shell/contracts/ui/SkinWebBrowser.h"

#include "platform/ui/Peers.h"
#include "shell/contracts/common/AppPath.h"

namespace kivo::ui {

void CSkinWebBrowser::InitControlContainer() {}

void CSkinWebBrowser::UninitControlContainer() {}

CSkinWebBrowser::CSkinWebBrowser() = default;

CSkinWebBrowser::~CSkinWebBrowser() = default;

int CSkinWebBrowser::Create(const String& name,
                            unsigned style,
                            const Rect& bounds,
                            CWnd* parent,
                            int id,
                            unsigned /*flags*/)
{
    return CSkinWnd::Create(style, u"Browser", name, bounds, parent, id);
}

void CSkinWebBrowser::Navigate(const String& url)
{
    if (!url.starts_with(u"http://") && !url.starts_with(u"https://"))
        return;
    url_ = url;
    if (auto* peer = static_cast<IBrowserPeer*>(GetPeer()))
        peer->Navigate(url);
}

void CSkinWebBrowser::OnNavigation(const String& url)
{
    String replacement;
    if (handler_ != nullptr)
        handler_->TranslateUrl(/*reserved=*/0, url, replacement);
}

void CSkinWebBrowser::OnLoadStarted()
{
    BrowserEventArgs args{GetControlId(), BrowserEvent::DownloadBegin, /*cancel=*/false};
    Fire(args);
}

void CSkinWebBrowser::OnLoadFinished()
{
    SetCursor(0);
    BrowserEventArgs args{GetControlId(), BrowserEvent::DocumentComplete, /*cancel=*/false};
    Fire(args);
}

bool CSkinWebBrowser::OnNewWindow(const String& url)
{
    const LifeWatch life = Watch();
    OnNavigation(url);
    if (!life.IsAlive())
        return true;
    BrowserEventArgs args{GetControlId(), BrowserEvent::NewWindow2, /*cancel=*/false};
    Fire(args);
    if (!args.cancel)
        common::SafeOpenWeb(url, /*mode=*/3);
    return args.cancel;
}

void CSkinWebBrowser::Fire(BrowserEventArgs& args)
{
    const Delegate<BrowserEventArgs*> listener = listener_; // The call may destroy the browser.
    listener(&args);
}

std::unique_ptr<IPeer> CSkinWebBrowser::MakePeer()
{
    return GetPeerFactory().MakeBrowser(*this);
}

} // namespace kivo::ui
