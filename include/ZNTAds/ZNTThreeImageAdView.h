#pragma once

#include <ZNTAds/ZNTFeedAdView.h>

/// Template 6, style code "XST": a title above a row of three pictures, which all show the first
/// one.
class ZNTADS_EXPORT ZNTThreeImageAdView : public ZNTFeedAdView
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit ZNTThreeImageAdView(QQuickItem *parent = nullptr);
};
