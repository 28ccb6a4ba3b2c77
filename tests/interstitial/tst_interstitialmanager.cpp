#include "support/loglines.h"
#include "support/screenwindow.h"

#include <ZNTAds/ZNTAdsManager.h>
#include <ZNTAds/ZNTInterstitialAd.h>
#include <ZNTAds/ZNTInterstitialManager.h>

using namespace znt::test;

// Unlike the ads that come by request, one that a host hands over may carry "ad_id".
const QByteArray fullAd = R"({"code": 200, "data": [{"ad_id": "i-1", "trackInfo": {
    "viewUrl3rd": ["${BASE}/t/view/1", "", "${BASE}/t/view/2"],
    "clickUrl3rd": ["${BASE}/t/click"], "dpEventUrls": "${BASE}/t/dp"},
    "urlInfo": {"deepLinkUrl": "zntdemo:x", "h5url": "${BASE}/landing/x"}}]})";

class TestInterstitialManager : public QObject
{
    Q_OBJECT

private:
    struct Stage
    {
        Stage()
        {
            manager.setDelegate(&host);
            manager.setShowAdController(window.screen);
        }

        ScreenWindow window;
        Host host;
        ZNTInterstitialManager manager;
    };

    TrustedExchange exchange;
    HostApplication application;
    std::unique_ptr<LogLines> log;

    int hits(const char *path) const { return exchange.hits(path); }

    // What was logged of the ad since the last look, with the exchange's address left out.
    QStringList lines()
    {
        static const QRegularExpression others(
            "^(?!.*(Error report|CtrlArg|Config|control arg|ads response))");
        return log->take().filter(others).replaceInStrings(exchange.at({}), "");
    }

private slots:
    void initTestCase()
    {
        QVERIFY(exchange.waitForRequests("/conf.do", 1));
        ZNTAdsManager::sharedInstance()->setIsLogEnabled(false); // the manager's lines alone
    }

    void init()
    {
        failOnWarnings();
        exchange.forgetRequests();
        application.clock.setSpeed(1);
        application.opened.clear();
        log = std::make_unique<LogLines>();
    }

    void loads()
    {
        Stage stage;
        stage.manager.setMediaId("interstitial");
        stage.manager.loadAdData();
        stage.manager.loadAdData(); // ignored
        QVERIFY(stage.manager.isLoading());
        QTRY_COMPARE(stage.host.heard, QStringList({"load"}));
        QVERIFY(!stage.manager.isLoading());
        QCOMPARE(hits("/s/req2.do"), 1);
        QCOMPARE(lines(),
            QStringList({"INFO Initialized ZNTInterstitialManager with default values",
                "INFO Starting to load interstitial ad data",
                "WARNING Ad data is already loading, ignoring request",
                "INFO Processing tracking information", "INFO Processed 2 view URLs",
                "INFO Processed click URLs", "INFO Processed 2 dpEvent URLs",
                "INFO Successfully loaded interstitial ad data"}));
        // What a new answer lacks stays.
        QVERIFY(stage.manager.handleAdResponse(json(R"({"code": 200, "data": [{}]})")));
        QCOMPARE(stage.manager.dpEventUrls().size(), 2);
    }

    void tellsWhatFails()
    {
        Stage stage;
        exchange.setAnswer("none", R"({"code": 200, "data": []})");
        exchange.setAnswer("", R"({"code": 200, "data": []})"); // an empty id is sent on
        for (const char *position : {"", "none", "dropped"}) {
            stage.manager.setMediaId(position);
            stage.manager.loadAdData();
            const bool isAnswered = position != QString("dropped");
            QVERIFY(stage.host.next().startsWith(
                isAnswered ? "ZNTInterstitialManager -1002 广告数据解析失败" : "QNetworkReply"));
        }
        stage.manager.showInterstitialAd(); // no ad
        QVERIFY(stage.manager.handleAdResponse(exchange.parsed(fullAd)));
        delete stage.window.screen;
        stage.manager.showInterstitialAd(); // no screen
        QVERIFY(stage.host.heard.isEmpty());
        const QString missing = "ZNTInterstitialManager -1003 没有可用的广告数据或未设置展示控制器";
        QTRY_COMPARE(stage.host.heard, QStringList({missing, missing}));
    }

    void goesTheWholeWay()
    {
        Stage stage;
        const QStringList &heard = stage.host.heard;
        stage.window.screen->setOpacity(0);
        stage.manager.setAutoCloseTime(2.5);
        QVERIFY(stage.manager.handleAdResponse(exchange.parsed(fullAd)));
        lines();
        stage.manager.showInterstitialAd();
        QTRY_COMPARE(heard, QStringList({"visible"}));
        twoTicks();
        QCOMPARE(hits("/t/view/1"), 0);
        stage.window.screen->setOpacity(1);
        QTRY_VERIFY(stage.manager.hasReportedExposure());
        const QStringList written = lines();
        QVERIFY(written.contains("INFO Exposure report successful[/t/view/2]"));
        QVERIFY(written.contains("INFO Setting auto-close timer for 2.500000 seconds"));
        QCOMPARE(hits("/t/view/1") + hits("/t/view/2"), 2);

        application.opensDeepLinks = false;
        stage.window.tap("adImageView");
        QTRY_COMPARE(heard, QStringList({"visible", "click", "other"}));
        QCOMPARE(application.opened, QStringList({"zntdemo:x", exchange.at("/landing/x")}));
        QTRY_VERIFY(hits("/t/dp") == 1 && hits("/t/click") == 1);
        QVERIFY(lines().contains("INFO Click URLs - h5url: /landing/x, deepLinkUrl: zntdemo:x"));

        application.clock.setSpeed(20);
        stage.manager.interstitialAd()->dismissWithAutoClose(false);
        QTRY_COMPARE(heard.last(), "closed");
        QTRY_COMPARE(heard.last(), "auto-closed"); // and once more
        application.clock.setSpeed(1);
        QTRY_COMPARE(hits("/s/negfb.do"), 2);
        QCOMPARE(exchange.requests("/s/negfb.do").first().json()[u"bizId"], "i-1");

        // Once in a manager's life.
        stage.manager.showInterstitialAd();
        QTRY_COMPARE(heard.last(), "visible");
        twoTicks();
        QCOMPARE(hits("/t/view/1"), 1);
    }

    void countsNothingThatIsOutOfSight()
    {
        Stage stage;
        stage.window.screen->setX(200); // a good half of the picture is left
        QVERIFY(stage.manager.handleAdResponse(exchange.parsed(fullAd)));
        stage.manager.showInterstitialAd();
        stage.manager.showInterstitialAd(); // in the first one's place
        QTRY_COMPARE(stage.host.heard, QStringList({"visible"}));
        QCOMPARE(stage.window.screen->childItems().size(), 1);
        twoTicks();
        QCOMPARE(hits("/t/view/1"), 0);
        stage.manager.interstitialAd()->dismissWithAutoClose(false);
        stage.window.screen->setX(0); // it counts as long as it can be seen
        QTRY_COMPARE(stage.host.heard, QStringList({"visible", "closed"}));
        QTRY_COMPARE(hits("/t/view/1"), 1);
    }

    void closesByItselfWhenTold()
    {
        using Limits = std::numeric_limits<double>;
        enum { Never, Told, Done };
        const std::pair<double, int> times[] = {{0, Never}, {-1, Never},
            {Limits::quiet_NaN(), Never}, {Limits::denorm_min(), Done}, {2147484, Told},
            {Limits::max(), Told}, {Limits::infinity(), Told}};
        for (const auto &[time, outcome] : times) {
            Stage stage;
            stage.manager.setAutoCloseTime(time);
            QVERIFY(stage.manager.handleAdResponse(exchange.parsed(fullAd)));
            stage.manager.showInterstitialAd();
            QTRY_COMPARE(
                stage.host.heard, QStringList(outcome == Done ? "auto-closed" : "visible"));
            QCOMPARE(lines().filter("Setting auto-close timer").isEmpty(), outcome == Never);
        }
    }

    void mayBeDestroyedByEveryCall()
    {
        application.clock.setSpeed(5);
        for (const QString event : {"load", "visible", "click", "other", "auto-closed", "-1003"}) {
            ScreenWindow window;
            Host host;
            auto manager = std::make_unique<ZNTInterstitialManager>();
            manager->setDelegate(&host);
            manager->setMediaId("interstitial");
            manager->setAutoCloseTime(1);
            host.then = [&](const QString &heard) {
                if (heard.contains(event))
                    manager.reset();
                else if (heard == "load")
                    manager->showInterstitialAd();
                else if (heard.contains("-1003"))
                    manager->setShowAdController(window.screen), manager->loadAdData();
                else if (heard == "visible")
                    window.tap("adImageView");
            };
            manager->showInterstitialAd(); // fails
            QTRY_VERIFY2(!manager, qPrintable(event));
            const QStringList heard = host.heard;
            QVERIFY(!window.subview("containerView"));
            application.clock.advance(400ms); // whatever still runs
            QCOMPARE(host.heard, heard);
            QVERIFY(window.screen->childItems().isEmpty());
        }
    }
};

QTEST_MAIN(TestInterstitialManager)
#include "tst_interstitialmanager.moc"
