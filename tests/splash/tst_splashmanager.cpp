#include "support/host.h"
#include "support/loglines.h"
#include "support/pictures.h"

#include <ZNTAds/ZNTAdsManager.h>
#include <ZNTAds/ZNTSplashAdView.h>
#include <ZNTAds/ZNTSplashManager.h>

using namespace znt::test;

class TestSplashManager : public QObject
{
    Q_OBJECT

private:
    struct Stage
    {
        Stage() { manager->setDelegate(&host); }
        bool shows(const QJsonObject &answer)
        {
            if (!manager->handleAdResponse(answer))
                return false;
            manager->showSplashAdWithWindow(&window);
            const auto isShown = [this] { return !manager->splashAdView()->isHidden(); };
            return manager->splashAdView() && QTest::qWaitFor(isShown);
        }

        Host host;
        ShownWindow window{{375, 812}};
        std::unique_ptr<ZNTSplashManager> manager = std::make_unique<ZNTSplashManager>();
    };

    TrustedExchange exchange;
    HostApplication application;

    QJsonObject answer() const { return exchange.answer("splash"); }
    QJsonObject answerWith(const QString &key, const QJsonValue &value) const
    {
        QJsonObject changed = answer();
        QJsonObject ad = changed[u"data"][0].toObject();
        ad[key] = value;
        changed[u"data"] = QJsonArray{ad};
        return changed;
    }
    int hits(const QString &list) const
    {
        return exchange.hits("/t/" + list + "/splash-1/exchange")
            + exchange.hits("/t/" + list + "/splash-1/advertiser");
    }

private slots:
    void init()
    {
        failOnWarnings();
        exchange.forgetRequests();
        application.clock.setSpeed(1);
        ZNTAdsManager::sharedInstance()->setExposureRatio(70);
        application.opened.clear();
        application.opensDeepLinks = true;
    }

    void fromRequestToClose()
    {
        Stage stage;
        stage.manager->setMediaId("splash");
        stage.host.then = [&stage](const QString &event) {
            if (event == "load")
                stage.manager->showSplashAdWithWindow(&stage.window);
        };
        stage.manager->loadAndShowSplashAdWithWindow(&stage.window);
        QTRY_VERIFY(stage.host.heard.contains("render"));
        QCOMPARE(stage.manager->remainingTime(), 5);
        QTRY_VERIFY(stage.manager->hasReportedExposure());
        QCOMPARE(hits("view"), 2);

        QTest::mouseClick(&stage.window, Qt::LeftButton, {}, {180, 600});
        QTRY_VERIFY(stage.host.heard.contains("other"));
        QTRY_COMPARE(hits("click") + hits("dp"), 4);
        application.clock.advance(5s);
        QTRY_VERIFY(stage.host.heard.contains("finish"));
        QCOMPARE(stage.host.heard,
            QStringList({"load", "visible", "render", "click", "other", "finish"}));
        QVERIFY(!stage.manager->splashAdView() && !stage.manager->adData());
        QCOMPARE(exchange.hits("/s/negfb.do"), 0);
        QCOMPARE(application.opened.size(), 1);

        stage.manager->handleAdClick(); // of the ad that has gone: its deep-link events are left
        QTRY_COMPARE(hits("dp"), 4);
        QCOMPARE(hits("click"), 2);
    }

    void failures()
    {
        Stage stage;
        stage.manager->loadAndShowSplashAdWithWindow(&stage.window);
        QCOMPARE(stage.host.next(), "ZNTSplashManager -1001 mediaId不能为空");
        QVERIFY(exchange.requests("/s/req2.do").isEmpty());
        stage.manager->showSplashAdWithWindow(&stage.window);
        QCOMPARE(stage.host.next(), "ZNTSplashManager -1003 没有可用的广告数据");

        exchange.setAnswer("", R"({"code": 200, "data": []})");
        stage.manager->setMediaId(""); // sent as it is
        stage.manager->loadAndShowSplashAdWithWindow(&stage.window);
        QCOMPARE(stage.host.next(), "ZNTSplashManager -1002 广告数据解析失败");
        QVERIFY(stage.manager->handleAdResponse(answerWith("images", QJsonArray())));
        stage.manager->showSplashAdWithWindow(&stage.window);
        QCOMPARE(stage.host.next(), "ZNTSplashManager -1004 广告图片数据为空");
        QVERIFY(stage.host.heard.isEmpty());
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
            QTRY_VERIFY(stage.host.heard.contains("finish"));
            QVERIFY(!stage.host.heard.contains("click"));
            const bool hasId = adId == QJsonValue("ad-7");
            QTRY_COMPARE(exchange.hits("/s/negfb.do"), hasId ? 1 : 0);
            QVERIFY(!hasId || exchange.requests("/s/negfb.do")[0].json()[u"bizId"] == adId);
        }
    }

    // What the configured ratio lets pass may still be refused for the fixed share, for good.
    void partlyVisible()
    {
        ZNTAdsManager::sharedInstance()->setExposureRatio(50);
        Stage stage;
        stage.window.contentItem()->setOpacity(0);
        QVERIFY(stage.shows(answer()));
        twoTicks();
        stage.manager->splashAdView()->setX(0.4 * stage.window.width());
        stage.window.contentItem()->setOpacity(1);
        twoTicks();
        stage.manager->splashAdView()->setX(0);
        twoTicks();
        QCOMPARE(stage.host.heard, QStringList{"visible"});
        QCOMPARE(hits("view"), 0);
    }

    void aLoadThatFailsEndsTheWatch()
    {
        Stage stage;
        stage.window.contentItem()->setOpacity(0);
        QVERIFY(stage.shows(answer()));
        stage.manager->loadAndShowSplashAdWithWindow(&stage.window); // without an ad position
        stage.window.contentItem()->setOpacity(1);
        twoTicks();
        QVERIFY(!stage.host.heard.contains("render"));
        QVERIFY(stage.manager->splashAdView() && stage.manager->remainingTime() > 0);
    }

    void mayBeClosedAsItAppears()
    {
        LogLines log;
        for (const bool destroys : {false, true}) {
            Stage stage;
            stage.host.then = [&](const QString &event) {
                if (event != "visible")
                    return;
                stage.manager->closeSplashAd();
                if (destroys)
                    stage.manager.reset();
            };
            stage.manager->handleAdResponse(answer());
            stage.manager->showSplashAdWithWindow(&stage.window);
            QVERIFY(destroys || stage.manager->remainingTime() == 0);
            QTRY_COMPARE(stage.window.contentItem()->childItems().size(), 0);
            twoTicks();
            QCOMPARE(stage.host.heard,
                destroys ? QStringList{"visible"} : QStringList({"visible", "finish"}));
        }
        QVERIFY(log.take().filter("countdown").isEmpty());
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
        QQuickItem next(stage.window.contentItem());
        stage.manager->setBottomView(&next);
        stage.manager->closeSplashAd();
        stage.manager->closeSplashAd();
        stage.manager->splashAdView()->handleAdClick(); // a shake while it fades
        QTRY_VERIFY(stage.host.heard.contains("finish"));
        QVERIFY(!bottom.parentItem());
        QCOMPARE(bottom.opacity(), 0.5);
        QVERIFY(next.parentItem() && next.opacity() == 1 && !stage.manager->bottomView());
        QVERIFY(!stage.host.heard.contains("click"));
        QCOMPARE(stage.host.heard.count("finish"), 1);
    }

    void letsNothingOfThePageBeSeenThrough()
    {
        QImage clear(40, 60, QImage::Format_ARGB32); // half of it
        clear.fill(QColor(255, 0, 0, 128));
        const QString paths[] = {"/opaque.png", "/clear.png", "/none.png"};
        const std::chrono::milliseconds slow(150);
        exchange.setAnswerAt(paths[0], {.body = written(twoHalves({60, 40})), .delay = slow});
        exchange.setAnswerAt(paths[1], {.body = written(clear)});
        exchange.setAnswerAt(paths[2], {.status = 404});
        for (const QSize &size : {QSize(375, 812), QSize(812, 375), QSize(101, 99)}) {
            for (const QString &path : paths) {
                Stage stage;
                QQuickWindow &window = stage.window;
                window.resize(size);
                QTRY_COMPARE(window.contentItem()->size(), QSizeF(size));
                window.setColor(Qt::magenta);
                const QImage page = window.grabWindow();
                QCOMPARE(page.pixelColor(size.width() / 2, size.height() / 2), window.color());

                const QByteArray ad =
                    R"({"code": 200, "data": [{"images": [{"url": "${BASE}@"}]}]})";
                stage.manager->handleAdResponse(
                    exchange.parsed(QByteArray(ad).replace('@', path.toUtf8())));
                stage.manager->showSplashAdWithWindow(&window);
                ZNTSplashAdView *view = stage.manager->splashAdView();
                QImage first; // of the ad, at once
                connect(view, &ZNTSplashAdView::hiddenChanged, &window,
                    [&] { first = window.grabWindow(); });
                do {
                    QCOMPARE(window.grabWindow(), page);
                    QVERIFY(exchange.waitForRequests(path, 1));
                    QTest::qWait(1);
                } while (view->isHidden() && path != paths[2]);
                if (path == paths[2])
                    continue;
                for (const char *name : {"adImageView", "mainAdImageView"})
                    QTRY_VERIFY(view->findChild<QObject *>(name)->property("ready").toBool());
                const QImage shown = window.grabWindow();
                window.setColor(Qt::green);
                QCOMPARE(window.grabWindow(), shown);
                QCOMPARE(first, shown);
            }
        }
    }

    void clickTargets()
    {
        const QString app = "zntdemo://x", web = "https://localhost/x";
        const auto check = [this](const QString &deepLink, const QString &webPage, bool succeeds,
                               const QStringList &expected) {
            application.opened.clear();
            application.opensDeepLinks = succeeds;
            Stage stage;
            stage.manager->handleAdResponse(
                answerWith("urlInfo", QJsonObject{{"deepLinkUrl", deepLink}, {"h5url", webPage}}));
            stage.manager->handleAdClick();
            const auto isOpened = [&] { return stage.host.heard.contains("other"); };
            QCOMPARE(
                QTest::qWaitFor(isOpened, expected.isEmpty() ? 20 : 5000), !expected.isEmpty());
            QCOMPARE(application.opened, expected);
            QVERIFY(stage.host.heard.count("other") <= 1);
        };
        check(app, web, true, {app});
        check(app, web, false, {app, web});
        check(app, {}, false, {app});
        check({}, web, true, {web});
        check({}, {}, true, {});
        for (const char *local : {"file:///etc/passwd", "FILE:///etc/passwd", "qrc:/x",
                 "/etc/passwd", "//host/share", "C:/x", "javascript:alert(1)", "data:text/html,x"})
            check(local, web, true, {web});
    }

    void whoDiesInBetweenIsNotCalled()
    {
        for (const char *moment : {"visible", "click", "render", "finish"}) {
            application.clock.setSpeed(qstrcmp(moment, "finish") == 0 ? 20 : 1);
            Stage stage;
            stage.host.then = [&](const QString &event) {
                if (event == moment)
                    stage.manager.reset();
            };
            stage.manager->handleAdResponse(answer());
            stage.manager->showSplashAdWithWindow(&stage.window);
            if (stage.manager)
                stage.manager->handleAdClick();
            QTRY_VERIFY(!stage.manager);
        }

        application.clock.setSpeed(1);
        Stage left;
        QVERIFY(left.shows(answer()));
        const QPointer<QQuickItem> view = left.manager->splashAdView();
        left.manager.reset(); // the ad stays, and follows the window by itself
        left.window.resize(812, 375);
        QTRY_COMPARE(view->size(), QSizeF(812, 375));
        QTest::keyClick(&left.window, Qt::Key_Escape);
        QTRY_VERIFY(!view);

        Stage stage;
        auto window = std::make_unique<ShownWindow>(QSize(100, 100));
        stage.manager->handleAdResponse(answer());
        stage.manager->showSplashAdWithWindow(window.get());
        window.reset();
        QVERIFY(!stage.manager->splashAdView());
        stage.manager->closeSplashAd(); // the host still hears of the end
        QTRY_VERIFY(stage.host.heard.contains("finish"));

        auto host = std::make_unique<Host>();
        stage.manager->setDelegate(host.get());
        stage.manager->setMediaId("splash");
        stage.manager->loadAndShowSplashAdWithWindow(nullptr);
        host.reset();
        QVERIFY(exchange.waitForRequests("/s/req2.do", 1));
        stage.manager->showSplashAdWithWindow(nullptr);
        stage.manager->loadAndShowSplashAdWithWindow(nullptr);
        stage.manager.reset();
        QTest::qWait(100);
    }
};

QTEST_MAIN(TestSplashManager)
#include "tst_splashmanager.moc"
