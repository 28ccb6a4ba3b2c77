// A host in plain C++: a splash ad at the start, and an interstitial once it has closed.
#include "../sandbox.h"

#include <ZNTAds/ZNTAdsSDK.h>
#include <ZNTAds/ZNTInterstitialManager.h>
#include <ZNTAds/ZNTSplashManager.h>

#include <QGuiApplication>
#include <QQuickItem>
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
    }

    void splashAdDidLoad() override { m_splash.showSplashAdWithWindow(&m_window); }
    void splashAdDidFailed(const ZNTError &error) override
    {
        qInfo("No splash ad: %s", qUtf8Printable(error.localizedDescription()));
        m_interstitial.loadAdData();
    }
    void splashAdDidShowFinish() override { m_interstitial.loadAdData(); }

    void interstitialAdDidLoad() override { m_interstitial.showInterstitialAd(); }
    void interstitialAdDidFailed(const ZNTError &error) override
    {
        qInfo("No interstitial ad: %s", qUtf8Printable(error.localizedDescription()));
    }

private:
    QQuickWindow &m_window;
    ZNTSplashManager m_splash;
    ZNTInterstitialManager m_interstitial;
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
