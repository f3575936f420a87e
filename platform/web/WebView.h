#pragma once

#include "platform/ui/WebView.h"
#include "platform/web/LockedPage.h"
#include "platform/web/LockedProfile.h"

#include <QPointer>
#include <QWidget>

class QStackedLayout;
class QWebEngineView;

namespace kivo::web {

// A page in a widget. What the page does is reported from the event loop, never from inside the
// browser, so that a report may open a form or end the view. A page whose process has died makes
// room for a button that loads it again. Thread: user interface.
class WebView final : public QObject, public ui::IWebView {
    Q_OBJECT

public:
    WebView(ui::IWebViewListener& listener, QWidget* parent); // The listener is borrowed.
    WebView(const WebView&) = delete;
    WebView& operator=(const WebView&) = delete;
    ~WebView() override;

    [[nodiscard]] QWidget* GetWidget() const override { return widget_; }
    void Navigate(const String& url) override;

private:
    [[nodiscard]] QWidget* MakeNotice();
    void ShowNotice(bool isShown);
    void OnNewWindowWanted(const QUrl& url);
    void ReportNewWindow(const String& url);

    ui::IWebViewListener& listener_;
    LockedProfile profile_; // Goes last.
    LockedPage page_{profile_};
    QPointer<QWidget> widget_; // The parent's, which may be quicker than we are.
    QPointer<QStackedLayout> layout_;
    bool isReportingNewWindow_ = false; // From the link to the end of its report.
};

} // namespace kivo::web
