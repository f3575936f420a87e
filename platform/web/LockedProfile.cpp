#include "platform/web/LockedProfile.h"

#include "platform/web/Addresses.h"

#include <QWebEngineDownloadRequest>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInfo>

namespace kivo::web {

namespace {

// The browser's own defaults are never trusted, also where they are the same.
constexpr QWebEngineSettings::WebAttribute kOff[] = {
    QWebEngineSettings::Accelerated2dCanvasEnabled,
    QWebEngineSettings::AllowGeolocationOnInsecureOrigins,
    QWebEngineSettings::AllowRunningInsecureContent,
    QWebEngineSettings::AllowWindowActivationFromJavaScript,
    QWebEngineSettings::AutoLoadIconsForPage,
    QWebEngineSettings::DnsPrefetchEnabled,
    QWebEngineSettings::FullScreenSupportEnabled,
    QWebEngineSettings::HyperlinkAuditingEnabled,
    QWebEngineSettings::JavascriptCanAccessClipboard,
    QWebEngineSettings::JavascriptCanOpenWindows, // Without a click of the user's, that is.
    QWebEngineSettings::JavascriptCanPaste,
    QWebEngineSettings::LocalContentCanAccessFileUrls,
    QWebEngineSettings::LocalContentCanAccessRemoteUrls,
    QWebEngineSettings::LocalStorageEnabled,
    QWebEngineSettings::NavigateOnDropEnabled,
    QWebEngineSettings::PdfViewerEnabled,
    QWebEngineSettings::PluginsEnabled,
    QWebEngineSettings::ScreenCaptureEnabled,
    QWebEngineSettings::TouchIconsEnabled,
    QWebEngineSettings::WebGLEnabled,
};
constexpr QWebEngineSettings::WebAttribute kOn[] = {
    QWebEngineSettings::PlaybackRequiresUserGesture,
    QWebEngineSettings::WebRTCPublicInterfacesOnly,
};

// Behind a click a page may copy into the clipboard, whatever the attributes say; so each document
// loses the function for it before its own scripts run.
constexpr char kNoCopying[] = R"(
    Object.defineProperty(Document.prototype, 'execCommand',
                          {value: () => false, writable: false, configurable: false});
)";

QWebEngineScript MakeNoCopyingScript()
{
    QWebEngineScript script;
    script.setSourceCode(QLatin1String(kNoCopying));
    script.setInjectionPoint(QWebEngineScript::DocumentCreation);
    script.setWorldId(QWebEngineScript::MainWorld);
    script.setRunsOnSubFrames(true);
    return script;
}

} // namespace

void RequestFilter::interceptRequest(QWebEngineUrlRequestInfo& info)
{
    const bool isPage =
        info.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeMainFrame ||
        info.resourceType() == QWebEngineUrlRequestInfo::ResourceTypeNavigationPreloadMainFrame;
    const QUrl url = info.requestUrl();
    info.block(isPage ? !IsPageAddress(url) : !IsPartAddress(url));
}

LockedProfile::LockedProfile() // Without a name: off the record.
{
    setHttpCacheType(MemoryHttpCache);
    setPersistentCookiesPolicy(NoPersistentCookies);
    setSpellCheckEnabled(false);
    setUrlRequestInterceptor(&filter_);
    connect(this,
            &QWebEngineProfile::downloadRequested,
            this,
            [](QWebEngineDownloadRequest* download) { download->cancel(); });
    scripts()->insert(MakeNoCopyingScript());
    for (const auto attribute : kOff)
        settings()->setAttribute(attribute, /*on=*/false);
    for (const auto attribute : kOn)
        settings()->setAttribute(attribute, /*on=*/true);
    settings()->setUnknownUrlSchemePolicy(QWebEngineSettings::DisallowUnknownUrlSchemes);
}

} // namespace kivo::web
