#include "platform/web/LockedPage.h"

#include "platform/web/Addresses.h"

#include <QWebEngineCertificateError>
#include <QWebEngineClientCertificateSelection>
#include <QWebEngineFileSystemAccessRequest>
#include <QWebEngineFullScreenRequest>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineQuotaRequest>
#include <QWebEngineRegisterProtocolHandlerRequest>

namespace kivo::web {

LockedPage::LockedPage(QWebEngineProfile& profile)
    : QWebEnginePage(&profile)
{
    connect(this,
            &QWebEnginePage::featurePermissionRequested,
            this,
            [this](const QUrl& origin, Feature feature) {
                setFeaturePermission(origin, feature, PermissionDeniedByUser);
            });
    connect(this, &QWebEnginePage::certificateError, this, [](QWebEngineCertificateError error) {
        error.rejectCertificate();
    });
    connect(this,
            &QWebEnginePage::selectClientCertificate,
            this,
            [](QWebEngineClientCertificateSelection selection) { selection.selectNone(); });
    connect(this,
            &QWebEnginePage::fullScreenRequested,
            this,
            [](QWebEngineFullScreenRequest request) { request.reject(); });
    connect(this,
            &QWebEnginePage::registerProtocolHandlerRequested,
            this,
            [](QWebEngineRegisterProtocolHandlerRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::quotaRequested, this, [](QWebEngineQuotaRequest request) {
        request.reject();
    });
    connect(this,
            &QWebEnginePage::fileSystemAccessRequested,
            this,
            [](QWebEngineFileSystemAccessRequest request) { request.reject(); });
    connect(this,
            &QWebEnginePage::newWindowRequested,
            this,
            [this](const QWebEngineNewWindowRequest& request) {
                if (request.isUserInitiated())
                    emit NewWindowWanted(request.requestedUrl());
            });
}

bool LockedPage::acceptNavigationRequest(const QUrl& url, NavigationType /*type*/, bool isMainFrame)
{
    if (!isMainFrame)
        return IsPartAddress(url);
    if (!IsPageAddress(url))
        return false;
    emit Navigating(url);
    return true;
}

QWebEnginePage* LockedPage::createWindow(WebWindowType /*type*/)
{
    return nullptr;
}

QStringList LockedPage::chooseFiles(FileSelectionMode /*mode*/,
                                    const QStringList& /*old*/,
                                    const QStringList& /*types*/)
{
    return {};
}

void LockedPage::javaScriptAlert(const QUrl& /*origin*/, const QString& /*text*/) {}

bool LockedPage::javaScriptConfirm(const QUrl& /*origin*/, const QString& /*text*/)
{
    return false;
}

bool LockedPage::javaScriptPrompt(const QUrl& /*origin*/,
                                  const QString& /*text*/,
                                  const QString& /*proposal*/,
                                  QString* /*answer*/)
{
    return false;
}

void LockedPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel /*level*/,
                                          const QString& /*text*/,
                                          int /*line*/,
                                          const QString& /*source*/)
{
}

} // namespace kivo::web
