#pragma once

#include <ZNTAds/ZNTFeedAdView.h>

/// Template 4, style code "XTWHH": a large picture with the title under it, on margins of 15
/// points.
class ZNTADS_EXPORT ZNTMixedAdView : public ZNTFeedAdView
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit ZNTMixedAdView(QQuickItem *parent = nullptr);
};
