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

/// Loads one interstitial ad, lays it over a screen of the host, counts it as seen and follows its
/// clicks.
///
/// Load first; when the delegate hears interstitialAdDidLoad(), show. Main thread only. Screen item
/// and delegate are held weakly and may be destroyed at any time, and so may the manager, which
/// takes its ad off the screen. Errors reach interstitialAdDidFailed() with domain
/// "ZNTInterstitialManager": -1002 the answer cannot be used, -1003 nothing loaded or no screen,
/// -1005 there is no QGuiApplication to show it in; a failed request passes its own error on.
class ZNTADS_EXPORT ZNTInterstitialManager : public QObject, public ZNTInterstitialDelegate
{
    Q_OBJECT
    Q_INTERFACES(ZNTInterstitialDelegate)
    Q_PROPERTY(QString mediaId READ mediaId WRITE setMediaId NOTIFY mediaIdChanged)
    Q_PROPERTY(QQuickItem *showAdController READ showAdController WRITE setShowAdController NOTIFY
            showAdControllerChanged)
    Q_PROPERTY(
        double autoCloseTime READ autoCloseTime WRITE setAutoCloseTime NOTIFY autoCloseTimeChanged)
    Q_PROPERTY(bool isLoading READ isLoading NOTIFY isLoadingChanged)
    Q_PROPERTY(qint64 remainingTime READ remainingTime NOTIFY remainingTimeChanged)
    Q_PROPERTY(bool hasReportedExposure READ hasReportedExposure NOTIFY hasReportedExposureChanged)

public:
    /// A manager without an ad, whose shown ads do not close by themselves.
    explicit ZNTInterstitialManager(QObject *parent = nullptr);
    ~ZNTInterstitialManager() override;

    /// Who hears of the ad: any QObject that implements ZNTInterstitialDelegate, held weakly. Null
    /// for none. Each of its methods may destroy the manager.
    void setDelegate(const ZNTDelegateRef<ZNTInterstitialDelegate> &delegate);

    /// The ad position; null until set. Null and empty are sent as they are.
    QString mediaId() const;
    /// An empty text that QML assigns arrives as null.
    void setMediaId(const QString &mediaId);
    /// The host's screen item that the ad lies over; null for none, and when it has been destroyed.
    QQuickItem *showAdController() const;
    void setShowAdController(QQuickItem *controller);
    /// Seconds after the show call at which the ad closes by itself; 0, negative or not a number:
    /// never. Read by showInterstitialAd(). What the user does meanwhile does not call the close
    /// off: it then closes whichever ad this manager shows, or reports the one that was closed
    /// already a second time. More than 24 days never come.
    double autoCloseTime() const;
    void setAutoCloseTime(double seconds);

    /// Requests an ad; ignored while a request is in flight. The delegate hears
    /// interstitialAdDidLoad() or interstitialAdDidFailed(). Allowed while an ad is shown: the new
    /// one is there for the next show, and clicks follow it from now on.
    void loadAdData();
    /// Takes an answer of the exchange as if it had been requested, without a word to the delegate.
    /// Tracking lists that it lacks stay as an earlier answer left them.
    /// A value of a wrong type counts as missing.
    /// @return whether it held an ad that is now loaded
    bool handleAdResponse(const QJsonValue &response);
    /// Shows the loaded ad over the screen item. An ad of this manager that is still on screen is
    /// taken off silently. Fails with -1003 without an ad or a screen item.
    void showInterstitialAd();

    /// Whether a request is in flight.
    bool isLoading() const;
    /// Whether the exposure's tracking requests have all completed; once true it stays true, and
    /// further shows of this manager are not reported.
    bool hasReportedExposure() const;
    /// Seconds until the user can close the ad of the latest show; 0 before the first.
    qint64 remainingTime() const;
    /// The presenter of the latest show, also after it was dismissed; null before the first.
    ZNTInterstitialAd *interstitialAd() const;
    /// The loaded ad as the exchange sent it, if there is one.
    std::optional<QJsonObject> adData() const;
    /// The tracking lists, kept as they were sent.
    QJsonArray viewUrl3rd() const;
    QJsonValue clickUrl3rd() const;
    QJsonArray dpEventUrls() const;

    /// Notifies the delegate. The library itself does not call it.
    void interstitialAdDidLoad() override;
    /// Called by the presenter; notifies the delegate and starts to watch for the exposure.
    void interstitialAdDidVisible() override;
    /// Called by the presenter; notifies the delegate, opens the ad's target and reports the click.
    void interstitialAdDidClick() override;
    /// Notifies the delegate. The library itself does not call it.
    void interstitialAdDidCloseOtherController() override;
    /// Called by the presenter; ends the watch, sends negative feedback when the ad has an
    /// "ad_id", and notifies the delegate.
    void interstitialAdDidAutoClose(bool autoClose) override;

Q_SIGNALS:
    void mediaIdChanged();
    void showAdControllerChanged();
    void autoCloseTimeChanged();
    void isLoadingChanged();
    void remainingTimeChanged();
    void hasReportedExposureChanged();

    // Each of these but the last follows the delegate's method, with or without a delegate. Whoever
    // hears of one may destroy the manager.
    /// interstitialAdDidLoad()
    void loaded();
    /// interstitialAdDidFailed()
    void failed(const ZNTError &error);
    /// interstitialAdDidVisible()
    void appeared();
    /// interstitialAdDidClick()
    void clicked();
    /// interstitialAdDidCloseOtherController()
    void targetOpened();
    /// interstitialAdDidAutoClose()
    void closed(bool autoClose);
    /// The ad counts as seen.
    void rendered();

private:
    class Q_DECL_HIDDEN Private;
    const std::unique_ptr<Private> d;
};
