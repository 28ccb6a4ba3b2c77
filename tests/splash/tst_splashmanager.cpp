#include "support/exchangetest.h"
#include "support/recorder.h"

#include <ZNTAds/ZNTAdsManager.h>
#include <ZNTAds/ZNTAdsSDK.h>
#include <ZNTAds/ZNTSplashAdView.h>
#include <ZNTAds/ZNTSplashManager.h>

#include <QQuickWindow>

using namespace znt;

namespace {

class Host : public QObject, public ZNTSplashDelegate, public test::Recorder
{
    Q_OBJECT
    Q_INTERFACES(ZNTSplashDelegate)

public:
    void splashAdDidLoad() override { hear("load"); }
    void splashAdDidFailed(const ZNTError &error) override
    {
        errors.append(error);
        hear("failed");
    }
    void splashAdDidVisible() override { hear("visible"); }
    void handleAdClick() override { hear("click"); }
    void splashAdDidCloseOtherController() override { hear("other"); }
    void splashAdDidShowFinish() override { hear("finish"); }
    void splashAdDidRender() override { hear("render"); }

    QList<ZNTError> errors;
};

} // namespace

class TestSplashManager : public QObject
{
    Q_OBJECT

private:
    test::TrustedExchange exchange;
    QStringList opened;
    bool opens = true;

    QJsonObject answer() const { return exchange.answer(QStringLiteral("splash")); }
    QJsonObject answerWith(const char *key, const QJsonValue &value) const
    {
        QJsonObject changed = answer();
        QJsonObject ad = changed[u"data"][0].toObject();
        ad[QLatin1String(key)] = value;
        changed[u"data"] = QJsonArray{ad};
        return changed;
    }
    static QJsonObject answerTracking(const QJsonObject &trackInfo)
    {
        return {{"code", 200}, {"data", QJsonArray{QJsonObject{{"trackInfo", trackInfo}}}}};
    }
    int hits(const char *list) const
    {
        int count = 0;
        for (const sandbox::Request &request : exchange.requests())
            count += request.path.startsWith(QStringLiteral("/t/%1/").arg(QLatin1String(list)));
        return count;
    }

    struct Stage
    {
        Host host;
        QQuickWindow window;
        std::unique_ptr<ZNTSplashManager> manager = std::make_unique<ZNTSplashManager>();

        Stage()
        {
            window.resize(375, 812);
            window.show();
            manager->setDelegate(&host);
        }
        bool shows(const QJsonObject &answer)
        {
            if (!manager->handleAdResponse(answer))
                return false;
            manager->showSplashAdWithWindow(&window);
            return QTest::qWaitFor(
                [this] { return manager->splashAdView() && !manager->splashAdView()->isHidden(); });
        }
    };

private slots:
    void initTestCase()
    {
        ZNTAdsSDK::registerWithAppId(
            QStringLiteral("app"), QStringLiteral("media"), QStringLiteral("demo-secret"));
        ZNTAdsSDK::setUrlOpener([this](const QUrl &url) {
            opened.append(url.toString());
            return opens || url.scheme().startsWith(QLatin1String("http"));
        });
    }

    void init()
    {
        test::failOnWarnings();
        exchange.forgetRequests();
        ZNTAdsManager::sharedInstance()->setExposureRatio(70);
        opened.clear();
        opens = true;
    }

    void fromRequestToClose()
    {
        Stage stage;
        stage.manager->setMediaId(QStringLiteral("splash"));
        stage.host.then = [&stage](const QString &event) {
            if (event == u"load")
                stage.manager->showSplashAdWithWindow(&stage.window);
        };
        stage.manager->loadAndShowSplashAdWithWindow(&stage.window);
        QTRY_VERIFY(stage.host.heard.contains(u"render"));
        QCOMPARE(stage.manager->remainingTime(), 5);
        QTRY_VERIFY(stage.manager->hasReportedExposure());
        QCOMPARE(hits("view"), 2);

        QTest::mouseClick(&stage.window, Qt::LeftButton, {}, {180, 600});
        QTRY_VERIFY(stage.host.heard.contains(u"other"));
        QTRY_COMPARE(hits("click"), 2);
        QTRY_COMPARE(hits("dp"), 2);
        QTRY_VERIFY_WITH_TIMEOUT(stage.host.heard.contains(u"finish"), 7000);
        QCOMPARE(stage.host.heard,
            QStringList({"load", "visible", "render", "click", "other", "finish"}));
        QVERIFY(!stage.manager->splashAdView());
        QVERIFY(!stage.manager->adData());
        QCOMPARE(exchange.hits(QStringLiteral("/s/negfb.do")), 0);
        QCOMPARE(opened.size(), 1);
    }

    void failures()
    {
        Stage stage;
        const auto failedWith = [&stage](int code, const char *description) {
            return QTest::qWaitFor([&] { return !stage.host.errors.isEmpty(); })
                && stage.host.errors.takeFirst()
                == ZNTError(
                    QStringLiteral("ZNTSplashManager"), code, QString::fromUtf8(description));
        };
        stage.manager->loadAndShowSplashAdWithWindow(&stage.window);
        QVERIFY(failedWith(-1001, "mediaId不能为空"));
        QVERIFY(exchange.requests(QStringLiteral("/s/req2.do")).isEmpty());
        stage.manager->showSplashAdWithWindow(&stage.window);
        QVERIFY(failedWith(-1003, "没有可用的广告数据"));

        exchange.setAnswer(QLatin1String(""), R"({"code": 200, "data": []})");
        stage.manager->setMediaId(QLatin1String("")); // sent as it is
        stage.manager->loadAndShowSplashAdWithWindow(&stage.window);
        QVERIFY(failedWith(-1002, "广告数据解析失败"));
        QVERIFY(stage.manager->handleAdResponse(answerWith("images", QJsonArray())));
        stage.manager->showSplashAdWithWindow(&stage.window);
        QVERIFY(failedWith(-1004, "广告图片数据为空"));
        QVERIFY(!stage.host.heard.contains(u"visible"));
    }

    void trackingListsOfAllForms()
    {
        ZNTSplashManager manager;
        const QJsonArray list{"a", "b"};
        QVERIFY(manager.handleAdResponse(
            answerTracking({{"viewUrl3rd", "v"}, {"clickUrl3rd", list}, {"dpEventUrls", "d"}})));
        QCOMPARE(manager.viewUrl3rd(), QJsonArray{"v"});
        QCOMPARE(manager.clickUrl3rd(), QJsonValue(QJsonArray{list})); // a list in a list
        QCOMPARE(manager.dpEventUrls(), QJsonArray{"d"});
        QVERIFY(manager.handleAdResponse(
            answerTracking({{"viewUrl3rd", 5}, {"clickUrl3rd", "x"}, {"dpEventUrls", 1}})));
        QCOMPARE(manager.clickUrl3rd(), QJsonValue(QJsonArray{list})); // left as it was
        QVERIFY(
            manager.handleAdResponse(answerTracking({{"viewUrl3rd", list}, {"clickUrl3rd", "x"}})));
        QCOMPARE(manager.clickUrl3rd(), QJsonValue("x")); // no list at all
        manager.handleAdClick();                          // which fires nothing
        QVERIFY(manager.handleAdResponse(answerTracking({{"viewUrl3rd", "v"}})));
        QCOMPARE(manager.clickUrl3rd(), QJsonValue(QJsonArray()));
    }

    void skipSendsFeedback()
    {
        for (const QJsonValue &adId : {QJsonValue("ad-7"), QJsonValue(""), QJsonValue(7)}) {
            exchange.forgetRequests();
            Stage stage;
            QVERIFY(stage.shows(answerWith("adId", adId)));
            QQuickItem *skip = stage.manager->splashAdView()->skipButton();
            QTest::mouseClick(
                &stage.window, Qt::LeftButton, {}, skip->mapToScene({15, 15}).toPoint());
            QTRY_VERIFY(stage.host.heard.contains(u"finish"));
            QVERIFY(!stage.host.heard.contains(u"click"));
            const int feedbacks = adId == QJsonValue("ad-7") ? 1 : 0;
            QTRY_COMPARE(exchange.requests(QStringLiteral("/s/negfb.do")).size(), feedbacks);
            if (feedbacks)
                QCOMPARE(
                    exchange.requests(QStringLiteral("/s/negfb.do")).constLast().json()[u"bizId"],
                    adId);
        }
    }

    // What the configured ratio lets pass may still be refused for the fixed share, for good.
    void partlyVisible()
    {
        ZNTAdsManager::sharedInstance()->setExposureRatio(50);
        Stage stage;
        stage.window.contentItem()->setOpacity(0);
        QVERIFY(stage.shows(answer()));
        QTest::qWait(250);
        stage.manager->splashAdView()->setX(0.4 * stage.window.width());
        stage.window.contentItem()->setOpacity(1);
        QTest::qWait(250);
        stage.manager->splashAdView()->setX(0);
        QTest::qWait(250);
        QCOMPARE(stage.host.heard, QStringList{"visible"});
        QCOMPARE(hits("view"), 0);
    }

    void hiddenForAWhile()
    {
        Stage stage;
        stage.window.contentItem()->setOpacity(0);
        QVERIFY(stage.shows(answer()));
        QTest::qWait(250);
        QCOMPARE(stage.host.heard, QStringList{"visible"});
        stage.window.contentItem()->setOpacity(1);
        QTRY_VERIFY_WITH_TIMEOUT(stage.host.heard.contains(u"render"), 400);
    }

    void bottomViewAndResize()
    {
        Stage stage;
        QQuickItem bottom;
        bottom.setHeight(100);
        stage.manager->setBottomView(&bottom);
        QVERIFY(stage.shows(answer()));
        const QQuickItem *view = stage.manager->splashAdView();
        QCOMPARE(view->size(), QSizeF(375, 712));
        QCOMPARE(QRectF(bottom.position(), bottom.size()), QRectF(0, 712, 375, 100));
        stage.window.resize(812, 375);
        QTRY_COMPARE(view->size(), QSizeF(812, 275));
        QCOMPARE(bottom.y(), 275);
        bottom.setOpacity(0.5);
        stage.manager->closeSplashAd();
        stage.manager->closeSplashAd();
        stage.manager->splashAdView()->handleAdClick(); // a shake while it fades
        QTRY_VERIFY(stage.host.heard.contains(u"finish"));
        QVERIFY(!bottom.parentItem());
        QCOMPARE(bottom.opacity(), 0.5);
        QVERIFY(!stage.host.heard.contains(u"click"));
        QCOMPARE(stage.host.heard.count(u"finish"), 1);
    }

    void clickTargets()
    {
        const QString app = QStringLiteral("zntdemo://x"),
                      web = QStringLiteral("https://localhost/x");
        const auto check = [this](const QString &deepLink, const QString &webPage, bool succeeds,
                               const QStringList &expected) {
            opened.clear();
            opens = succeeds;
            Stage stage;
            stage.manager->handleAdResponse(
                answerWith("urlInfo", QJsonObject{{"deepLinkUrl", deepLink}, {"h5url", webPage}}));
            stage.manager->handleAdClick();
            QTest::qWait(20);
            QCOMPARE(opened, expected);
            QCOMPARE(stage.host.heard.count(u"other"), expected.isEmpty() ? 0 : 1);
        };
        check(app, web, true, {app});
        check(app, web, false, {app, web});
        check(app, {}, false, {app});
        check({}, web, true, {web});
        check({}, {}, true, {});
        for (const char *local : {"file:///etc/passwd", "FILE:///etc/passwd", "qrc:/x",
                 "/etc/passwd", "//host/share", "C:/x", "javascript:alert(1)", "data:text/html,x"})
            check(QString::fromLatin1(local), web, true, {web});
    }

    void whoDiesInBetweenIsNotCalled()
    {
        for (const char *moment : {"visible", "click", "render", "finish"}) {
            Stage stage;
            stage.host.then = [&](const QString &event) {
                if (event == QLatin1String(moment))
                    stage.manager.reset();
            };
            stage.manager->handleAdResponse(answer());
            stage.manager->showSplashAdWithWindow(&stage.window);
            if (stage.manager)
                stage.manager->handleAdClick();
            QTRY_VERIFY_WITH_TIMEOUT(!stage.manager, 7000);
        }

        {
            Stage stage;
            QVERIFY(stage.shows(answer()));
            const QPointer<QQuickItem> view = stage.manager->splashAdView();
            stage.manager.reset(); // the ad stays, and follows the window by itself
            stage.window.resize(812, 375);
            QTRY_COMPARE(view->size(), QSizeF(812, 375));
            QTest::keyClick(&stage.window, Qt::Key_Escape);
            QTRY_VERIFY(!view);
        }

        Stage stage;
        auto window = std::make_unique<QQuickWindow>();
        window->resize(100, 100);
        window->show();
        stage.manager->handleAdResponse(answer());
        stage.manager->showSplashAdWithWindow(window.get());
        window.reset();
        QVERIFY(!stage.manager->splashAdView());
        stage.manager->closeSplashAd(); // the host still hears of the end
        QTRY_VERIFY(stage.host.heard.contains(u"finish"));

        auto host = std::make_unique<Host>();
        stage.manager->setDelegate(host.get());
        stage.manager->setMediaId(QStringLiteral("splash"));
        stage.manager->loadAndShowSplashAdWithWindow(nullptr);
        host.reset();
        QVERIFY(exchange.waitForRequests(QStringLiteral("/s/req2.do"), 1));
        stage.manager->showSplashAdWithWindow(nullptr);
        stage.manager->loadAndShowSplashAdWithWindow(nullptr);
        stage.manager.reset();
        QTest::qWait(100);
    }
};

QTEST_MAIN(TestSplashManager)
#include "tst_splashmanager.moc"
