#pragma once

#include <ZNTAds/ZNTDelegateRef.h>
#include <ZNTAds/ZNTInterstitialDelegate.h>

#include <QtCore/QJsonObject>
#include <QtCore/QObject>
#include <QtQuick/QQuickItem>

#include <memory>
#include <optional>

/// Draws one interstitial ad over a screen of the host: dimmed overlay, picture, info bar, and a
/// countdown that turns into the close button. Main thread only.
class ZNTADS_EXPORT ZNTInterstitialAd : public QObject
{
    Q_OBJECT

public:
    /// An ad that is not ready yet; @p mediaId is kept only.
    explicit ZNTInterstitialAd(const QString &mediaId, QObject *parent = nullptr);
    ~ZNTInterstitialAd() override;

    /// Who hears of the overlay: any QObject that implements ZNTInterstitialDelegate, held weakly.
    template <class Object>
    void setDelegate(Object *delegate)
    {
        setDelegate(ZNTDelegateRef<ZNTInterstitialDelegate>(delegate));
    }
    void setDelegate(const ZNTDelegateRef<ZNTInterstitialDelegate> &delegate);

    /// Keeps the ad; without one the presenter is not ready.
    void setupWithAdData(const std::optional<QJsonObject> &adData);
    /// Whether there is an ad that was not dismissed yet.
    bool isReady() const;
    /// Lays the ad over @p screen; nothing happens when it is null or the ad is not ready.
    void showFromViewController(QQuickItem *screen);
    /// Fades out, removes the overlay and tells the delegate with @p autoClose; each call does so.
    void dismissWithAutoClose(bool autoClose);

    /// The item that is measured for visibility: the picture; null when there is no overlay.
    QQuickItem *adView() const;
    /// Seconds left until the ad can be closed.
    qint64 remainingTime() const;

private:
    class Private;
    const std::unique_ptr<Private> d;
};
