// A host in plain C++: a splash ad at the start, feed ads beneath it, an interstitial once it has
// closed.
#include "../sandbox.h"

#include <ZNTAds/ZNTFeedAdItem.h>
#include <ZNTAds/ZNTFeedAds.h>
#include <ZNTAds/ZNTInterstitialManager.h>
#include <ZNTAds/ZNTSplashManager.h>

#include <QGuiApplication>
#include <QQuickWindow>

class Host : public QObject, public ZNTSplashDelegate, public ZNTInterstitialDelegate
{
    Q_OBJECT
    Q_INTERFACES(ZNTSplashDelegate ZNTInterstitialDelegate)

public:
    explicit Host(QQuickWindow &window)
        : m_window(window)
    {
        m_splash.setMediaId(QStringLiteral("splash"));
        m_splash.setDelegate(this);
        m_splash.loadAndShowSplashAdWithWindow(&m_window);

        m_interstitial.setMediaId(QStringLiteral("interstitial"));
        m_interstitial.setDelegate(this);
        m_interstitial.setShowAdController(m_window.contentItem());

        m_feed.setMediaId(QStringLiteral("feed"));
        m_feed.setAdCount(3);
        connect(&m_feed, &ZNTFeedAds::modelReset, this, &Host::showFeed);
        connect(&m_feed, &ZNTFeedAds::rowsRemoved, this, &Host::showFeed);
        for (ZNTFeedAdItem &item : m_items) {
            item.setParentItem(m_window.contentItem());
            connect(
                &item, &ZNTFeedAdItem::closed, this, [this, &item] { m_feed.remove(item.ad()); });
        }
        m_feed.load();
    }

    void splashAdDidLoad() override { m_splash.showSplashAdWithWindow(&m_window); }
    void splashAdDidFailed(const ZNTError &) override { m_interstitial.loadAdData(); }
    void splashAdDidShowFinish() override { m_interstitial.loadAdData(); }

    void interstitialAdDidLoad() override { m_interstitial.showInterstitialAd(); }
    void interstitialAdDidFailed(const ZNTError &error) override
    {
        qInfo("No interstitial ad: %s", qUtf8Printable(error.localizedDescription()));
    }

private:
    void showFeed()
    {
        double y = 0;
        for (int row = 0; row < rows; ++row) {
            ZNTFeedAdItem &item = m_items[row];
            item.setWidth(m_window.width());
            item.setAd(m_feed.get(row)); // null shows nothing
            item.setY(y);
            item.setHeight(item.implicitHeight());
            y += item.height();
        }
    }

    static constexpr int rows = 3;
    QQuickWindow &m_window;
    ZNTSplashManager m_splash;
    ZNTInterstitialManager m_interstitial;
    ZNTFeedAds m_feed;
    ZNTFeedAdItem m_items[rows];
};

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    // The library keeps its settings among the application's own, which need these names.
    QCoreApplication::setOrganizationName(QStringLiteral("Example"));
    QCoreApplication::setApplicationName(QStringLiteral("cpp-host"));

    useSandbox(application.arguments());
    ZNTAdsSDK::registerWithAppId(
        QStringLiteral("demo-app"), QStringLiteral("demo-media"), QStringLiteral("demo-secret"));

    QQuickWindow window;
    window.setTitle(QStringLiteral("A C++ host"));
    window.resize(375, 812);
    window.show();
    const Host host(window);
    return QGuiApplication::exec();
}

#include "main.moc"
