#pragma once

#include <ZNTAds/ZNTFeedAdView.h>

/// Template 2, style code "XSWXT": a title above its picture.
class ZNTADS_EXPORT ZNTTextImageAdView : public ZNTFeedAdView
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit ZNTTextImageAdView(QQuickItem *parent = nullptr);
};
