// A host in C++: cpphost HTTPS_URL HTTP_URL CA_FILE. It ends when a feed ad has been seen.
#include "host.h"
#include "sandbox.h"

#include <ZNTAds/ZNTAdsVersion.h>
#include <ZNTAds/ZNTFeedManager.h>
#include <ZNTAds/ZNTNativeAdRenderProtocol.h>

#include <QQuickItem>
#include <QQuickWindow>

#if ZNTADS_VERSION < QT_VERSION_CHECK(1, 1, 0)
#error "an older library"
#endif

class Host : public QObject, public ZNTFeedDelegate
{
    Q_OBJECT
    Q_INTERFACES(ZNTFeedDelegate)

public:
    Host()
    {
        m_window.resize(375, 812);
        m_window.show();
        m_feed.setMediaId(QStringLiteral("feed"));
        m_feed.setDelegate(this);
        m_feed.loadAdData();
    }

    void feedAdDidLoad(const QList<ZNTFeedAdDataPtr> &ads) override
    {
        const ZNTFeedAdDataPtr ad = ads.constFirst();
        QQuickItem *view = m_feed.createAdViewWithStyle(ad->style(), {375, 200});
        qobject_cast<ZNTNativeAdRenderProtocol *>(view)->setupWithAdsData(ad);
        m_feed.registerAdForView(view, ad);
        view->setParentItem(m_window.contentItem());
    }
    void feedAdDidFail(const ZNTError &error) override
    {
        qWarning("No ad: %s", qUtf8Printable(error.localizedDescription()));
        finish(false);
    }
    void feedAdDidVisible() override
    {
#ifdef ZNTADS_STATIC
        finish(true);
#else
        finish(!hasLoaded("libQt6Multimedia.so") && !hasLoaded("libQt6Sensors.so"));
#endif
    }

private:
    QQuickWindow m_window;
    ZNTFeedManager m_feed;
};

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    useSandbox(application.arguments());
    ZNTAdsSDK::registerWithAppId(
        QStringLiteral("demo-app"), QStringLiteral("demo-media"), QStringLiteral("demo-secret"));
    if (ZNTAdsSDK::version() != QLatin1String(ZNTADS_VERSION_STR))
        return 3;
    const Host host;
    return runHost();
}

#include "cpphost.moc"
