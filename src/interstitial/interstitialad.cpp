#include <ZNTAds/ZNTInterstitialAd.h>

#include "ads/notify.h"
#include "interstitial/interstitialoverlay.h"
#include "support/countdown.h"
#include "support/mainthread.h"
#include "ui/qmlpart.h"

#include <QVariantAnimation>

using namespace znt;

namespace {

constexpr qint64 secondsToClosable = 5;
constexpr int overlayFadeMilliseconds = 300;

} // namespace

class ZNTInterstitialAd::Private
{
public:
    explicit Private(ZNTInterstitialAd *presenter)
        : q(presenter)
    {
    }

    void layOver(QQuickItem *screen);
    QQuickItem *container() const;
    void setOpacity(double opacity) const;
    void fadeTo(double opacity);
    void faded();
    void overlayLost();
    void takeDown();
    void closed();

    bool isClosing() const { return !pendingDismissals.isEmpty(); }

    ZNTInterstitialAd *const q;
    ZNTDelegateRef<ZNTInterstitialDelegate> delegate;
    QString mediaId;
    QPointer<QQuickItem> rootViewController;
    std::optional<Ad> ad;
    bool isReady = false;
    QPointer<InterstitialOverlay> overlay;
    Countdown countdown;
    QVariantAnimation fade;
    QList<bool> pendingDismissals; // for each, whether the timer asked for it
};

ZNTInterstitialAd::ZNTInterstitialAd(const QString &mediaId, QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this))
{
    d->mediaId = mediaId;
    d->countdown.setRemaining(secondsToClosable);
    connect(&d->countdown, &Countdown::remainingChanged, this,
        &ZNTInterstitialAd::remainingTimeChanged, Qt::QueuedConnection); // who hears may destroy it
    connect(&d->countdown, &Countdown::ticked, this, [this](qint64 remaining) {
        if (d->overlay)
            d->overlay->setRemaining(remaining);
    });
    d->fade.setDuration(overlayFadeMilliseconds);
    d->fade.setEasingCurve(QEasingCurve::InOutQuad);
    connect(&d->fade, &QVariantAnimation::valueChanged, this,
        [this](const QVariant &opacity) { d->setOpacity(opacity.toDouble()); });
    connect(&d->fade, &QVariantAnimation::finished, this, [this] { d->faded(); });
}

ZNTInterstitialAd::~ZNTInterstitialAd()
{
    d->takeDown();
}

// Showing

void ZNTInterstitialAd::setupWithAdData(const std::optional<QJsonObject> &adData)
{
    if (d->ad)
        discardInPool(*std::exchange(d->ad, {}));
    if (adData)
        d->ad = readAd(*adData);
    d->isReady = d->ad.has_value();
}

void ZNTInterstitialAd::showFromViewController(QQuickItem *screen)
{
    if (!d->isReady || !screen || !canShowViews())
        return;
    d->takeDown();
    d->pendingDismissals.clear();
    d->layOver(screen);
    d->setOpacity(0);
    d->fadeTo(1);
    d->countdown.start(secondsToClosable);
    d->overlay->setRemaining(secondsToClosable);
}

void ZNTInterstitialAd::Private::layOver(QQuickItem *screen)
{
    rootViewController = screen;
    overlay = new InterstitialOverlay(*ad, screen);
    QObject::connect(overlay, &QObject::destroyed, q, [this] { overlayLost(); });
    QObject::connect(overlay, &InterstitialOverlay::clicked, q,
        [this] { notify(q, delegate, &ZNTInterstitialDelegate::interstitialAdDidClick); });
    QObject::connect(overlay, &InterstitialOverlay::closeRequested, q,
        [this] { q->dismissWithAutoClose(false); });
}

QQuickItem *ZNTInterstitialAd::Private::container() const
{
    return overlay ? overlay->containerView() : nullptr;
}

void ZNTInterstitialAd::Private::setOpacity(double opacity) const
{
    if (QQuickItem *faded = container())
        faded->setOpacity(opacity);
}

void ZNTInterstitialAd::Private::fadeTo(double opacity)
{
    fade.stop();
    fade.setStartValue(container() ? container()->opacity() : opacity);
    fade.setEndValue(opacity);
    fade.start();
}

void ZNTInterstitialAd::Private::faded()
{
    if (isClosing())
        closed();
    else
        notify(q, delegate, &ZNTInterstitialDelegate::interstitialAdDidVisible);
}

// The screen has gone and taken it along: nobody has closed the ad. A pending dismissal goes on.
void ZNTInterstitialAd::Private::overlayLost()
{
    countdown.stop();
    if (!isClosing())
        fade.stop();
}

// Dismissing

void ZNTInterstitialAd::dismissWithAutoClose(bool autoClose)
{
    d->countdown.stop();
    d->pendingDismissals.append(autoClose);
    if (d->pendingDismissals.size() > 1)
        return; // notified together with the one before
    if (d->overlay)
        d->overlay->setDismissed();
    d->fadeTo(0);
}

void ZNTInterstitialAd::Private::takeDown()
{
    fade.stop();
    countdown.stop();
    if (!overlay)
        return;
    overlay->disconnect(q);
    overlay->setParentItem(nullptr);
    overlay->deleteLater();
    overlay = nullptr;
}

void ZNTInterstitialAd::Private::closed()
{
    takeDown();
    isReady = false;
    const QList<bool> dismissals = std::exchange(pendingDismissals, {});
    for (const bool autoClose : dismissals) {
        if (!notify(q, delegate, &ZNTInterstitialDelegate::interstitialAdDidAutoClose, autoClose))
            return;
    }
}

// Properties

void ZNTInterstitialAd::setDelegate(const ZNTDelegateRef<ZNTInterstitialDelegate> &delegate)
{
    d->delegate = delegate;
}

QString ZNTInterstitialAd::mediaId() const
{
    return d->mediaId;
}

std::optional<QJsonObject> ZNTInterstitialAd::adData() const
{
    return d->ad ? std::optional(d->ad->data) : std::nullopt;
}

QQuickItem *ZNTInterstitialAd::rootViewController() const
{
    return d->rootViewController;
}

bool ZNTInterstitialAd::isReady() const
{
    return d->isReady;
}

QQuickItem *ZNTInterstitialAd::adView() const
{
    return d->overlay ? d->overlay->adImageView() : nullptr;
}

qint64 ZNTInterstitialAd::remainingTime() const
{
    return d->countdown.remaining();
}
