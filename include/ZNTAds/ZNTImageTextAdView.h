#pragma once

#include <ZNTAds/ZNTFeedAdView.h>

/// Template 1, style code "XSTXW": a picture above its title.
class ZNTADS_EXPORT ZNTImageTextAdView : public ZNTFeedAdView
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit ZNTImageTextAdView(QQuickItem *parent = nullptr);
};
