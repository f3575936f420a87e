#include "platform/web/WebView.h"
#include "shell/contracts/base/Export.h"

#include <QLoggingCategory>
#include <QQuickWindow>

#include <memory>

namespace {

// Once, before the first page.
bool Prepare()
{
    // Pages are drawn without the graphics card: its drivers are no place for what strangers wrote.
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    // The browser tells of that on the error stream as if it were a fault.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext=false"));
    return true;
}

} // namespace

// What libkivo.so looks up in the module.
extern "C" KIVO_API kivo::ui::IWebView* KivoCreateWebView(kivo::ui::IWebViewListener& listener,
                                                          QWidget* parent)
{
    static const bool isPrepared = Prepare();
    static_cast<void>(isPrepared);
    return std::make_unique<kivo::web::WebView>(listener, parent).release();
}
