#include <ZNTAds/ZNTSplashManager.h>

#include "ads/loadedad.h"
#include "ads/notify.h"
#include "ads/visibilitywatch.h"
#include "diagnostics/log.h"
#include "model/adanswer.h"
#include "splash/splashscene.h"
#include "support/countdown.h"
#include "support/json.h"
#include "ui/qmlpart.h"
#include "ui/visibleshare.h"

#include <ZNTAds/ZNTAdsManager.h>
#include <ZNTAds/ZNTShakeAdView.h>
#include <ZNTAds/ZNTSlideAdView.h>
#include <ZNTAds/ZNTSplashImageAdView.h>

using namespace znt;

namespace {

constexpr qint64 shownSeconds = 5;
// Beside the configured ratio, an exposure needs this much of the ad in its window.
constexpr double reportableShare = 70;

ZNTError splashError(int code, const QString &description)
{
    return {QStringLiteral("ZNTSplashManager"), code, description};
}

QString looksOf(qint64 style)
{
    if (style == 2)
        return QStringLiteral("SlideAdView");
    return style == 1 ? QStringLiteral("ShakeAdView") : QStringLiteral("SplashImageAdView");
}

} // namespace

class ZNTSplashManager::Private
{
public:
    explicit Private(ZNTSplashManager *manager)
        : q(manager)
    {
    }

    void load();
    void loaded(const QJsonObject &response);
    void fail(const ZNTError &error);

    ZNTSplashAdView *createView(const QJsonObject &shown) const;

    QQuickItem *viewToWatch() const { return ad.hasReportedExposure() ? nullptr : scene.view(); }
    void reportExposure();

    void countdownTick(qint64 remaining);
    void updateSkipButtonTitle();
    void skipButtonClicked();
    void closed();

    ZNTSplashManager *const q;
    ZNTDelegateRef<ZNTSplashDelegate> delegate;
    QString mediaId;
    qint64 adStyle = 0;
    bool portrait = false;
    QPointer<QQuickItem> showAdController;
    LoadedAd ad;
    SplashScene scene;
    VisibilityWatch visibility;
    Countdown countdown;
};

ZNTSplashManager::ZNTSplashManager(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this))
{
    connect(&d->visibility, &VisibilityWatch::seen, this, [this] { d->reportExposure(); });
    connect(&d->countdown, &Countdown::ticked, this,
        [this](qint64 remaining) { d->countdownTick(remaining); });
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
    if (mediaId.isNull()) {
        logError("Cannot load ad data: mediaId is empty");
        fail(splashError(-1001, QStringLiteral("mediaId不能为空")));
        return;
    }
    logInfo("Starting to request splash ad data with mediaId: %1", mediaId);
    prepareLooks(looksOf(adStyle));
    const QPointer<ZNTSplashManager> self(q);
    ZNTAdsManager::sharedInstance()->requestAdWithPositionId(
        mediaId, 0.0,
        [self](const QJsonObject &response) {
            if (self)
                self->d->loaded(response);
        },
        [self](const ZNTError &error) {
            if (!self)
                return;
            logError("Failed to load splash ad data: %1", error.localizedDescription());
            self->d->fail(error);
        });
}

void ZNTSplashManager::Private::loaded(const QJsonObject &response)
{
    if (!q->handleAdResponse(response)) {
        logError("Failed to parse splash ad data");
        fail(splashError(-1002, QStringLiteral("广告数据解析失败")));
        return;
    }
    logInfo("Successfully loaded splash ad data");
    QMetaObject::invokeMethod(
        q, [this] { notify(q, delegate, &ZNTSplashDelegate::splashAdDidLoad); },
        Qt::QueuedConnection);
}

bool ZNTSplashManager::handleAdResponse(const QJsonValue &response)
{
    return d->ad.take(response);
}

void ZNTSplashManager::Private::fail(const ZNTError &error)
{
    logError("Splash ad error: %1", error.localizedDescription());
    visibility.stop();
    QMetaObject::invokeMethod(
        q, [this, error] { notify(q, delegate, &ZNTSplashDelegate::splashAdDidFailed, error); },
        Qt::QueuedConnection);
}

// Showing

void ZNTSplashManager::showSplashAdWithWindow(QQuickWindow *window)
{
    const std::optional<QJsonObject> ad = d->ad.data();
    if (!ad) {
        logError("Cannot show splash ad: no ad data available");
        d->fail(splashError(-1003, QStringLiteral("没有可用的广告数据")));
        return;
    }
    logInfo("Starting to show splash ad");
    if (ad->value(u"images").toArray().isEmpty()) {
        logError("Cannot show splash ad: no image data available");
        d->fail(splashError(-1004, QStringLiteral("广告图片数据为空")));
        return;
    }
    d->visibility.stop();
    d->countdown.stop();
    d->scene.show(d->createView(*ad), window);
    if (!notify(this, d->delegate, &ZNTSplashDelegate::splashAdDidVisible) || !d->scene.isShown()
        || d->scene.isFading())
        return;
    d->visibility.start([this] { return d->viewToWatch(); });
    d->countdown.start(shownSeconds);
    d->updateSkipButtonTitle();
    logInfo("Started countdown timer");
}

ZNTSplashAdView *ZNTSplashManager::Private::createView(const QJsonObject &shown) const
{
    logInfo("Creating splash ad view with style: %1", adStyle);
    QString tip = randomText(shown, {QStringLiteral("TXT")});
    if (tip.isNull())
        tip = QStringLiteral("点击查看详情");
    const QJsonObject image = shown.value(u"images").toArray().first().toObject();
    const QString source = json::string(shown.value(u"sourceName"));
    const QString sourceLogo = json::string(shown.value(u"sourceLogo"));
    logInfo("source: %1, sourceLogo: %2", source, sourceLogo);

    ZNTSplashAdView *view = nullptr;
    if (adStyle == 2) {
        logInfo("Creating slide ad view");
        view = new ZNTSlideAdView;
    } else if (adStyle == 1) {
        logInfo("Creating shake ad view");
        view = new ZNTShakeAdView;
    } else {
        logInfo("Creating image ad view");
        view = new ZNTSplashImageAdView;
    }
    view->setDelegate(q);
    view->setupWithImageUrl(json::string(image.value(u"url")), tip, source, sourceLogo);
    return view;
}

// Exposure

void ZNTSplashManager::Private::reportExposure()
{
    if (!viewToWatch() || shareInWindow(scene.view()).value_or(0) < reportableShare)
        return;
    ad.reportExposure();
    notify(q, delegate, &ZNTSplashDelegate::splashAdDidRender);
}

// Click

void ZNTSplashManager::handleAdClick()
{
    logInfo("Splash ad clicked");
    const ClickTarget target = d->ad.clickTarget();
    if (!notify(this, d->delegate, &ZNTSplashDelegate::handleAdClick))
        return;
    d->ad.reportClick();
    openClickTarget(target, [self = QPointer<ZNTSplashManager>(this)] {
        if (self)
            notify(self, self->d->delegate, &ZNTSplashDelegate::splashAdDidCloseOtherController);
    });
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
    ad.reportClose(QStringLiteral("adId"));
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
    if (notify(q, delegate, &ZNTSplashDelegate::splashAdDidShowFinish))
        logInfo("Splash ad closed and cleaned up completely");
}

// Properties

void ZNTSplashManager::setDelegate(const ZNTDelegateRef<ZNTSplashDelegate> &delegate)
{
    d->delegate = delegate;
}

QString ZNTSplashManager::mediaId() const
{
    return d->mediaId;
}

void ZNTSplashManager::setMediaId(const QString &mediaId)
{
    d->mediaId = mediaId;
}

qint64 ZNTSplashManager::adStyle() const
{
    return d->adStyle;
}

void ZNTSplashManager::setAdStyle(qint64 style)
{
    logInfo("Setting ad style to: %1", style);
    d->adStyle = style;
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
    d->showAdController = controller;
}

bool ZNTSplashManager::portrait() const
{
    return d->portrait;
}

void ZNTSplashManager::setPortrait(bool portrait)
{
    d->portrait = portrait;
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
