// A host of ads, as the tests of all formats have one.
#pragma once

#include "ads/visibilitytimer.h"
#include "support/exchangetest.h"

#include <ZNTAds/ZNTAdsSDK.h>
#include <ZNTAds/ZNTFeedDelegate.h>
#include <ZNTAds/ZNTInterstitialDelegate.h>
#include <ZNTAds/ZNTSplashDelegate.h>

namespace znt::test {

// What a delegate has heard, in order.
struct Recorder
{
    QStringList heard;
    // Runs right after one was heard.
    std::function<void(const QString &)> then;

    // Waits for the next one and takes it; nothing when there is none in time.
    QString next()
    {
        return QTest::qWaitFor([this] { return !heard.isEmpty(); }) ? heard.takeFirst() : QString();
    }

protected:
    void hear(const QString &what)
    {
        heard.append(what);
        if (const auto next = then) // a copy: it may destroy its host
            next(what);
    }
};

// The delegate of any format. Of an error it hears domain, code and description.
class Host : public QObject,
             public ZNTSplashDelegate,
             public ZNTInterstitialDelegate,
             public ZNTFeedDelegate,
             public Recorder
{
public:
    void splashAdDidLoad() override { hear("load"); }
    void splashAdDidFailed(const ZNTError &error) override { hearOf(error); }
    void splashAdDidVisible() override { hear("visible"); }
    void handleAdClick() override { hear("click"); }
    void splashAdDidCloseOtherController() override { hear("other"); }
    void splashAdDidShowFinish() override { hear("finish"); }
    void splashAdDidRender() override { hear("render"); }

    void interstitialAdDidLoad() override { hear("load"); }
    void interstitialAdDidFailed(const ZNTError &error) override { hearOf(error); }
    void interstitialAdDidVisible() override { hear("visible"); }
    void interstitialAdDidClick() override { hear("click"); }
    void interstitialAdDidCloseOtherController() override { hear("other"); }
    void interstitialAdDidAutoClose(bool timed) override { hear(timed ? "auto-closed" : "closed"); }

    void feedAdDidLoad(const QList<ZNTFeedAdDataPtr> &ads) override
    {
        hear(QString("load %1").arg(ads.size()));
    }
    void feedAdDidFail(const ZNTError &error) override { hearOf(error); }
    void feedAdDidVisible() override { hear("visible"); }
    void feedAdDidClick() override { hear("click"); }
    void feedAdDidClose() override { hear("close"); }
    void feedAdDidCloseOtherController() override { hear("other"); }

private:
    void hearOf(const ZNTError &error)
    {
        const QString code = QString::number(error.code());
        hear(QStringList{error.domain(), code, error.localizedDescription()}.join(u' '));
    }
};

// Registers with the exchange, and keeps what URLs the library then wants to have opened.
class HostApplication
{
public:
    HostApplication()
    {
        QCoreApplication::setOrganizationName("ZNTAds tests");
        ZNTAdsSDK::registerWithAppId("app", "media", "demo-secret");
        ZNTAdsSDK::setUrlOpener([this](const QUrl &url) {
            opened.append(url.toString());
            return opensDeepLinks || url.scheme().startsWith("http");
        });
    }

    QStringList opened;
    bool opensDeepLinks = true;
    RunningClock clock;
};

// Long enough for every check of what is visible to have looked.
inline void twoTicks()
{
    int ticks = 0;
    VisibilityTimer timer([&ticks](auto &) { ++ticks; });
    timer.start();
    QTRY_VERIFY(ticks >= 2);
}

} // namespace znt::test
