#include <ZNTAds/ZNTSlideAdView.h>

namespace {

constexpr double leastSpeed = 500;    // points a second
constexpr double leastDistance = 100; // points

bool isSlide(const QPointF &translation, const QPointF &velocity)
{
    return qAbs(velocity.x()) > leastSpeed || qAbs(translation.x()) > leastDistance
        || velocity.y() > leastSpeed || translation.y() > leastDistance;
}

} // namespace

ZNTSlideAdView::ZNTSlideAdView(QQuickItem *parent)
    : ZNTSplashAdView(QStringLiteral("SlideAdView"), parent)
{
}

void ZNTSlideAdView::handlePanGesture(const QPointF &translation, const QPointF &velocity)
{
    if (isSlide(translation, velocity))
        handleAdClick();
}
