#pragma once

#include <ZNTAds/ZNTSplashAdView.h>

class ZNTADS_EXPORT ZNTSplashImageAdView : public ZNTSplashAdView
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit ZNTSplashImageAdView(QQuickItem *parent = nullptr);
};
