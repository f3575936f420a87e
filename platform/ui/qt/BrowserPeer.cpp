#include "platform/ui/qt/BrowserPeer.h"

#include "platform/base/BrowserSafety.h"
#include "platform/base/Modules.h"
#include "platform/ui/qt/WidgetPeer.h"
#include "platform/ui/WebView.h"
#include "shell/contracts/ui/SkinWebBrowser.h"

#include <QOpenGLContext>

// Qt exports these without a header.
Q_GUI_EXPORT QOpenGLContext* qt_gl_global_share_context();
Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext* context);

namespace kivo::ui::qt {

namespace {

// The place of the page in its form.
class BrowserWidget final : public QWidget {
public:
    explicit BrowserWidget(QWidget* parent)
        : QWidget(parent)
    {
    }

    void Detach() { page_ = nullptr; }
    void SetPage(QWidget* page)
    {
        page_ = page;
        setFocusProxy(page);
        page->setGeometry(rect());
    }

protected:
    void resizeEvent(QResizeEvent* /*event*/) override
    {
        if (page_ != nullptr)
            page_->setGeometry(rect());
    }

private:
    QPointer<QWidget> page_;
};

class BrowserPeer final : public WindowPeer<IBrowserPeer, CSkinWebBrowser, BrowserWidget>,
                          private IWebViewListener {
public:
    using WindowPeer::WindowPeer;

    bool Open(WebViewMaker make)
    {
        view_.reset(make(*this, widget_));
        if (view_ == nullptr)
            return false;
        widget_->SetPage(view_->GetWidget());
        Apply(Change::Visible);
        return true;
    }

    void Navigate(const String& url) override { view_->Navigate(url); }

protected:
    void ApplyOwn(Change change) override
    {
        if (change == Change::Cursor)
            ApplyCursor(*widget_, control_.GetCursor());
        else
            WindowPeer::ApplyOwn(change);
    }

private:
    void OnNavigation(const String& url) override { control_.OnNavigation(url); }
    void OnLoadStarted() override { control_.OnLoadStarted(); }
    void OnLoadFinished() override { control_.OnLoadFinished(); }
    void OnNewWindow(const String& url) override { control_.OnNewWindow(url); }

    std::unique_ptr<IWebView> view_;
};

// The browser ends the program if there is no context that all others share. The usual way to have
// one, an attribute of the application, makes every start slower and bigger; this one is there when
// the browser is loaded. Pages are drawn without it, so it needn't work.
void ShareGraphics()
{
    if (qt_gl_global_share_context() != nullptr)
        return;
    auto context = std::make_unique<QOpenGLContext>();
    context->create();
    qt_gl_set_global_share_context(context.release()); // The browser's until the process ends.
}

} // namespace

std::unique_ptr<IBrowserPeer> MakeBrowserPeer(CSkinWebBrowser& browser)
{
    if (!CanBrowserStart())
        return nullptr;
    ShareGraphics();
    const auto make = reinterpret_cast<WebViewMaker>(FindInModule(kWebModule, kWebViewMaker));
    if (make == nullptr)
        return nullptr;
    auto peer = std::make_unique<BrowserPeer>(browser, new BrowserWidget(ParentWidgetOf(browser)));
    return peer->Open(make) ? std::move(peer) : nullptr;
}

} // namespace kivo::ui::qt
