#include "platform/web/Addresses.h"

#include <QStringList>

namespace kivo::web {

bool IsPageAddress(const QUrl& url)
{
    static const QStringList schemes{QStringLiteral("http"), QStringLiteral("https")};
    return schemes.contains(url.scheme());
}

bool IsPartAddress(const QUrl& url)
{
    // What follows them stands in the page itself.
    static const QStringList schemes{
        QStringLiteral("about"), QStringLiteral("blob"), QStringLiteral("data")};
    return IsPageAddress(url) || schemes.contains(url.scheme());
}

bool IsLinkAddress(const QUrl& url)
{
    static const QStringList schemes{QStringLiteral("mms"), QStringLiteral("rtsp")};
    return IsPageAddress(url) || schemes.contains(url.scheme());
}

} // namespace kivo::web
