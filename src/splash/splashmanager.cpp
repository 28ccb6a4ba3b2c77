#include <ZNTAds/ZNTSplashManager.h>

#include "core/clicktarget.h"
#include "core/negativefeedback.h"
#include "core/notify.h"
#include "core/tracking.h"
#include "core/visibilitywatch.h"
#include "diagnostics/log.h"
#include "model/adanswer.h"
#include "model/trackinglists.h"
#include "support/countdown.h"
#include "support/json.h"
#include "support/viewengine.h"
#include "support/visibleshare.h"

#include <ZNTAds/ZNTAdsManager.h>
#include <ZNTAds/ZNTShakeAdView.h>
#include <ZNTAds/ZNTSlideAdView.h>
#include <ZNTAds/ZNTSplashImageAdView.h>

#include <QVariantAnimation>

using namespace znt;

namespace {

constexpr qint64 shownSeconds = 5;
constexpr int fadeMilliseconds = 300;
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

void raise(QQuickItem *item)
{
    for (const QQuickItem *sibling : item->parentItem()->childItems())
        item->setZ(qMax(item->z(), sibling->z()));
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

    ZNTSplashAdView *createView(const QJsonObject &ad) const;
    void putIntoWindow(ZNTSplashAdView *view);
    void layOut();
    void takeDown();

    QQuickItem *viewToWatch() const { return hasReportedExposure ? nullptr : splashAdView; }
    void reportExposure();
    void reportClick() const;

    void countdownTick(qint64 remaining);
    void updateSkipButtonTitle();
    void skipButtonClicked();
    bool isFading() const { return fade.state() == QAbstractAnimation::Running; }
    void fadeOut();
    void closed();

    ZNTSplashManager *const q;
    ZNTDelegateRef<ZNTSplashDelegate> delegate;
    QString mediaId;
    qint64 adStyle = 0;
    bool portrait = false;
    QPointer<QQuickItem> showAdController;
    QPointer<QQuickItem> bottomView;
    QPointer<QQuickWindow> currentWindow;
    QPointer<ZNTSplashAdView> splashAdView;
    std::optional<QJsonObject> adData;
    TrackingLists tracking;
    VisibilityWatch visibility;
    Countdown countdown;
    QVariantAnimation fade;
    // A view was shown and not closed yet; the view itself may have died with its window.
    bool isShowing = false;
    bool hasReportedExposure = false;
};

ZNTSplashManager::ZNTSplashManager(QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this))
{
    connect(&d->visibility, &VisibilityWatch::seen, this, [this] { d->reportExposure(); });
    connect(&d->countdown, &Countdown::ticked, this,
        [this](qint64 remaining) { d->countdownTick(remaining); });

    d->fade.setStartValue(1.0);
    d->fade.setEndValue(0.0);
    d->fade.setDuration(fadeMilliseconds);
    connect(&d->fade, &QVariantAnimation::valueChanged, this, [this](const QVariant &opacity) {
        for (QQuickItem *item :
            {static_cast<QQuickItem *>(d->splashAdView), d->bottomView.data()}) {
            if (item)
                item->setOpacity(opacity.toDouble());
        }
    });
    connect(&d->fade, &QVariantAnimation::finished, this, [this] { d->closed(); });
    logInfo("Initialized ZNTSplashManager with default values");
}

ZNTSplashManager::~ZNTSplashManager()
{
    // A view on screen stays there, as the window's own, and its skip button then removes it.
    if (d->isFading() || !d->currentWindow)
        d->takeDown();
    else if (d->splashAdView)
        connect(
            d->splashAdView, &ZNTSplashAdView::skipClicked, d->splashAdView, &QObject::deleteLater);
    logInfo("ZNTSplashManager deallocated");
}

// Loading

void ZNTSplashManager::loadAndShowSplashAdWithWindow(QQuickWindow *window)
{
    logInfo("Starting to load and show splash ad");
    d->currentWindow = window;
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
    const auto ads = adsOfAnswer(response);
    if (!ads)
        return false;
    const QJsonObject ad = ads->first().toObject();
    readTrackingLists(d->tracking, ad, ClickForm::OfView,
        {.list = "Processed %1 dpEvent URLs", .single = "Converted single dpEvent URL to array"});
    d->adData = ad;
    return true;
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
    if (!d->adData) {
        logError("Cannot show splash ad: no ad data available");
        d->fail(splashError(-1003, QStringLiteral("没有可用的广告数据")));
        return;
    }
    logInfo("Starting to show splash ad");
    if (d->adData->value(u"images").toArray().isEmpty()) {
        d->currentWindow = window;
        logError("Cannot show splash ad: no image data available");
        d->fail(splashError(-1004, QStringLiteral("广告图片数据为空")));
        return;
    }
    d->takeDown();
    d->currentWindow = window;
    d->splashAdView = d->createView(*d->adData);
    d->putIntoWindow(d->splashAdView);
    d->isShowing = true;
    if (!notify(this, d->delegate, &ZNTSplashDelegate::splashAdDidVisible) || !d->isShowing
        || d->isFading())
        return;
    d->visibility.start([this] { return d->viewToWatch(); });
    d->countdown.start(shownSeconds);
    d->updateSkipButtonTitle();
    logInfo("Started countdown timer");
}

ZNTSplashAdView *ZNTSplashManager::Private::createView(const QJsonObject &ad) const
{
    logInfo("Creating splash ad view with style: %1", adStyle);
    QString tip = randomText(ad, {QStringLiteral("TXT")});
    if (tip.isNull())
        tip = QStringLiteral("点击查看详情");
    const QJsonObject image = ad.value(u"images").toArray().first().toObject();
    const QString source = json::string(ad.value(u"sourceName"));
    const QString sourceLogo = json::string(ad.value(u"sourceLogo"));
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

void ZNTSplashManager::Private::putIntoWindow(ZNTSplashAdView *view)
{
    QObject::connect(view, &ZNTSplashAdView::skipClicked, q, [this] { skipButtonClicked(); });
    if (!currentWindow)
        return;
    QQuickItem *content = currentWindow->contentItem();
    layOut();
    view->setParent(content);
    view->setParentItem(content);
    raise(view);
    if (bottomView) {
        bottomView->setParentItem(content);
        raise(bottomView);
    }
    const auto follow = [this] { layOut(); };
    QObject::connect(content, &QQuickItem::widthChanged, view, follow);
    QObject::connect(content, &QQuickItem::heightChanged, view, follow);
}

// The ad fills the window but for the bottom view's strip, also after a resize.
void ZNTSplashManager::Private::layOut()
{
    if (!splashAdView || !currentWindow)
        return;
    const QSizeF window = currentWindow->contentItem()->size();
    const double strip = bottomView ? bottomView->height() : 0;
    splashAdView->setSize({window.width(), window.height() - strip});
    if (bottomView) {
        bottomView->setPosition({0, window.height() - strip});
        bottomView->setWidth(window.width());
    }
}

// A second show replaces the first.
void ZNTSplashManager::Private::takeDown()
{
    fade.stop();
    visibility.stop();
    countdown.stop();
    if (splashAdView) {
        splashAdView->setParentItem(nullptr);
        splashAdView->deleteLater();
    }
    splashAdView = nullptr;
    isShowing = false;
}

// Exposure

void ZNTSplashManager::Private::reportExposure()
{
    if (hasReportedExposure || !splashAdView || !splashAdView->window())
        return;
    if (shareInWindow(splashAdView).value_or(0) < reportableShare)
        return;
    const QPointer<ZNTSplashManager> self(q);
    fireTracking(tracking.view,
        {.opening = "Starting exposure reporting",
            .name = "Exposure report",
            .closing = "All exposure reports completed"},
        [self] {
            if (self)
                self->d->hasReportedExposure = true;
        });
    notify(q, delegate, &ZNTSplashDelegate::splashAdDidRender);
}

// Click

void ZNTSplashManager::handleAdClick()
{
    logInfo("Splash ad clicked");
    const ClickTarget target = ClickTarget::of(d->adData.value_or(QJsonObject()));
    logInfo("Click URLs - h5url: %1, deepLinkUrl: %2", target.webPage, target.deepLink);
    if (!notify(this, d->delegate, &ZNTSplashDelegate::handleAdClick))
        return;
    d->reportClick();
    openClickTarget(target, [self = QPointer<ZNTSplashManager>(this)] {
        if (self)
            notify(self, self->d->delegate, &ZNTSplashDelegate::splashAdDidCloseOtherController);
    });
}

void ZNTSplashManager::Private::reportClick() const
{
    fireTracking(tracking.click,
        {.opening = "Starting click reporting", .name = "Click report", .namesUrl = false});
    fireTracking(
        tracking.dpEvent, {.opening = "Starting dpEventUrls reporting", .name = "DpEvent report"});
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
    if (splashAdView)
        splashAdView->updateSkipButtonWithTime(countdown.remaining());
}

void ZNTSplashManager::Private::skipButtonClicked()
{
    logInfo("Skip button clicked");
    visibility.stop();
    const QString adId = json::string(adData.value_or(QJsonObject()).value(u"adId"));
    if (!adId.isEmpty())
        sendNegativeFeedback(adId);
    q->closeSplashAd();
}

void ZNTSplashManager::closeSplashAd()
{
    logInfo("Closing splash ad");
    d->countdown.stop();
    d->visibility.stop();
    d->countdown.setRemaining(0);
    if (!d->isShowing) {
        logInfo("No splash ad view to close");
        return;
    }
    if (!d->isFading())
        d->fadeOut();
}

void ZNTSplashManager::Private::fadeOut()
{
    if (splashAdView)
        splashAdView->setEnabled(false);
    fade.start();
}

void ZNTSplashManager::Private::closed()
{
    takeDown();
    if (bottomView) {
        bottomView->setParentItem(nullptr);
        bottomView->setOpacity(1);
    }
    bottomView = nullptr;
    currentWindow = nullptr;
    adData.reset();
    tracking.view = {};
    tracking.click = {};
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
    return d->bottomView;
}

void ZNTSplashManager::setBottomView(QQuickItem *bottomView)
{
    d->bottomView = bottomView;
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
    return d->splashAdView;
}

std::optional<QJsonObject> ZNTSplashManager::adData() const
{
    return d->adData;
}

QJsonArray ZNTSplashManager::viewUrl3rd() const
{
    return d->tracking.view;
}

QJsonValue ZNTSplashManager::clickUrl3rd() const
{
    return d->tracking.click;
}

QJsonArray ZNTSplashManager::dpEventUrls() const
{
    return d->tracking.dpEvent;
}

qint64 ZNTSplashManager::remainingTime() const
{
    return d->countdown.remaining();
}

bool ZNTSplashManager::hasReportedExposure() const
{
    return d->hasReportedExposure;
}
