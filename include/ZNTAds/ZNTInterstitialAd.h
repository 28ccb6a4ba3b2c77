#pragma once

#include <ZNTAds/ZNTDelegateRef.h>
#include <ZNTAds/ZNTInterstitialDelegate.h>

#include <QtCore/QJsonObject>
#include <QtCore/QObject>
#include <QtQuick/QQuickItem>

#include <memory>
#include <optional>

/// Draws one interstitial ad over a screen of the host: dimmed overlay, rounded picture, info bar,
/// and a countdown of five seconds that then becomes the close button.
///
/// ZNTInterstitialManager makes and drives one for each show; a host seldom needs it by itself.
///
/// While it is there, the overlay takes every mouse, touch, wheel, hover and key event, and has the
/// keyboard focus of its window: Tab goes round its two buttons, and Escape or Back closes it once
/// the countdown has ended. It belongs to the screen item and goes with it, silently; it is removed
/// with the presenter too. What it fetches are its two pictures, once when their URLs are equal;
/// one that cannot be had stays empty.
///
/// Delegate calls come in a later iteration of the event loop than their cause, and may destroy the
/// presenter. Main thread only.
class ZNTADS_EXPORT ZNTInterstitialAd : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString mediaId READ mediaId CONSTANT)
    Q_PROPERTY(bool isReady READ isReady)
    Q_PROPERTY(qint64 remainingTime READ remainingTime NOTIFY remainingTimeChanged)
    Q_PROPERTY(QQuickItem *rootViewController READ rootViewController)
    Q_PROPERTY(QQuickItem *adView READ adView)

public:
    /// An ad that is not ready yet; @p mediaId, the ad position, is kept only.
    explicit ZNTInterstitialAd(const QString &mediaId, QObject *parent = nullptr);
    ~ZNTInterstitialAd() override;

    /// Who hears of interstitialAdDidVisible(), interstitialAdDidClick() and
    /// interstitialAdDidAutoClose(): any QObject that implements ZNTInterstitialDelegate, held
    /// weakly. Null for none.
    void setDelegate(const ZNTDelegateRef<ZNTInterstitialDelegate> &delegate);

    /// Keeps the ad as the exchange sent it. Read are "images", "sourceLogo" and "texts", each of
    /// which may be missing. Without an ad the presenter is not ready.
    void setupWithAdData(const std::optional<QJsonObject> &adData);
    /// The ad given last, if any.
    std::optional<QJsonObject> adData() const;
    /// Whether there is an ad that was not dismissed yet.
    bool isReady() const;
    /// The ad position given at construction.
    QString mediaId() const;

    /// Lays the ad over @p screen, above its other children and following its size, and fades it in
    /// over 0.3 seconds; then the delegate hears interstitialAdDidVisible(). The countdown starts
    /// at once. A screen in no window will do. Nothing happens when it is null, the ad is not ready
    /// or there is no QGuiApplication; an overlay that is still there is replaced. The screen must
    /// not be a positioner or layout.
    void showFromViewController(QQuickItem *screen);
    /// The screen item of the latest show, or null when it has gone.
    QQuickItem *rootViewController() const;
    /// Stops the countdown, fades the overlay out over 0.3 seconds, removes it and then notifies
    /// interstitialAdDidAutoClose() with @p autoClose. Every call ends so, also the second one and
    /// one without an overlay.
    void dismissWithAutoClose(bool autoClose);

    /// The item that is measured for visibility: the picture, until the ad is gone. Null when there
    /// is no overlay.
    QQuickItem *adView() const;
    /// Seconds left until the user can close the ad; 5 before the first show.
    qint64 remainingTime() const;

Q_SIGNALS:
    void remainingTimeChanged();

private:
    class Q_DECL_HIDDEN Private;
    const std::unique_ptr<Private> d;
};
