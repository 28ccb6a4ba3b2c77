#pragma once

#include <ZNTAds/ZNTSplashAdView.h>

class ZNTADS_EXPORT ZNTSlideAdView : public ZNTSplashAdView
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit ZNTSlideAdView(QQuickItem *parent = nullptr);
};
