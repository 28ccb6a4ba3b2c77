#pragma once

#include <ZNTAds/ZNTDelegateRef.h>
#include <ZNTAds/ZNTSplashDelegate.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QObject>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>

#include <memory>
#include <optional>

class ZNTSplashAdView;

/// Loads one splash ad, shows it over a window, counts it as seen, follows its clicks and closes
/// it.
///
/// Main thread only. Load first; when the delegate hears splashAdDidLoad(), show. Window, views and
/// delegate are held weakly and may be destroyed at any time, and so may the manager. Errors reach
/// the delegate's splashAdDidFailed() with domain "ZNTSplashManager": -1001 no media id, -1002 the
/// answer cannot be used, -1003 nothing loaded, -1004 the ad has no picture, -1005 there is no
/// QGuiApplication to show it in; a failed request passes its own error on.
class ZNTADS_EXPORT ZNTSplashManager : public QObject, public ZNTSplashDelegate
{
    Q_OBJECT
    Q_INTERFACES(ZNTSplashDelegate)
    Q_PROPERTY(QString mediaId READ mediaId WRITE setMediaId NOTIFY mediaIdChanged)
    Q_PROPERTY(qint64 adStyle READ adStyle WRITE setAdStyle NOTIFY adStyleChanged)
    Q_PROPERTY(QQuickItem *bottomView READ bottomView WRITE setBottomView NOTIFY bottomViewChanged)
    Q_PROPERTY(QQuickItem *showAdController READ showAdController WRITE setShowAdController NOTIFY
            showAdControllerChanged)
    Q_PROPERTY(bool portrait READ portrait WRITE setPortrait NOTIFY portraitChanged)
    Q_PROPERTY(qint64 remainingTime READ remainingTime NOTIFY remainingTimeChanged)
    Q_PROPERTY(bool hasReportedExposure READ hasReportedExposure NOTIFY hasReportedExposureChanged)

public:
    explicit ZNTSplashManager(QObject *parent = nullptr);
    ~ZNTSplashManager() override;

    /// Who hears of the ad: any QObject that implements ZNTSplashDelegate, held weakly.
    void setDelegate(const ZNTDelegateRef<ZNTSplashDelegate> &delegate);

    /// The ad position; null until set. An empty one is sent as it is.
    QString mediaId() const;
    /// An empty text that QML assigns arrives as null.
    void setMediaId(const QString &mediaId);
    /// The creatives by their numbers.
    enum AdStyle : qint64 {
        ImageStyle = 0, ///< ZNTSplashImageAdView, for any other number as well
        ShakeStyle = 1, ///< ZNTShakeAdView
        SlideStyle = 2, ///< ZNTSlideAdView
    };
    Q_ENUM(AdStyle)

    /// Which creative to build, an AdStyle; the plain picture until set.
    qint64 adStyle() const;
    void setAdStyle(qint64 style);
    /// An item of the host's that the next show puts under the ad, at the height that it has then.
    /// When the ad closes it is removed from the window, and none is set any more. Null for none.
    /// The host keeps owning it.
    QQuickItem *bottomView() const;
    void setBottomView(QQuickItem *bottomView);
    /// Kept for the host; the splash ad does not use it.
    QQuickItem *showAdController() const;
    void setShowAdController(QQuickItem *controller);
    /// Kept for the host; the splash ad does not use it.
    bool portrait() const;
    void setPortrait(bool portrait);

    /// Requests an ad. Showing is a call of its own, which names the window again.
    void loadAndShowSplashAdWithWindow(QQuickWindow *window);
    /// Takes an answer of the exchange as if it had been requested.
    /// A value of a wrong type counts as missing.
    /// @return whether it held an ad that is now loaded
    bool handleAdResponse(const QJsonValue &response);
    /// Covers @p window with the loaded ad and starts its five seconds, which pass unseen when it
    /// is null. Takes the place of an ad of this manager that is still shown.
    void showSplashAdWithWindow(QQuickWindow *window);
    /// Fades the ad out and forgets it. Without an ad on screen it does nothing.
    void closeSplashAd();

    /// Makes the creative of a style, for a host that shows one by itself. It has no delegate and
    /// no parent, and belongs to the caller.
    static ZNTSplashAdView *createAdViewWithStyle(qint64 style);
    /// The creative on screen, or null.
    ZNTSplashAdView *splashAdView() const;
    /// The loaded ad as the exchange sent it, if there is one.
    std::optional<QJsonObject> adData() const;
    /// The tracking lists, kept as they were sent.
    QJsonArray viewUrl3rd() const;
    QJsonValue clickUrl3rd() const;
    QJsonArray dpEventUrls() const;
    /// Seconds left on the countdown.
    qint64 remainingTime() const;
    /// Whether the exposure's tracking requests have all completed; once true it stays true.
    bool hasReportedExposure() const;

    /// Called by the creative at a click.
    void handleAdClick() override;

Q_SIGNALS:
    void mediaIdChanged();
    void adStyleChanged();
    void bottomViewChanged();
    void showAdControllerChanged();
    void portraitChanged();
    void remainingTimeChanged();
    void hasReportedExposureChanged();

    // Each of these follows the delegate's method, with or without a delegate. Whoever hears of one
    // may destroy the manager.
    /// splashAdDidLoad()
    void loaded();
    /// splashAdDidFailed()
    void failed(const ZNTError &error);
    /// splashAdDidVisible()
    void appeared();
    /// handleAdClick()
    void clicked();
    /// splashAdDidCloseOtherController()
    void targetOpened();
    /// splashAdDidShowFinish()
    void closed();
    /// splashAdDidRender()
    void rendered();

private:
    class Q_DECL_HIDDEN Private;
    const std::unique_ptr<Private> d;
};
