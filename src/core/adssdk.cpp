#include <ZNTAds/ZNTAdsSDK.h>

#include "core/urlopener.h"
#include "diagnostics/log.h"
#include "net/endpoints.h"
#include "ui/safearea.h"

#include <ZNTAds/ZNTAdsManager.h>
#include <ZNTAds/ZNTAdsVersion.h>

#include <atomic>

const double ZNTAdsVersionNumber = 1.0;
const char *const ZNTAdsVersionString = "@(#)PROGRAM:ZNTAds  PROJECT:ZNTAds-1\n";
const QString ZNTAdStyleXDT = QStringLiteral("XDT");
const QString ZNTAdStyleOther = QStringLiteral("OTHER");

namespace {

Q_CONSTINIT std::atomic<bool> sIsInitialized{false};
Q_CONSTINIT std::atomic<bool> sIsTestMode{true};
Q_CONSTINIT std::atomic<bool> sIsLogEnabled{true};

QString onOrOff(bool on)
{
    return on ? QStringLiteral("ON") : QStringLiteral("OFF");
}

} // namespace

QString ZNTAdsSDK::version()
{
    return QStringLiteral(ZNTADS_VERSION_STR);
}

void ZNTAdsSDK::registerWithAppId(
    const QString &appId, const QString &mediaId, const QString &secret)
{
    if (sIsInitialized) {
        znt::logWarning("ZNTAdsSDK has already been initialized!");
        return;
    }
    if (appId.isEmpty() || mediaId.isEmpty()) {
        znt::logError("ZNTAdsSDK initialization failed: appId and mediaId cannot be empty!");
        return;
    }
    ZNTLogManager *log = ZNTLogManager::sharedInstance();
    log->setLogEnabled(sIsLogEnabled);
    log->setupWithAppId(appId, mediaId);
    ZNTAdsManager *manager = ZNTAdsManager::sharedInstance();
    manager->setTestMode(sIsTestMode);
    manager->setLogEnabled(sIsLogEnabled);
    manager->initializeWithAppId(appId, mediaId, secret);
    sIsInitialized = true;
    if (sIsLogEnabled)
        znt::logInfo(
            "ZNTAdsSDK initialized successfully with appId: %1, mediaId: %2", appId, mediaId);
}

bool ZNTAdsSDK::isInitialized()
{
    return sIsInitialized;
}

void ZNTAdsSDK::setTestMode(bool testMode)
{
    sIsTestMode = testMode;
    ZNTAdsManager::sharedInstance()->setTestMode(testMode);
    if (sIsLogEnabled)
        znt::logInfo("ZNTAdsSDK test mode: %1", onOrOff(testMode));
}

bool ZNTAdsSDK::isTestMode()
{
    return sIsTestMode;
}

void ZNTAdsSDK::setLogEnabled(bool enabled)
{
    sIsLogEnabled = enabled;
    ZNTAdsManager::sharedInstance()->setLogEnabled(enabled);
    ZNTLogManager::sharedInstance()->setLogEnabled(enabled);
    znt::logInfo("ZNTAdsSDK log: %1", onOrOff(enabled));
}

bool ZNTAdsSDK::setEndpoints(const QUrl &httpsBase, const QUrl &httpBase)
{
    return !sIsInitialized && znt::setEndpointBases(httpsBase, httpBase);
}

void ZNTAdsSDK::setUrlOpener(UrlOpener opener)
{
    znt::setUrlOpener(std::move(opener));
}

void ZNTAdsSDK::setLinkOpener(LinkOpener opener)
{
    znt::setLinkOpener(std::move(opener));
}

void ZNTAdsSDK::openLink(const QString &link, const std::function<void(bool opened)> &done)
{
    znt::openLinkWithSystem(link, done);
}

void ZNTAdsSDK::setSafeAreaInsets(const QMarginsF &insets)
{
    znt::SafeArea::instance()->setInsets(insets);
}

QString ZNTAdsSDK::getDeviceModel()
{
    return ZNTLogManager::sharedInstance()->getDeviceModel();
}

QString ZNTAdsSDK::getNetworkStatus()
{
    return ZNTLogManager::sharedInstance()->getNetworkStatus();
}

void ZNTAdsSDK::reportError(const QString &summary, const QString &errorDetails)
{
    ZNTLogManager::sharedInstance()->reportErrorWithSummary(summary, errorDetails);
}
