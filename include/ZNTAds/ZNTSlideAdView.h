#pragma once

#include <ZNTAds/ZNTSplashAdView.h>

/// The splash creative that opens by a slide: over the picture lie a pulsing arc, two lines of hint
/// and a finger that traces a cross. A tap is a click too.
class ZNTADS_EXPORT ZNTSlideAdView : public ZNTSplashAdView
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit ZNTSlideAdView(QQuickItem *parent = nullptr);

    /// The end of a drag of one finger or the left mouse button. It is a click when it was fast or
    /// long enough: faster than 500 points a second or farther than 100 points to the left, to the
    /// right, or downwards. An upward drag counts by its sideways part only. A drag that is
    /// cancelled, or that a second finger joins, never gets here.
    /// @param translation from where the drag began to where it ended, in points of this view
    /// @param velocity in points a second over the last tenth of a second
    void handlePanGesture(const QPointF &translation, const QPointF &velocity) override;
};
