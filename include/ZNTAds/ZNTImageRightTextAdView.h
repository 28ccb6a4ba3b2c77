#pragma once

#include <ZNTAds/ZNTFeedAdView.h>

/// Template 7, style code "XZTYW": a picture on the left, the title to its right.
class ZNTADS_EXPORT ZNTImageRightTextAdView : public ZNTFeedAdView
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit ZNTImageRightTextAdView(QQuickItem *parent = nullptr);
};
