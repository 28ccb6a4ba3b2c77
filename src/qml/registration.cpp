#include "qml/registration.h"

#include <ZNTAds/ZNTAdsSDK.h>

#include <QMarginsF>

namespace znt {

QString Registration::version() const
{
    return ZNTAdsSDK::version();
}

bool Registration::isInitialized() const
{
    return ZNTAdsSDK::isInitialized();
}

bool Registration::isTestMode() const
{
    return ZNTAdsSDK::isTestMode();
}

void Registration::setTestMode(bool testMode)
{
    const bool before = isTestMode();
    ZNTAdsSDK::setTestMode(testMode);
    if (before != testMode)
        Q_EMIT testModeChanged();
}

void Registration::registerWithAppId(
    const QString &appId, const QString &mediaId, const QString &secret)
{
    const bool before = isInitialized();
    ZNTAdsSDK::registerWithAppId(appId, mediaId, secret);
    if (before != isInitialized())
        Q_EMIT initializedChanged();
}

bool Registration::setEndpoints(const QUrl &httpsBase, const QUrl &httpBase)
{
    return ZNTAdsSDK::setEndpoints(httpsBase, httpBase);
}

void Registration::setLogEnabled(bool enabled)
{
    ZNTAdsSDK::setLogEnabled(enabled);
}

void Registration::setSafeAreaInsets(double left, double top, double right, double bottom)
{
    ZNTAdsSDK::setSafeAreaInsets({left, top, right, bottom});
}

void Registration::reportError(const QString &summary, const QString &errorDetails)
{
    ZNTAdsSDK::reportError(summary, errorDetails);
}

} // namespace znt
