#pragma once

#include <QWebEngineProfile>
#include <QWebEngineUrlRequestInterceptor>

#include <memory>

namespace kivo::web {

// Lets a page fetch what Addresses.h allows and blocks all else.
class RequestFilter final : public QWebEngineUrlRequestInterceptor {
public:
    void interceptRequest(QWebEngineUrlRequestInfo& info) override;
};

// Where the pages of one view live: off the record, so that all is gone with it, without downloads
// and with everything switched off that a page of links doesn't need. Outlives its pages.
// Thread: user interface.
class LockedProfile final : public QWebEngineProfile {
public:
    LockedProfile();

private:
    RequestFilter filter_;
};

} // namespace kivo::web
