#pragma once

#include <ZNTAds/ZNTFeedAdView.h>

/// Template 0, style code "XCT": a picture alone, inset by 12 points.
class ZNTADS_EXPORT ZNTPureImageAdView : public ZNTFeedAdView
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit ZNTPureImageAdView(QQuickItem *parent = nullptr);
};
