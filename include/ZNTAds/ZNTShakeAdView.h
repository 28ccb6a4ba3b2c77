#pragma once

#include <ZNTAds/ZNTSplashAdView.h>

class ZNTADS_EXPORT ZNTShakeAdView : public ZNTSplashAdView
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit ZNTShakeAdView(QQuickItem *parent = nullptr);
};
