#include <ZNTAds/ZNTInterstitialAd.h>

#include "ads/notify.h"
#include "interstitial/interstitialoverlay.h"
#include "support/countdown.h"

#include <QVariantAnimation>

using namespace znt;

namespace {

constexpr qint64 secondsToClosable = 5;
constexpr int fadeMilliseconds = 300;

} // namespace

class ZNTInterstitialAd::Private
{
public:
    explicit Private(ZNTInterstitialAd *ad)
        : q(ad)
    {
    }

    void layOver(QQuickItem *screen);
    QQuickItem *subview(const char *name) const;
    void setOpacity(double opacity) const;
    void fadeTo(double opacity);
    void faded();
    void overlayLost();
    void takeDown();
    void closed();

    bool isClosing() const { return !closings.isEmpty(); }

    ZNTInterstitialAd *const q;
    ZNTDelegateRef<ZNTInterstitialDelegate> delegate;
    QString mediaId;
    QPointer<QQuickItem> rootViewController;
    std::optional<QJsonObject> adData;
    bool isReady = false;
    QPointer<InterstitialOverlay> overlay;
    Countdown countdown;
    QVariantAnimation fade;
    QList<bool> closings; // each dismissal still to be told, and whether the timer asked for it
};

ZNTInterstitialAd::ZNTInterstitialAd(const QString &mediaId, QObject *parent)
    : QObject(parent)
    , d(std::make_unique<Private>(this))
{
    d->mediaId = mediaId;
    d->countdown.setRemaining(secondsToClosable);
    connect(&d->countdown, &Countdown::ticked, this, [this](qint64 remaining) {
        if (d->overlay)
            d->overlay->setRemaining(remaining);
    });
    d->fade.setDuration(fadeMilliseconds);
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
    d->adData = adData;
    d->isReady = adData.has_value();
}

void ZNTInterstitialAd::showFromViewController(QQuickItem *screen)
{
    if (!d->isReady || !screen)
        return;
    d->takeDown();
    d->closings.clear();
    d->layOver(screen);
    d->setOpacity(0);
    d->fadeTo(1);
    d->countdown.start(secondsToClosable);
    d->overlay->setRemaining(secondsToClosable);
}

void ZNTInterstitialAd::Private::layOver(QQuickItem *screen)
{
    rootViewController = screen;
    overlay = new InterstitialOverlay(*adData, screen);
    QObject::connect(overlay, &QObject::destroyed, q, [this] { overlayLost(); });
    // Queued: the delegate may destroy everything, and must not do so in the middle of an event.
    QObject::connect(
        overlay, &InterstitialOverlay::clicked, q,
        [this] { notify(q, delegate, &ZNTInterstitialDelegate::interstitialAdDidClick); },
        Qt::QueuedConnection);
    QObject::connect(
        overlay, &InterstitialOverlay::closeRequested, q,
        [this] { q->dismissWithAutoClose(false); }, Qt::QueuedConnection);
}

QQuickItem *ZNTInterstitialAd::Private::subview(const char *name) const
{
    return overlay ? overlay->subview(QLatin1String(name)) : nullptr;
}

void ZNTInterstitialAd::Private::setOpacity(double opacity) const
{
    if (QQuickItem *container = subview("containerView"))
        container->setOpacity(opacity);
}

void ZNTInterstitialAd::Private::fadeTo(double opacity)
{
    const QQuickItem *container = subview("containerView");
    fade.stop();
    fade.setStartValue(container ? container->opacity() : opacity);
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

// The screen has gone and taken it along: nobody has closed the ad. A dismissal under way goes on.
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
    d->closings.append(autoClose);
    if (d->closings.size() > 1)
        return; // told together with the one under way
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
    const QList<bool> told = std::exchange(closings, {});
    for (const bool autoClose : told) {
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
    return d->adData;
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
    return d->isClosing() ? nullptr : d->subview("adImageView");
}

qint64 ZNTInterstitialAd::remainingTime() const
{
    return d->countdown.remaining();
}
