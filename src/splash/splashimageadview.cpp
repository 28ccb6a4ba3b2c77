#include <ZNTAds/ZNTSplashImageAdView.h>

ZNTSplashImageAdView::ZNTSplashImageAdView(QQuickItem *parent)
    : ZNTSplashAdView(QStringLiteral("SplashImageAdView"), parent)
{
}
