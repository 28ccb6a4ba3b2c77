// A host's tests of its own ads, without network, device or waiting.
#include <ZNTAds/ZNTAdsSDK.h>
#include <ZNTAds/ZNTFeedAdView.h>
#include <ZNTAds/ZNTFeedManager.h>
#include <ZNTAds/ZNTInterstitialAd.h>
#include <ZNTAds/ZNTInterstitialManager.h>
#include <ZNTAds/ZNTSplashAdView.h>
#include <ZNTAds/ZNTSplashManager.h>
#include <ZNTAdsInspector/ZNTAdExplanation.h>
#include <ZNTAdsInspector/ZNTAdJournal.h>
#include <ZNTAdsInspector/ZNTInspector.h>
#include <ZNTAdsTesting/ZNTAdSpy.h>
#include <ZNTAdsTesting/ZNTTestClock.h>
#include <ZNTAdsTesting/ZNTTestExchange.h>
#include <ZNTAdsTesting/ZNTTestHand.h>

#include <QElapsedTimer>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace std::chrono_literals;

class HostTest : public QObject
{
    Q_OBJECT

private:
    QQuickWindow window;
    QList<QUrl> opened;

private slots:
    //! [setup]
    void initTestCase()
    {
        ZNTTestExchange exchange; // before the application registers
        ZNT_EXPECT(exchange.isNotAsked());
        ZNTAdsSDK::setUrlOpener([this](const QUrl &url) {
            opened.append(url);
            return true;
        });
        ZNTAdsSDK::registerWithAppId("my-app", "my-media", exchange.secret());
        window.resize(375, 812);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
    }
    //! [setup]

    //! [splash]
    void aSplashAdIsSeenAndClosesByItself()
    {
        ZNTTestClock clock;
        ZNTTestExchange exchange;
        ZNTTestHand hand(&window);
        exchange.changeAd("my-splash", "splash", {{"adId", "tea"}});
        ZNTSplashManager splash;
        ZNTAdSpy spy(&splash);
        splash.setMediaId("my-splash");

        splash.loadAndShowSplashAdWithWindow(&window);
        ZNT_EXPECT(exchange.isAsked("my-splash"));
        ZNT_EXPECT(spy.hears({ZNTAdSpy::Loaded}));

        splash.showSplashAdWithWindow(&window);
        ZNT_EXPECT(hand.sees(ZNTTestHand::SplashAd)); // pictures are real
        clock.advance(150ms);                         // and now it counts
        ZNT_EXPECT(spy.once(ZNTAdSpy::Seen));
        ZNT_EXPECT(exchange.tracks(ZNTTestExchange::View, "tea"));

        clock.advance(6s);
        ZNT_EXPECT(spy.once(ZNTAdSpy::Closed));
        ZNT_EXPECT(exchange.tracks(ZNTTestExchange::Click, "tea", 0));
    }
    //! [splash]

    //! [shake]
    void aShakeOpensTheTarget()
    {
        ZNTTestClock clock;
        ZNTTestExchange exchange;
        ZNTTestHand hand(&window);
        ZNTSplashManager splash;
        ZNTAdSpy spy(&splash);
        splash.setAdStyle(ZNTSplashManager::ShakeStyle);
        QVERIFY(splash.handleAdResponse(exchange.answer("splash")));
        splash.showSplashAdWithWindow(&window);
        ZNT_EXPECT(hand.sees(ZNTTestHand::SplashAd));
        clock.advance(1s);
        hand.shake();
        ZNT_EXPECT(spy.once(ZNTAdSpy::Clicked));
        ZNT_EXPECT(exchange.tracks(ZNTTestExchange::Click, "splash-1"));
        ZNT_EXPECT(hand.tap(ZNTTestHand::SplashAd, "skipButton"));
        clock.advance(1s);
        ZNT_EXPECT(spy.once(ZNTAdSpy::Closed));
        QVERIFY(!hand.tap(ZNTTestHand::SplashAd).isEmpty());
    }
    //! [shake]

    //! [interstitial]
    void anInterstitialAdClosesAfterAnHour()
    {
        ZNTTestClock clock;
        ZNTTestExchange exchange;
        ZNTTestHand hand(&window);
        ZNTInterstitialManager interstitial;
        ZNTAdSpy spy(&interstitial);
        interstitial.setMediaId("interstitial");
        interstitial.setShowAdController(window.contentItem());
        interstitial.setAutoCloseTime(3600);

        interstitial.loadAdData();
        ZNT_EXPECT(spy.happens(ZNTAdSpy::Loaded));
        interstitial.showInterstitialAd();
        clock.advance(1s);
        ZNT_EXPECT(spy.hears({ZNTAdSpy::Loaded, ZNTAdSpy::Shown, ZNTAdSpy::Seen}));

        clock.advance(1h);
        ZNT_EXPECT(spy.once(ZNTAdSpy::Closed));
        QVERIFY(spy.hasClosedByItself());
    }
    //! [interstitial]

    //! [feed]
    void aFeedAdIsCountedOnceAndLeadsSomewhere()
    {
        ZNTTestClock clock;
        ZNTTestExchange exchange;
        ZNTTestHand hand(&window);
        ZNTFeedManager feed;
        ZNTAdSpy spy(&feed);
        feed.setMediaId("XCT");
        feed.setAdCount(1);
        feed.loadAdData();
        ZNT_EXPECT(spy.happens(ZNTAdSpy::Loaded));

        const ZNTFeedAdDataPtr ad = feed.loadedAdDataArray().constFirst();
        const std::unique_ptr<QQuickItem> view(feed.createAdViewWithStyle(ad->style(), {375, 200}));
        qobject_cast<ZNTFeedAdView *>(view.get())->setupWithAdsData(ad);
        feed.registerAdForView(view.get(), ad);
        view->setParentItem(window.contentItem());
        ZNT_EXPECT(hand.sees(ZNTTestHand::FeedAd));
        clock.advance(1s);
        ZNT_EXPECT(spy.once(ZNTAdSpy::Seen));
        ZNT_EXPECT(exchange.tracks(ZNTTestExchange::View, ad->adId()));

        opened.clear();
        ZNT_EXPECT(hand.tap(ZNTTestHand::FeedAd));
        ZNT_EXPECT(spy.once(ZNTAdSpy::TargetOpened));
        QCOMPARE(opened, {QUrl(ad->h5url())});
        ZNT_EXPECT(hand.tap(ZNTTestHand::FeedAd, "closeButton"));
        ZNT_EXPECT(spy.once(ZNTAdSpy::Closed));
        ZNT_EXPECT(exchange.getsFeedback(ad->adId()));
    }
    //! [feed]

    //! [faults]
    void aSlowExchangeFailsAfterItsTime()
    {
        ZNTTestClock clock;
        ZNTTestExchange exchange;
        exchange.answerLike("my-feed", "slow");
        ZNTFeedManager feed;
        ZNTAdSpy spy(&feed);
        feed.setMediaId("my-feed");
        feed.loadAdData();
        ZNT_EXPECT(exchange.isAsked("my-feed"));
        clock.advance(15s);
        ZNT_EXPECT(spy.failsWith(4));
        exchange.answerLike("my-feed", "feed");
        feed.loadAdData();
        ZNT_EXPECT(spy.happens(ZNTAdSpy::Loaded));
    }
    //! [faults]

    //! [hidden]
    void anAdInAHiddenWindowIsNotCounted()
    {
        ZNTTestClock clock;
        ZNTTestExchange exchange;
        ZNTTestHand hand(&window);
        ZNTSplashManager splash;
        ZNTAdSpy spy(&splash);
        QVERIFY(splash.handleAdResponse(exchange.answer("splash")));
        ZNT_EXPECT(hand.background());
        splash.showSplashAdWithWindow(&window);
        ZNT_EXPECT(hand.sees(ZNTTestHand::SplashAd));
        clock.advance(1s);
        ZNT_EXPECT(spy.never(ZNTAdSpy::Seen));
        ZNT_EXPECT(hand.foreground());
        clock.advance(200ms);
        ZNT_EXPECT(spy.once(ZNTAdSpy::Seen));
    }
    //! [hidden]

    //! [inspector]
    void aHiddenAdIsExplained()
    {
        ZNTTestClock clock;
        ZNTTestExchange exchange;
        ZNTTestHand hand(&window);
        ZNTAdJournal journal;
        journal.setEnabled(true);
        ZNTSplashManager splash;
        QVERIFY(splash.handleAdResponse(exchange.answer("splash")));
        splash.showSplashAdWithWindow(&window);
        ZNT_EXPECT(hand.sees(ZNTTestHand::SplashAd));
        splash.splashAdView()->setOpacity(0);

        ZNTAdExplanation explanation;
        explanation.setView(splash.splashAdView());
        QVERIFY(!explanation.counts());
        QCOMPARE(explanation.reason(), ZNTAdExplanation::Transparent);
        qInfo("%s\n%s", qPrintable(explanation.sentence()), qPrintable(journal.json()));
    }
    //! [inspector]

    void aPanelOpens()
    {
        ZNTTestHand hand(&window);
        const std::unique_ptr<QQuickItem> panel(ZNTInspector::attach(&window));
        QVERIFY(panel);
        ZNT_EXPECT(hand.key(Qt::Key_F12));
        QTRY_VERIFY(panel->property("open").toBool());
    }

    // What is not met is said.
    void tellsWhatIsMissing()
    {
        ZNTTestClock clock;
        ZNTTestExchange exchange;
        ZNTTestHand hand(&window);
        ZNTSplashManager splash;
        ZNTAdSpy spy(&splash);
        spy.setTimeout(10);
        exchange.setTimeout(10);
        const QString held = " (a ZNTTestClock holds the time; advance() lets it pass)";
        QCOMPARE(spy.once(ZNTAdSpy::Seen), "expected seen exactly once; heard: nothing" + held);
        QCOMPARE(
            exchange.isAsked("a"), "expected 1 signed ad requests at \"a\"; came: nothing" + held);
        QCOMPARE(exchange.tracks(ZNTTestExchange::Click, "none"),
            "no answer of this exchange holds click trackers of an ad \"none\"");
        QVERIFY(hand.tap(ZNTTestHand::FeedAd).startsWith("there is no feed ad 0 in the window"));
        QVERIFY(splash.handleAdResponse(exchange.answer("splash")));
        splash.showSplashAdWithWindow(&window);
        QCOMPARE(hand.tap(ZNTTestHand::SplashAd, "door"), "the splash ad has no \"door\"");
        QVERIFY(!exchange.tracks(ZNTTestExchange::View, "splash-1").isEmpty()); // not yet
        splash.setMediaId("nowhere");
        spy.setTimeout(5000);
        splash.loadAndShowSplashAdWithWindow(&window);
        QVERIFY(spy.hears({ZNTAdSpy::Shown, ZNTAdSpy::Loaded})
                    .startsWith("expected exactly shown, loaded; heard: shown, failed (ZNTAds"));
        QTest::ignoreMessage(QtWarningMsg, "ZNTAdSpy: a QObject tells nothing about an ad");
        QObject other;
        spy.setTarget(&other);
    }

    void keepsPictures()
    {
        const QTemporaryDir folder;
        const QString file = folder.filePath("splash.png");
        ZNTTestClock clock;
        ZNTTestExchange exchange;
        ZNTTestHand hand(&window);
        ZNTSplashManager splash;
        QVERIFY(splash.handleAdResponse(exchange.answer("splash")));
        splash.showSplashAdWithWindow(&window);
        ZNT_EXPECT(hand.sees(ZNTTestHand::SplashAd));
        clock.advance(300ms);
        QCOMPARE(hand.picture(ZNTTestHand::SplashAd).size(), QSize(375, 812));
        QCOMPARE(hand.looksLike(ZNTTestHand::SplashAd, file), file + " was not there and is now");
        ZNT_EXPECT(hand.looksLike(ZNTTestHand::SplashAd, file));
        ZNT_EXPECT(hand.rotate());
        QVERIFY(hand.looksLike(ZNTTestHand::SplashAd, file).contains("% of the ad differ"));
        ZNT_EXPECT(hand.rotate());
    }

    //! [clock]
    void aCountdownIsOverAtOnce()
    {
        ZNTTestClock clock;
        ZNTInterstitialAd ad(QStringLiteral("position"));
        ad.setupWithAdData(QJsonObject());
        ad.showFromViewController(window.contentItem());
        QCOMPARE(ad.remainingTime(), 5);
        clock.advance(2999ms);
        QCOMPARE(ad.remainingTime(), 3);
        clock.advance(1ms);
        QCOMPARE(ad.remainingTime(), 2);
        //! [clock]
        QElapsedTimer real;
        real.start();
        QTest::ignoreMessage(QtWarningMsg,
            "ZNTTestClock: time is advancing already; advance() does nothing in a callback");
        QSignalSpy ticks(&ad, &ZNTInterstitialAd::remainingTimeChanged);
        connect(
            &ad, &ZNTInterstitialAd::remainingTimeChanged, this, [&clock] { clock.advance(1s); },
            Qt::SingleShotConnection);
        clock.advance(1h);
        QCOMPARE(ad.remainingTime(), 0);
        QCOMPARE(ticks.size(), 2);
        QCOMPARE(clock.elapsed(), 1h + 3s);
        QVERIFY(real.elapsed() < 60'000);
    }
};

QTEST_MAIN(HostTest)
#include "hosttest.moc"
