#pragma once

#include <ZNTAds/ZNTSplashAdView.h>

/// The plain splash creative: the picture with a call to action in a dark pill near the bottom,
/// which is a wide button of its own.
class ZNTADS_EXPORT ZNTSplashImageAdView : public ZNTSplashAdView
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit ZNTSplashImageAdView(QQuickItem *parent = nullptr);
};
