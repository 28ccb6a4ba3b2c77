#include <ZNTAds/ZNTInterstitialManager.h>

#include "ads/adflow.h"
#include "ads/loadedad.h"
#include "ads/tracking.h"
#include "ads/visibilitywatch.h"
#include "support/clock.h"
#include "ui/qmlpart.h"

#include <ZNTAds/ZNTInterstitialAd.h>

#include <limits>

using namespace znt;

namespace {

constexpr AdFormat interstitialFormat{
    .name = "interstitial",
    .title = "Interstitial",
    .domain = "ZNTInterstitialManager",
    .loaded = "Successfully loaded interstitial ad data",
};

} // namespace

class ZNTInterstitialManager::Private
{
public:
    explicit Private(ZNTInterstitialManager *manager)
        : q(manager)
        , flow(manager, interstitialFormat, &ZNTInterstitialDelegate::interstitialAdDidFailed)
    {
    }

    qsizetype take(const Ad &taken);
    void autoCloseLater();
    QQuickItem *viewToWatch() const;
    void reportExposure();

    ZNTInterstitialManager *const q;
    AdFlow<ZNTInterstitialManager, ZNTInterstitialDelegate> flow;
    QPointer<QQuickItem> showAdController;
    double autoCloseTime = 0;
    LoadedAd ad;
    std::unique_ptr<ZNTInterstitialAd> interstitialAd;
    VisibilityWatch visibility{[this](VisibilityWatch::End how) {
        if (how == VisibilityWatch::End::Seen)
            reportExposure();
    }};
};

ZNTInterstitialManager::ZNTInterstitialManager(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this))
{
    d->flow.loadingChanged = [this] { d->flow.notifyLater([this] { Q_EMIT isLoadingChanged(); }); };
    logInfo("Initialized ZNTInterstitialManager with default values");
}

ZNTInterstitialManager::~ZNTInterstitialManager()
{
    logInfo("ZNTInterstitialManager deallocated");
}

// Loading

void ZNTInterstitialManager::loadAdData()
{
    if (isLoading()) {
        logWarning("Ad data is already loading, ignoring request");
        return;
    }
    logInfo("Starting to load interstitial ad data");
    prepareQmlPart(QStringLiteral("InterstitialOverlay"));
    d->flow.request(
        readFirstAd, [this](const Ad &loaded) { return d->take(loaded); },
        [this] {
            d->flow.notify(
                &ZNTInterstitialDelegate::interstitialAdDidLoad, &ZNTInterstitialManager::loaded);
        });
}

bool ZNTInterstitialManager::handleAdResponse(const QJsonValue &response)
{
    const auto ad = readFirstAd(response);
    return ad && d->take(*ad);
}

qsizetype ZNTInterstitialManager::Private::take(const Ad &taken)
{
    ad.take(taken);
    return 1;
}

// Showing

void ZNTInterstitialManager::showInterstitialAd()
{
    if (!d->ad.ad() || !d->showAdController) {
        logError("Cannot show interstitial ad: missing ad data or view controller");
        d->flow.fail(-1003, QStringLiteral("没有可用的广告数据或未设置展示控制器"));
        return;
    }
    if (!d->flow.requireViews())
        return;
    logInfo("Creating and showing interstitial ad");
    d->visibility.stop();
    d->interstitialAd = std::make_unique<ZNTInterstitialAd>(mediaId());
    d->interstitialAd->setDelegate(this);
    connect(d->interstitialAd.get(), &ZNTInterstitialAd::remainingTimeChanged, this,
        &ZNTInterstitialManager::remainingTimeChanged);
    d->interstitialAd->setupWithAdData(d->ad.data());
    d->interstitialAd->showFromViewController(d->showAdController);
    if (d->autoCloseTime > 0)
        d->autoCloseLater();
}

// A close by hand in between does not call it off, and it closes whatever ad is there by then.
void ZNTInterstitialManager::Private::autoCloseLater()
{
    logInfo("Setting auto-close timer for %1 seconds", fixedPoint(autoCloseTime, 6));
    const double milliseconds = autoCloseTime * 1000;
    if (milliseconds > std::numeric_limits<int>::max())
        return; // weeks away, and more than a timer holds
    auto *timer = new Timer(Timer::Kind::Single, q);
    connect(timer, &Timer::timeout, q, [this, timer] {
        timer->deleteLater();
        interstitialAd->dismissWithAutoClose(true);
    });
    timer->start(std::chrono::milliseconds(qint64(milliseconds)));
}

// Exposure

void ZNTInterstitialManager::interstitialAdDidVisible()
{
    logInfo("Interstitial ad became visible");
    if (d->flow.notify(
            &ZNTInterstitialDelegate::interstitialAdDidVisible, &ZNTInterstitialManager::appeared))
        d->visibility.start([this] { return d->viewToWatch(); });
}

QQuickItem *ZNTInterstitialManager::Private::viewToWatch() const
{
    return interstitialAd && !ad.hasReportedExposure() ? interstitialAd->adView() : nullptr;
}

void ZNTInterstitialManager::Private::reportExposure()
{
    ad.reportExposure([manager = QPointer(q)] {
        if (manager)
            Q_EMIT manager->hasReportedExposureChanged();
    });
    Q_EMIT q->rendered();
}

// Click

void ZNTInterstitialManager::interstitialAdDidClick()
{
    logInfo("Interstitial ad was clicked");
    if (!d->flow.notify(
            &ZNTInterstitialDelegate::interstitialAdDidClick, &ZNTInterstitialManager::clicked))
        return;
    d->flow.open(
        d->ad.clickTarget(), &ZNTInterstitialDelegate::interstitialAdDidCloseOtherController);
    reportClick(
        d->ad.tracking(), {.namesUrl = false, .closesClicks = true, .closesDpEvents = false});
}

// Close

void ZNTInterstitialManager::interstitialAdDidAutoClose(bool autoClose)
{
    logInfo("Interstitial ad %1", QLatin1String(autoClose ? "auto-closed" : "closed manually"));
    d->visibility.stop();
    d->ad.reportClose(&Ad::feedbackId);
    d->flow.notify(&ZNTInterstitialDelegate::interstitialAdDidAutoClose,
        &ZNTInterstitialManager::closed, autoClose);
}

// Passed on

void ZNTInterstitialManager::interstitialAdDidLoad()
{
    logInfo("Interstitial ad loaded successfully");
    d->flow.notify(
        &ZNTInterstitialDelegate::interstitialAdDidLoad, &ZNTInterstitialManager::loaded);
}

void ZNTInterstitialManager::interstitialAdDidCloseOtherController()
{
    logInfo("Interstitial ad closed other controller");
    d->flow.notify(&ZNTInterstitialDelegate::interstitialAdDidCloseOtherController,
        &ZNTInterstitialManager::targetOpened);
}

// Properties

void ZNTInterstitialManager::setDelegate(const ZNTDelegateRef<ZNTInterstitialDelegate> &delegate)
{
    d->flow.delegate = delegate;
}

QString ZNTInterstitialManager::mediaId() const
{
    return d->flow.mediaId();
}

void ZNTInterstitialManager::setMediaId(const QString &mediaId)
{
    if (d->flow.setMediaId(mediaId))
        Q_EMIT mediaIdChanged();
}

QQuickItem *ZNTInterstitialManager::showAdController() const
{
    return d->showAdController;
}

void ZNTInterstitialManager::setShowAdController(QQuickItem *controller)
{
    if (std::exchange(d->showAdController, controller) != controller)
        Q_EMIT showAdControllerChanged();
}

double ZNTInterstitialManager::autoCloseTime() const
{
    return d->autoCloseTime;
}

void ZNTInterstitialManager::setAutoCloseTime(double seconds)
{
    if (std::exchange(d->autoCloseTime, seconds) != seconds)
        Q_EMIT autoCloseTimeChanged();
}

bool ZNTInterstitialManager::isLoading() const
{
    return d->flow.isLoading();
}

bool ZNTInterstitialManager::hasReportedExposure() const
{
    return d->ad.hasReportedExposure();
}

qint64 ZNTInterstitialManager::remainingTime() const
{
    return d->interstitialAd ? d->interstitialAd->remainingTime() : 0;
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
