#include "interstitial/interstitialhost.h"
#include "support/exchangetest.h"
#include "support/loglines.h"

#include <ZNTAds/ZNTAdsManager.h>
#include <ZNTAds/ZNTAdsSDK.h>
#include <ZNTAds/ZNTInterstitialAd.h>
#include <ZNTAds/ZNTInterstitialManager.h>

#include <limits>

using namespace znt;
using test::Host;
using test::ScreenWindow;

namespace {

// Unlike the ads that come by request, one that a host hands over may carry "ad_id".
const QByteArray fullAd = R"({"code": 200, "data": [{"ad_id": "i-1", "trackInfo": {
    "viewUrl3rd": ["${BASE}/t/view/1", "", "${BASE}/t/view/2"],
    "clickUrl3rd": ["${BASE}/t/click"], "dpEventUrls": "${BASE}/t/dp"},
    "urlInfo": {"deepLinkUrl": "zntdemo:x", "h5url": "${BASE}/landing/x"}}]})";

} // namespace

class TestInterstitialManager : public QObject
{
    Q_OBJECT

private:
    test::TrustedExchange exchange;
    std::unique_ptr<test::LogLines> log;
    QStringList opened;
    bool opens = true;

    int hits(const char *path) const { return exchange.hits(QLatin1String(path)); }

    // What was logged of the ad since the last look, with the exchange's address left out.
    QStringList lines()
    {
        static const QRegularExpression others(
            QStringLiteral("^(?!.*(Error report|CtrlArg|Config|control arg|ads response))"));
        return log->take().filter(others).replaceInStrings(
            exchange.httpsUrl().toString(), QString());
    }

private slots:
    void initTestCase()
    {
        QCoreApplication::setOrganizationName(QStringLiteral("ZNTAds tests"));
        ZNTAdsSDK::registerWithAppId(
            QStringLiteral("app"), QStringLiteral("media"), QStringLiteral("demo-secret"));
        QVERIFY(exchange.waitForRequests(QStringLiteral("/conf.do"), 1));
        ZNTAdsManager::sharedInstance()->setIsLogEnabled(false); // the manager's lines alone
        ZNTAdsSDK::setUrlOpener([this](const QUrl &url) {
            opened.append(url.scheme());
            return opens;
        });
    }

    void init()
    {
        test::failOnWarnings();
        exchange.forgetRequests();
        opened.clear();
        opens = true;
        log = std::make_unique<test::LogLines>();
    }

    void loads()
    {
        Host host;
        ZNTInterstitialManager manager;
        manager.setDelegate(&host);
        manager.setMediaId(QStringLiteral("interstitial"));
        manager.loadAdData();
        manager.loadAdData(); // ignored
        QVERIFY(manager.isLoading());
        QTRY_COMPARE(host.heard, QStringList({"load"}));
        QVERIFY(!manager.isLoading());
        QCOMPARE(hits("/s/req2.do"), 1);
        QCOMPARE(lines(),
            QStringList({"INFO Initialized ZNTInterstitialManager with default values",
                "INFO Starting to load interstitial ad data",
                "WARNING Ad data is already loading, ignoring request",
                "INFO Processing tracking information", "INFO Processed 2 view URLs",
                "INFO Processed click URLs", "INFO Processed 2 dpEvent URLs",
                "INFO Successfully loaded interstitial ad data"}));

        // What a new answer lacks stays.
        QVERIFY(manager.handleAdResponse(
            exchange.parsed(R"({"code": "200", "data": [{"trackInfo": {"viewUrl3rd": "v",
                "clickUrl3rd": ["c"]}}]})")));
        QCOMPARE(manager.viewUrl3rd(), QJsonArray{"v"});
        QCOMPARE(manager.clickUrl3rd(), QJsonArray{QJsonArray{"c"}});
        QCOMPARE(manager.dpEventUrls().size(), 2);
    }

    void tellsWhatFails()
    {
        Host host;
        ZNTInterstitialManager manager;
        manager.setDelegate(&host);
        exchange.setAnswer(QStringLiteral("none"), R"({"code": 200, "data": []})");
        exchange.setAnswer(QString(), R"({"code": 200, "data": []})"); // an empty id is sent on
        for (const QString &position : {QString(), QStringLiteral("none")}) {
            manager.setMediaId(position);
            manager.loadAdData();
            QTRY_COMPARE(host.heard.size(), 1);
            QCOMPARE(host.heard.takeFirst(), QStringLiteral("failed ZNTInterstitialManager -1002"));
        }
        manager.setMediaId(QStringLiteral("dropped"));
        manager.loadAdData();
        QTRY_COMPARE(host.heard.size(), 1);
        QVERIFY(host.heard.takeFirst().startsWith(QStringLiteral("failed QNetworkReply")));

        for (const char *answer : {"1", "[]"})
            QVERIFY(!manager.handleAdResponse(QJsonDocument::fromJson(answer)[0]));
        ScreenWindow window;
        manager.setShowAdController(window.screen);
        manager.showInterstitialAd(); // no ad
        QVERIFY(manager.handleAdResponse(exchange.parsed(fullAd)));
        delete window.screen;
        manager.showInterstitialAd(); // no screen
        QVERIFY(host.heard.isEmpty());
        QTRY_COMPARE(host.heard,
            QStringList(
                {"failed ZNTInterstitialManager -1003", "failed ZNTInterstitialManager -1003"}));
    }

    void goesTheWholeWay()
    {
        ScreenWindow window;
        window.screen->setOpacity(0);
        Host host;
        ZNTInterstitialManager manager;
        manager.setDelegate(&host);
        manager.setShowAdController(window.screen);
        manager.setAutoCloseTime(2.5);
        QVERIFY(manager.handleAdResponse(exchange.parsed(fullAd)));
        lines();
        manager.showInterstitialAd();
        QTRY_COMPARE(host.heard, QStringList({"visible"}));
        QTest::qWait(150); // more than one look
        QCOMPARE(hits("/t/view/1"), 0);
        window.screen->setOpacity(1);
        QTRY_VERIFY(manager.hasReportedExposure());
        const QStringList written = lines();
        QVERIFY(written.contains("INFO Exposure report successful[/t/view/2]"));
        QVERIFY(written.contains("INFO Setting auto-close timer for 2.500000 seconds"));
        QCOMPARE(hits("/t/view/1") + hits("/t/view/2"), 2);

        opens = false;
        window.tap("adImageView");
        QTRY_COMPARE(host.heard, QStringList({"visible", "click", "other"}));
        QCOMPARE(opened, QStringList({"zntdemo", "https"}));
        QVERIFY(exchange.waitForRequests(QStringLiteral("/t/dp"), 1));
        QVERIFY(exchange.waitForRequests(QStringLiteral("/t/click"), 1));
        QVERIFY(lines().contains("INFO Click URLs - h5url: /landing/x, deepLinkUrl: zntdemo:x"));

        manager.interstitialAd()->dismissWithAutoClose(false);
        QTRY_COMPARE(host.heard.last(), QStringLiteral("closed"));
        QTRY_COMPARE(host.heard.last(), QStringLiteral("auto-closed")); // and once more
        QTRY_COMPARE(hits("/s/negfb.do"), 2);
        QCOMPARE(exchange.requests(QStringLiteral("/s/negfb.do")).first().json().value(u"bizId"),
            QJsonValue("i-1"));

        // Once in a manager's life.
        manager.showInterstitialAd();
        QTRY_COMPARE(host.heard.last(), QStringLiteral("visible"));
        QTest::qWait(150);
        QCOMPARE(hits("/t/view/1"), 1);
    }

    void countsNothingThatIsOutOfSight()
    {
        ScreenWindow window;
        window.screen->setX(200); // a good half of the picture is left
        Host host;
        ZNTInterstitialManager manager;
        manager.setDelegate(&host);
        manager.setShowAdController(window.screen);
        QVERIFY(manager.handleAdResponse(exchange.parsed(fullAd)));
        manager.showInterstitialAd();
        manager.showInterstitialAd(); // in the first one's place
        QTRY_COMPARE(host.heard, QStringList({"visible"}));
        QCOMPARE(window.screen->childItems().size(), 1);
        QTest::qWait(150);
        QCOMPARE(hits("/t/view/1"), 0);
        manager.interstitialAd()->dismissWithAutoClose(false);
        window.screen->setX(0); // too late
        QTRY_COMPARE(host.heard, QStringList({"visible", "closed"}));
        QCOMPARE(hits("/t/view/1"), 0);
    }

    void closesByItselfWhenTold()
    {
        using Limits = std::numeric_limits<double>;
        enum { Never, Told, Done };
        const QList<std::pair<double, int>> times{{0, Never}, {-1, Never},
            {Limits::quiet_NaN(), Never}, {Limits::denorm_min(), Done}, {2147484, Told},
            {Limits::max(), Told}, {Limits::infinity(), Told}};
        QQuickItem nowhere; // in no window
        for (const auto &[time, outcome] : times) {
            Host host;
            ZNTInterstitialManager manager;
            manager.setDelegate(&host);
            manager.setShowAdController(&nowhere);
            manager.setAutoCloseTime(time);
            QVERIFY(manager.handleAdResponse(exchange.parsed(fullAd)));
            manager.showInterstitialAd();
            QTRY_COMPARE(host.heard, QStringList(outcome == Done ? "auto-closed" : "visible"));
            const QStringList told = lines().filter(QStringLiteral("Setting auto-close timer"));
            QCOMPARE(told.isEmpty(), outcome == Never);
        }
    }

    void mayBeDestroyedByEveryCall_data()
    {
        QTest::addColumn<QString>("event");
        for (const char *event : {"load", "visible", "click", "other", "auto-closed"})
            QTest::newRow(event) << QString::fromLatin1(event);
        QTest::newRow("failed") << "failed ZNTInterstitialManager -1003";
    }

    void mayBeDestroyedByEveryCall()
    {
        QFETCH(QString, event);
        ScreenWindow window;
        Host host;
        auto manager = std::make_unique<ZNTInterstitialManager>();
        manager->setDelegate(&host);
        manager->setMediaId(QStringLiteral("interstitial"));
        manager->setAutoCloseTime(1);
        host.then = [&](const QString &heard) {
            if (heard == event)
                manager.reset();
            else if (heard == QStringLiteral("load"))
                manager->showInterstitialAd();
            else if (heard.startsWith(QStringLiteral("failed")))
                manager->setShowAdController(window.screen), manager->loadAdData();
            else if (heard == QStringLiteral("visible"))
                window.tap("adImageView");
        };
        manager->showInterstitialAd(); // fails
        QTRY_VERIFY(!manager);
        const QStringList heard = host.heard;
        QVERIFY(!window.subview("containerView"));
        QTest::qWait(400); // whatever still runs
        QCOMPARE(host.heard, heard);
        QVERIFY(window.screen->childItems().isEmpty());
    }
};

QTEST_MAIN(TestInterstitialManager)
#include "tst_interstitialmanager.moc"
