#pragma once

#include <ZNTAds/ZNTFeedAdView.h>

/// Template 8, style code "XZWYT": the title on the left, a picture to its right.
class ZNTADS_EXPORT ZNTTextRightImageAdView : public ZNTFeedAdView
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit ZNTTextRightImageAdView(QQuickItem *parent = nullptr);
};
