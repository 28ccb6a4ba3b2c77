#include <ZNTAds/ZNTInterstitialManager.h>

#include "ads/loadedad.h"
#include "ads/notify.h"
#include "ads/visibilitywatch.h"
#include "diagnostics/log.h"
#include "ui/qmlpart.h"

#include <ZNTAds/ZNTAdsManager.h>
#include <ZNTAds/ZNTInterstitialAd.h>

#include <QTimer>

#include <limits>

using namespace znt;

namespace {

ZNTError interstitialError(int code, const QString &description)
{
    return {QStringLiteral("ZNTInterstitialManager"), code, description};
}

} // namespace

class ZNTInterstitialManager::Private
{
public:
    explicit Private(ZNTInterstitialManager *manager)
        : q(manager)
    {
    }

    void loaded(const QJsonObject &response);
    void fail(const ZNTError &error);
    void autoCloseLater();
    QQuickItem *viewToWatch() const;

    ZNTInterstitialManager *const q;
    ZNTDelegateRef<ZNTInterstitialDelegate> delegate;
    QString mediaId;
    QPointer<QQuickItem> showAdController;
    double autoCloseTime = 0;
    LoadedAd ad;
    std::unique_ptr<ZNTInterstitialAd> interstitialAd;
    VisibilityWatch visibility;
    bool isLoading = false;
};

ZNTInterstitialManager::ZNTInterstitialManager(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this))
{
    connect(&d->visibility, &VisibilityWatch::seen, this, [this] { d->ad.reportExposure(); });
    logInfo("Initialized ZNTInterstitialManager with default values");
}

ZNTInterstitialManager::~ZNTInterstitialManager()
{
    logInfo("ZNTInterstitialManager deallocated");
}

// Loading

void ZNTInterstitialManager::loadAdData()
{
    if (d->isLoading) {
        logWarning("Ad data is already loading, ignoring request");
        return;
    }
    d->isLoading = true;
    logInfo("Starting to load interstitial ad data");
    prepareLooks(QStringLiteral("InterstitialOverlay"));
    const QPointer<ZNTInterstitialManager> self(this);
    ZNTAdsManager::sharedInstance()->requestAdWithPositionId(
        d->mediaId, 0.0,
        [self](const QJsonObject &response) {
            if (self)
                self->d->loaded(response);
        },
        [self](const ZNTError &error) {
            if (!self)
                return;
            self->d->isLoading = false;
            logError("Failed to load interstitial ad data: %1", error.localizedDescription());
            self->d->fail(error);
        });
}

void ZNTInterstitialManager::Private::loaded(const QJsonObject &response)
{
    isLoading = false;
    if (!q->handleAdResponse(response)) {
        logError("Failed to parse interstitial ad data");
        fail(interstitialError(-1002, QStringLiteral("广告数据解析失败")));
        return;
    }
    logInfo("Successfully loaded interstitial ad data");
    QMetaObject::invokeMethod(
        q, [this] { notify(q, delegate, &ZNTInterstitialDelegate::interstitialAdDidLoad); },
        Qt::QueuedConnection);
}

bool ZNTInterstitialManager::handleAdResponse(const QJsonValue &response)
{
    return d->ad.take(response);
}

void ZNTInterstitialManager::Private::fail(const ZNTError &error)
{
    logError("Interstitial ad error: %1", error.localizedDescription());
    QMetaObject::invokeMethod(
        q,
        [this, error] {
            notify(q, delegate, &ZNTInterstitialDelegate::interstitialAdDidFailed, error);
        },
        Qt::QueuedConnection);
}

// Showing

void ZNTInterstitialManager::showInterstitialAd()
{
    if (!d->ad.data() || !d->showAdController) {
        logError("Cannot show interstitial ad: missing ad data or view controller");
        d->fail(interstitialError(-1003, QStringLiteral("没有可用的广告数据或未设置展示控制器")));
        return;
    }
    logInfo("Creating and showing interstitial ad");
    d->visibility.stop();
    d->interstitialAd = std::make_unique<ZNTInterstitialAd>(d->mediaId);
    d->interstitialAd->setDelegate(this);
    d->interstitialAd->setupWithAdData(d->ad.data());
    d->interstitialAd->showFromViewController(d->showAdController);
    if (d->autoCloseTime > 0)
        d->autoCloseLater();
}

// A close by hand in between does not call it off, and it closes whatever ad is there by then.
void ZNTInterstitialManager::Private::autoCloseLater()
{
    logInfo("Setting auto-close timer for %1 seconds", QString::number(autoCloseTime, 'f', 6));
    const double milliseconds = autoCloseTime * 1000;
    if (milliseconds > std::numeric_limits<int>::max())
        return; // weeks away, and more than a timer holds
    QTimer::singleShot(std::chrono::milliseconds(qint64(milliseconds)), Qt::PreciseTimer, q,
        [this] { interstitialAd->dismissWithAutoClose(true); });
}

// Exposure

void ZNTInterstitialManager::interstitialAdDidVisible()
{
    logInfo("Interstitial ad became visible");
    if (notify(this, d->delegate, &ZNTInterstitialDelegate::interstitialAdDidVisible))
        d->visibility.start([this] { return d->viewToWatch(); });
}

QQuickItem *ZNTInterstitialManager::Private::viewToWatch() const
{
    return interstitialAd && !ad.hasReportedExposure() ? interstitialAd->adView() : nullptr;
}

// Click

void ZNTInterstitialManager::interstitialAdDidClick()
{
    logInfo("Interstitial ad was clicked");
    if (!notify(this, d->delegate, &ZNTInterstitialDelegate::interstitialAdDidClick))
        return;
    openClickTarget(d->ad.clickTarget(), [self = QPointer<ZNTInterstitialManager>(this)] {
        if (self)
            notify(self, self->d->delegate,
                &ZNTInterstitialDelegate::interstitialAdDidCloseOtherController);
    });
    d->ad.reportClick("All click reports completed");
}

// Close

void ZNTInterstitialManager::interstitialAdDidAutoClose(bool autoClose)
{
    logInfo("Interstitial ad %1", QLatin1String(autoClose ? "auto-closed" : "closed manually"));
    d->visibility.stop();
    d->ad.reportClose(QStringLiteral("ad_id"));
    notify(this, d->delegate, &ZNTInterstitialDelegate::interstitialAdDidAutoClose, autoClose);
}

// Passed on

void ZNTInterstitialManager::interstitialAdDidLoad()
{
    logInfo("Interstitial ad loaded successfully");
    notify(this, d->delegate, &ZNTInterstitialDelegate::interstitialAdDidLoad);
}

void ZNTInterstitialManager::interstitialAdDidCloseOtherController()
{
    logInfo("Interstitial ad closed other controller");
    notify(this, d->delegate, &ZNTInterstitialDelegate::interstitialAdDidCloseOtherController);
}

// Properties

void ZNTInterstitialManager::setDelegate(const ZNTDelegateRef<ZNTInterstitialDelegate> &delegate)
{
    d->delegate = delegate;
}

QString ZNTInterstitialManager::mediaId() const
{
    return d->mediaId;
}

void ZNTInterstitialManager::setMediaId(const QString &mediaId)
{
    d->mediaId = mediaId;
}

QQuickItem *ZNTInterstitialManager::showAdController() const
{
    return d->showAdController;
}

void ZNTInterstitialManager::setShowAdController(QQuickItem *controller)
{
    d->showAdController = controller;
}

double ZNTInterstitialManager::autoCloseTime() const
{
    return d->autoCloseTime;
}

void ZNTInterstitialManager::setAutoCloseTime(double seconds)
{
    d->autoCloseTime = seconds;
}

bool ZNTInterstitialManager::isLoading() const
{
    return d->isLoading;
}

bool ZNTInterstitialManager::hasReportedExposure() const
{
    return d->ad.hasReportedExposure();
}

ZNTInterstitialAd *ZNTInterstitialManager::interstitialAd() const
{
    return d->interstitialAd.get();
}

std::optional<QJsonObject> ZNTInterstitialManager::adData() const
{
    return d->ad.data();
}

QJsonArray ZNTInterstitialManager::viewUrl3rd() const
{
    return d->ad.tracking().view;
}

QJsonValue ZNTInterstitialManager::clickUrl3rd() const
{
    return d->ad.tracking().click;
}

QJsonArray ZNTInterstitialManager::dpEventUrls() const
{
    return d->ad.tracking().dpEvent;
}
