#pragma once

#include <ZNTAds/ZNTSplashAdView.h>

/// The splash creative that opens by motion: over the picture lies a dark bar with a swinging
/// phone.
///
/// From its construction to its destruction, shown or not, it listens to the device:
/// - Tilt: ten samples a second of the rotation sensor, where there is one. The pitch of the first
///   sample is the reference; the first one that differs from it by more than 30 degrees is a click
///   and ends the tilt detection.
/// - Shake: the accelerometer, where there is one. A swing is a stretch of samples that begins
/// above
///   2 g (19.6 m/s², gravity included) and ends below 1.5 g. The second swing within one second
///   completes a shake; further swings belong to the same shake until half a second has passed
///   without one. Every shake is a click, also after a tilt.
///
/// A tap is a click too.
class ZNTADS_EXPORT ZNTShakeAdView : public ZNTSplashAdView
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit ZNTShakeAdView(QQuickItem *parent = nullptr);
    ~ZNTShakeAdView() override;

    /// What a tilt, a shake and a tap do: notifies the delegate of a click, at once.
    Q_INVOKABLE void handleShakeAction();

protected:
    void handleTap() override;

private:
    struct Q_DECL_HIDDEN Private;
    const std::unique_ptr<Private> d;
};
