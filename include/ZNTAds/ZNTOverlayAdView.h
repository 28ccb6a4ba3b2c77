#pragma once

#include <ZNTAds/ZNTFeedAdView.h>

/// Template 5, style code "XWZFC": a picture with title and button on a strip along its bottom.
class ZNTADS_EXPORT ZNTOverlayAdView : public ZNTFeedAdView
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit ZNTOverlayAdView(QQuickItem *parent = nullptr);
};
