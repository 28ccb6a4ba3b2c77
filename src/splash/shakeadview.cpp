#include <ZNTAds/ZNTShakeAdView.h>

#include "splash/motion.h"

struct ZNTShakeAdView::Private
{
    znt::Motion motion;
};

ZNTShakeAdView::ZNTShakeAdView(QQuickItem *parent)
    : ZNTSplashAdView(QStringLiteral("ShakeAdView"), parent)
    , d(std::make_unique<Private>())
{
    // Queued: the delegate may destroy the creative, and its sensors must not be busy then.
    connect(&d->motion, &znt::Motion::tilted, this, &ZNTShakeAdView::handleShakeAction,
        Qt::QueuedConnection);
    connect(&d->motion, &znt::Motion::shaken, this, &ZNTShakeAdView::handleShakeAction,
        Qt::QueuedConnection);
}

ZNTShakeAdView::~ZNTShakeAdView() = default;

void ZNTShakeAdView::handleShakeAction()
{
    handleAdClick();
}

void ZNTShakeAdView::handleTap()
{
    handleShakeAction();
}
