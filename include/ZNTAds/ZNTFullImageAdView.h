#pragma once

#include <ZNTAds/ZNTFeedAdView.h>

/// Template 3, style code "XDT": a title above a picture that takes all the height left.
class ZNTADS_EXPORT ZNTFullImageAdView : public ZNTFeedAdView
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit ZNTFullImageAdView(QQuickItem *parent = nullptr);

    /// The same as closeButtonClicked().
    void closeButtonTapped() { closeButtonClicked(); }
};
