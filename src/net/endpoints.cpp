#include "net/endpoints.h"

#include "support/mainthread.h"

#include <QMutex>

namespace znt {

namespace {

struct Bases
{
    QMutex mutex;
    QUrl https{QStringLiteral(ZNTADS_HTTPS_BASE)};
    QUrl http{QStringLiteral(ZNTADS_HTTP_BASE)};
};

Bases &bases()
{
    return neverDestroyed<Bases>();
}

QUrl under(QUrl base, const QString &path)
{
    base.setPath(base.path().endsWith(u'/') ? base.path().chopped(1) + path : base.path() + path);
    return base;
}

} // namespace

QUrl endpoint(Endpoint endpoint)
{
    const QMutexLocker lock(&bases().mutex);
    switch (endpoint) {
    case Endpoint::AdRequest:
        return under(bases().https, QStringLiteral("/s/req2.do"));
    case Endpoint::Configuration:
        return under(bases().https, QStringLiteral("/conf.do"));
    case Endpoint::NegativeFeedback:
        return under(bases().https, QStringLiteral("/s/negfb.do"));
    case Endpoint::LogUpload:
        break;
    }
    return under(bases().http, QStringLiteral("/logs.do"));
}

bool setEndpointBases(const QUrl &https, const QUrl &http)
{
    const QMutexLocker lock(&bases().mutex);
    const auto usable = [](const QUrl &url, QStringView scheme) {
        return url.isValid() && url.scheme() == scheme && !url.host().isEmpty();
    };
    const bool httpsUsable = usable(https, u"https");
    const bool httpUsable = usable(http, u"http");
    if (httpsUsable)
        bases().https = https;
    if (httpUsable)
        bases().http = http;
    return (httpsUsable || https.isEmpty()) && (httpUsable || http.isEmpty());
}

} // namespace znt
