#include <ZNTAds/ZNTSplashManager.h>

#include "ads/adflow.h"
#include "ads/loadedad.h"
#include "ads/tracking.h"
#include "ads/visibilitywatch.h"
#include "splash/splashscene.h"
#include "splash/styles.h"
#include "support/countdown.h"
#include "ui/qmlpart.h"
#include "ui/visibleshare.h"

#include <QCoreApplication>

using namespace znt;

namespace {

constexpr qint64 shownSeconds = 5;
// Beside the configured ratio, an exposure needs this much of the ad in its window.
constexpr double reportableShare = 70;

constexpr AdFormat splashFormat{
    .name = "splash",
    .title = "Splash",
    .domain = "ZNTSplashManager",
    .loaded = "Successfully loaded splash ad data",
};

} // namespace

class ZNTSplashManager::Private
{
public:
    explicit Private(ZNTSplashManager *manager)
        : q(manager)
        , flow(manager, splashFormat, &ZNTSplashDelegate::splashAdDidFailed,
              [this] { visibility.stop(); })
    {
    }

    void load();
    qsizetype take(const Ad &taken);
    ZNTSplashAdView *createView(const Ad &shown) const;

    QQuickItem *viewToWatch() const { return ad.hasReportedExposure() ? nullptr : scene.view(); }
    void reportExposure();

    void countdownTick(qint64 remaining);
    void updateSkipButtonTitle();
    void skipButtonClicked();
    void closed();

    ZNTSplashManager *const q;
    AdFlow<ZNTSplashManager, ZNTSplashDelegate> flow;
    qint64 adStyle = 0;
    bool portrait = false;
    QPointer<QQuickItem> showAdController;
    LoadedAd ad;
    SplashScene scene;
    VisibilityWatch visibility{[this](VisibilityWatch::End how) {
        if (how == VisibilityWatch::End::Seen)
            reportExposure();
    }};
    Countdown countdown;
};

ZNTSplashManager::ZNTSplashManager(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this))
{
    connect(&d->countdown, &Countdown::ticked, this,
        [this](qint64 remaining) { d->countdownTick(remaining); });
    // Queued: whoever hears of it may destroy the manager.
    connect(&d->countdown, &Countdown::remainingChanged, this,
        &ZNTSplashManager::remainingTimeChanged, Qt::QueuedConnection);
    connect(&d->scene, &SplashScene::bottomViewChanged, this, &ZNTSplashManager::bottomViewChanged);
    connect(&d->scene, &SplashScene::skipped, this, [this] { d->skipButtonClicked(); });
    connect(&d->scene, &SplashScene::closed, this, [this] { d->closed(); });
    logInfo("Initialized ZNTSplashManager with default values");
}

ZNTSplashManager::~ZNTSplashManager()
{
    logInfo("ZNTSplashManager deallocated");
}

// Loading

void ZNTSplashManager::loadAndShowSplashAdWithWindow(QQuickWindow *window)
{
    Q_UNUSED(window) // the one that matters comes with the show
    logInfo("Starting to load and show splash ad");
    d->load();
}

void ZNTSplashManager::Private::load()
{
    if (!flow.requireMediaId())
        return;
    logInfo("Starting to request splash ad data with mediaId: %1", flow.mediaId());
    prepareQmlPart(qmlPartOf(splashStyle(adStyle)));
    flow.request(
        readFirstAd, [this](const Ad &loaded) { return take(loaded); },
        [this] { flow.notify(&ZNTSplashDelegate::splashAdDidLoad, &ZNTSplashManager::loaded); });
}

bool ZNTSplashManager::handleAdResponse(const QJsonValue &response)
{
    const auto ad = readFirstAd(response);
    return ad && d->take(*ad);
}

qsizetype ZNTSplashManager::Private::take(const Ad &taken)
{
    ad.take(taken);
    return 1;
}

// Showing

void ZNTSplashManager::showSplashAdWithWindow(QQuickWindow *window)
{
    if (!d->ad.ad()) {
        logError("Cannot show splash ad: no ad data available");
        d->flow.fail(-1003, QStringLiteral("没有可用的广告数据"));
        return;
    }
    logInfo("Starting to show splash ad");
    if (d->ad.ad()->imageUrls.isEmpty()) {
        logError("Cannot show splash ad: no image data available");
        d->flow.fail(-1004, QStringLiteral("广告图片数据为空"));
        return;
    }
    if (!d->flow.requireViews())
        return;
    d->visibility.stop();
    d->countdown.stop();
    d->scene.show(d->createView(*d->ad.ad()), window);
    if (!d->flow.notify(&ZNTSplashDelegate::splashAdDidVisible, &ZNTSplashManager::appeared)
        || !d->scene.isShown() || d->scene.isFading())
        return;
    d->visibility.start([this] { return d->viewToWatch(); });
    d->countdown.start(shownSeconds);
    d->updateSkipButtonTitle();
    logInfo("Started countdown timer");
}

ZNTSplashAdView *ZNTSplashManager::Private::createView(const Ad &shown) const
{
    logInfo("Creating splash ad view with style: %1", adStyle);
    QString tip = randomText(shown, {QStringLiteral("TXT")});
    if (tip.isNull())
        tip = QCoreApplication::translate("ZNTAds", "点击查看详情");
    logInfo("source: %1, sourceLogo: %2", shown.source, shown.sourceLogo);
    logInfo("Creating %1 ad view", splashStyle(adStyle).name);
    ZNTSplashAdView *view = createAdViewWithStyle(adStyle);
    view->setDelegate(q);
    view->setupWithImageUrl(shown.imageUrls.first(), tip, shown.source, shown.sourceLogo);
    return view;
}

ZNTSplashAdView *ZNTSplashManager::createAdViewWithStyle(qint64 style)
{
    return splashStyle(style).create();
}

// Exposure

void ZNTSplashManager::Private::reportExposure()
{
    if (!viewToWatch() || shareInWindow(scene.view()).value_or(0) < reportableShare)
        return;
    ad.reportExposure([manager = QPointer(q)] {
        if (manager)
            Q_EMIT manager->hasReportedExposureChanged();
    });
    flow.notify(&ZNTSplashDelegate::splashAdDidRender, &ZNTSplashManager::rendered);
}

// Click

void ZNTSplashManager::handleAdClick()
{
    logInfo("Splash ad clicked");
    const ClickTarget target = d->ad.clickTarget();
    if (!d->flow.notify(&ZNTSplashDelegate::handleAdClick, &ZNTSplashManager::clicked))
        return;
    reportClick(
        d->ad.tracking(), {.namesUrl = false, .closesClicks = false, .closesDpEvents = false});
    d->flow.open(target, &ZNTSplashDelegate::splashAdDidCloseOtherController);
}

// Countdown, skip and close

void ZNTSplashManager::Private::countdownTick(qint64 remaining)
{
    logInfo("Countdown: %1 seconds remaining", remaining);
    updateSkipButtonTitle();
    if (remaining < 1)
        q->closeSplashAd();
}

void ZNTSplashManager::Private::updateSkipButtonTitle()
{
    if (scene.view())
        scene.view()->updateSkipButtonWithTime(countdown.remaining());
}

void ZNTSplashManager::Private::skipButtonClicked()
{
    logInfo("Skip button clicked");
    visibility.stop();
    ad.reportClose(&Ad::id);
    q->closeSplashAd();
}

void ZNTSplashManager::closeSplashAd()
{
    logInfo("Closing splash ad");
    d->countdown.stop();
    d->visibility.stop();
    d->countdown.setRemaining(0);
    if (d->scene.isShown())
        d->scene.fadeOut();
    else
        logInfo("No splash ad view to close");
}

void ZNTSplashManager::Private::closed()
{
    ad.forget();
    if (flow.notify(&ZNTSplashDelegate::splashAdDidShowFinish, &ZNTSplashManager::closed))
        logInfo("Splash ad closed and cleaned up completely");
}

// Properties

void ZNTSplashManager::setDelegate(const ZNTDelegateRef<ZNTSplashDelegate> &delegate)
{
    d->flow.delegate = delegate;
}

QString ZNTSplashManager::mediaId() const
{
    return d->flow.mediaId();
}

void ZNTSplashManager::setMediaId(const QString &mediaId)
{
    if (d->flow.setMediaId(mediaId))
        Q_EMIT mediaIdChanged();
}

qint64 ZNTSplashManager::adStyle() const
{
    return d->adStyle;
}

void ZNTSplashManager::setAdStyle(qint64 style)
{
    logInfo("Setting ad style to: %1", style);
    if (std::exchange(d->adStyle, style) != style)
        Q_EMIT adStyleChanged();
}

QQuickItem *ZNTSplashManager::bottomView() const
{
    return d->scene.bottomView();
}

void ZNTSplashManager::setBottomView(QQuickItem *bottomView)
{
    d->scene.setBottomView(bottomView);
}

QQuickItem *ZNTSplashManager::showAdController() const
{
    return d->showAdController;
}

void ZNTSplashManager::setShowAdController(QQuickItem *controller)
{
    if (std::exchange(d->showAdController, controller) != controller)
        Q_EMIT showAdControllerChanged();
}

bool ZNTSplashManager::portrait() const
{
    return d->portrait;
}

void ZNTSplashManager::setPortrait(bool portrait)
{
    if (std::exchange(d->portrait, portrait) != portrait)
        Q_EMIT portraitChanged();
}

ZNTSplashAdView *ZNTSplashManager::splashAdView() const
{
    return d->scene.view();
}

std::optional<QJsonObject> ZNTSplashManager::adData() const
{
    return d->ad.data();
}

QJsonArray ZNTSplashManager::viewUrl3rd() const
{
    return d->ad.tracking().view;
}

QJsonValue ZNTSplashManager::clickUrl3rd() const
{
    return d->ad.tracking().click;
}

QJsonArray ZNTSplashManager::dpEventUrls() const
{
    return d->ad.tracking().dpEvent;
}

qint64 ZNTSplashManager::remainingTime() const
{
    return d->countdown.remaining();
}

bool ZNTSplashManager::hasReportedExposure() const
{
    return d->ad.hasReportedExposure();
}
