#pragma once

#include <ZNTAds/ZNTDelegateRef.h>
#include <ZNTAds/ZNTInterstitialDelegate.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QObject>
#include <QtQuick/QQuickItem>

#include <memory>
#include <optional>

class ZNTInterstitialAd;

/// Loads one interstitial ad and lays it over a screen of the host.
///
/// Main thread only. Screen item and delegate are held weakly and may be destroyed at any time, and
/// so may the manager. Errors reach interstitialAdDidFailed() with domain "ZNTInterstitialManager":
/// -1002 the answer cannot be used, -1003 nothing loaded or no screen; a failed request passes its
/// own error on.
class ZNTADS_EXPORT ZNTInterstitialManager : public QObject, public ZNTInterstitialDelegate
{
    Q_OBJECT
    Q_INTERFACES(ZNTInterstitialDelegate)

public:
    explicit ZNTInterstitialManager(QObject *parent = nullptr);
    ~ZNTInterstitialManager() override;

    /// Who hears of the ad: any QObject that implements ZNTInterstitialDelegate, held weakly.
    template <class Object>
    void setDelegate(Object *delegate)
    {
        setDelegate(ZNTDelegateRef<ZNTInterstitialDelegate>(delegate));
    }
    void setDelegate(const ZNTDelegateRef<ZNTInterstitialDelegate> &delegate);

    /// The ad position; null until set. Null and empty are sent as they are.
    QString mediaId() const;
    void setMediaId(const QString &mediaId);
    /// The host's screen item that the ad lies over.
    QQuickItem *showAdController() const;
    void setShowAdController(QQuickItem *controller);
    /// Seconds after the show call at which the ad closes by itself; 0, negative or not a number:
    /// never.
    double autoCloseTime() const;
    void setAutoCloseTime(double seconds);

    /// Requests an ad; ignored while a request is in flight.
    void loadAdData();
    /// Takes an answer of the exchange as if it had been requested.
    /// @return whether it held an ad that is now loaded
    bool handleAdResponse(const QJsonValue &response);
    /// Shows the loaded ad over the screen item.
    void showInterstitialAd();

    /// Whether a request is in flight.
    bool isLoading() const;
    /// Whether the exposure's tracking requests have all completed; once true it stays true.
    bool hasReportedExposure() const;
    /// The presenter of the latest show, or null.
    ZNTInterstitialAd *interstitialAd() const;

    void interstitialAdDidLoad() override;
    void interstitialAdDidVisible() override;
    void interstitialAdDidClick() override;
    void interstitialAdDidCloseOtherController() override;
    void interstitialAdDidAutoClose(bool autoClose) override;

private:
    class Private;
    const std::unique_ptr<Private> d;
};
