// An ad, through each of the managers, to where it was shown, tapped and closed.
#include "door.h"

#include "support/host.h"
#include "support/json.h"

#include <ZNTAds/ZNTFeedAdView.h>
#include <ZNTAds/ZNTFeedManager.h>
#include <ZNTAds/ZNTInterstitialAd.h>
#include <ZNTAds/ZNTInterstitialManager.h>
#include <ZNTAds/ZNTSplashAdView.h>
#include <ZNTAds/ZNTSplashManager.h>

using namespace znt::test;

namespace {

struct Stage
{
    ShownWindow window{{375, 812}};
    Host host;
    ZNTTestClock clock;

    void tap() { QTest::mouseClick(&window, Qt::LeftButton, {}, {180, 400}); }
    // Pictures are refused: what depends on them is not waited for.
    void pass() { clock.advance(120ms); }
};

void showSplash(Stage &stage, const QJsonObject &answer, int style)
{
    ZNTSplashManager manager;
    manager.setDelegate(&stage.host);
    manager.setAdStyle(style);
    manager.handleAdResponse(answer);
    manager.showSplashAdWithWindow(&stage.window);
    stage.pass();
    manager.handleAdClick();
    manager.closeSplashAd();
    stage.pass();
}

void showInterstitial(Stage &stage, const QJsonObject &answer)
{
    ZNTInterstitialManager manager;
    manager.setDelegate(&stage.host);
    manager.setShowAdController(stage.window.contentItem());
    manager.handleAdResponse(answer);
    manager.showInterstitialAd();
    stage.pass();
    stage.tap();
    stage.pass();
    if (manager.interstitialAd())
        manager.interstitialAd()->dismissWithAutoClose(true);
    stage.pass();
}

void showFeed(Stage &stage, const QJsonObject &answer)
{
    ZNTFeedManager manager;
    manager.setDelegate(&stage.host);
    manager.handleAdResponse(answer);
    std::vector<std::unique_ptr<ZNTFeedAdView>> views;
    const QList<ZNTFeedAdDataPtr> ads = manager.loadedAdDataArray();
    for (const ZNTFeedAdDataPtr &ad : ads.first(qMin<qsizetype>(3, ads.size()))) {
        auto *view = qobject_cast<ZNTFeedAdView *>(
            manager.createAdViewWithStyle(qint64(views.size()), {375, 200}));
        views.emplace_back(view);
        view->setupWithAdsData(ad);
        manager.registerAdForView(views.back().get(), ad);
        views.back()->setParentItem(stage.window.contentItem());
    }
    stage.pass();
    stage.tap();
    stage.pass();
}

} // namespace

void enter(const QByteArray &bytes)
{
    const QJsonValue value = znt::json::parse(bytes).value;
    if (!value.isObject())
        return;
    QJsonObject answer = value.toObject();
    if (!answer.contains("code")) // an ad alone
        answer = {{"code", 200}, {"data", QJsonArray{answer}}};
    static Stage stage;
    stage.host.heard.clear();
    showSplash(stage, answer, int(bytes.size() % 3));
    showInterstitial(stage, answer);
    showFeed(stage, answer);
}
