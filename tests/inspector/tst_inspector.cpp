#include "diagnostics/adtrace.h"
#include "support/host.h"
#include "ui/visibleshare.h"

#include <ZNTAds/ZNTFeedAdView.h>
#include <ZNTAds/ZNTFeedManager.h>
#include <ZNTAds/ZNTInterstitialAd.h>
#include <ZNTAds/ZNTInterstitialManager.h>
#include <ZNTAds/ZNTSplashAdView.h>
#include <ZNTAds/ZNTSplashManager.h>
#include <ZNTAdsInspector/ZNTAdExplanation.h>
#include <ZNTAdsInspector/ZNTAdJournal.h>
#include <ZNTAdsInspector/ZNTInspector.h>

#include <QAbstractItemModelTester>
#include <QRandomGenerator>

using namespace znt;
using namespace znt::test;

class TestInspector : public QObject
{
    Q_OBJECT

private:
    TrustedExchange exchange;
    HostApplication application;

    // Its events of one ad, without what depends on time alone.
    static QStringList eventsOf(const ZNTAdJournal &journal, const QString &adId)
    {
        QStringList events;
        for (const auto all = journal.toJson(); const QJsonValue &event : all) {
            if (event["adId"].toString() == adId && event["what"] != QLatin1String("share"))
                events.append(event["what"].toString());
        }
        return events;
    }
    static int count(const ZNTAdJournal &journal, const QString &what)
    {
        int count = 0;
        for (const auto all = journal.toJson(); const QJsonValue &event : all)
            count += event["what"].toString() == what ? 1 : 0;
        return count;
    }

private slots:
    void initTestCase() { application.clock.setSpeed(10); }
    void init() { failOnWarnings(); }

    void tellsTheLifeOfASplashAd()
    {
        ShownWindow window({375, 812});
        ZNTAdJournal journal;
        const QAbstractItemModelTester tester(&journal);
        ZNTSplashManager splash;
        splash.setMediaId("splash");
        splash.loadAndShowSplashAdWithWindow(&window);
        QTRY_COMPARE(exchange.hits("/s/req2.do"), 1);
        QTRY_VERIFY(splash.adData());
        QCOMPARE(journal.count(), 0); // off, until it is on

        journal.setEnabled(true);
        splash.loadAndShowSplashAdWithWindow(&window);
        QTRY_VERIFY(count(journal, "loaded") == 1);
        QCOMPARE(count(journal, "requested") + count(journal, "answered"), 2);
        splash.showSplashAdWithWindow(&window);
        QTRY_COMPARE(count(journal, "tracker answered"), 2);
        splash.handleAdClick(); // as the creative does
        QTRY_VERIFY(count(journal, "target opened") == 1);
        splash.closeSplashAd();
        QTRY_VERIFY(count(journal, "closed") == 1);
        QStringList events = eventsOf(journal, "splash-1");
        QCOMPARE(events.mid(0, 6),
            (QStringList{"loaded", "shown", "watched", "seen", "tracker fired", "tracker fired"}));
        QVERIFY(events.contains("tapped"));
        QVERIFY(events.contains("closed"));
        QTRY_VERIFY(count(journal, "share") > 0 || count(journal, "closed") == 1);
        const QModelIndex first = journal.index(0);
        QCOMPARE(first.data(ZNTAdJournal::TextRole), "splash · splash · requested");

        journal.setEnabled(false);
        const int kept = journal.count();
        splash.loadAndShowSplashAdWithWindow(&window);
        QTRY_VERIFY(splash.adData());
        QCOMPARE(journal.count(), kept);
        QCOMPARE(json("{\"a\":" + journal.json().toUtf8() + "}")["a"].toArray().size(), kept);
    }

    void tellsWhatFails()
    {
        ZNTAdJournal journal;
        journal.setEnabled(true);
        ZNTInterstitialManager interstitial;
        interstitial.setMediaId("refused");
        interstitial.loadAdData();
        QTRY_COMPARE(count(journal, "failed"), 1);
        const QJsonArray events = journal.toJson();
        QCOMPARE(events[0]["what"], "requested");
        QCOMPARE(events[1]["what"], "refused");
        QCOMPARE(events[1]["position"], "refused");
        QCOMPARE(events[2]["what"], "failed");
        QCOMPARE(events[2]["details"]["domain"], "ZNTAdsManager");

        // From another thread, and by a manager that goes.
        journal.clear();
        const std::unique_ptr<QThread> thread(QThread::create(
            [] { ZNTAdTrace::note(ZNTAdTrace::TrackerFired, nullptr, "https://t.example/1"); }));
        thread->start();
        QTRY_COMPARE(journal.count(), 1);
        thread->wait();
        auto brief = std::make_unique<ZNTFeedManager>();
        brief->setMediaId("feed");
        brief->loadAdData();
        brief.reset();
        QTest::qWait(50);
        QCOMPARE(count(journal, "failed"), 0);
    }

    void tellsWhichFeedAdItWas()
    {
        ShownWindow window({375, 812});
        ZNTAdJournal journal;
        journal.setEnabled(true);
        ZNTFeedManager feed;
        feed.setMediaId("feed");
        feed.setAdCount(2);
        feed.loadAdData();
        QTRY_COMPARE(count(journal, "loaded"), 2);
        const ZNTFeedAdDataPtr ad = feed.loadedAdDataArray().first();
        std::unique_ptr<QQuickItem> view(feed.createAdViewWithStyle(ad->style(), {375, 200}));
        feed.registerAdForView(view.get(), ad);
        ZNTAdExplanation explanation;
        explanation.setView(view.get());
        QCOMPARE(explanation.reason(), ZNTAdExplanation::NoWindow);
        view->setParentItem(window.contentItem());
        feed.registerAdForView(view.get(), ad);
        explanation.setActive(true);
        QVERIFY(explanation.isWatched());
        QVERIFY2(
            explanation.sentence().startsWith("Counts: 100 % of it is visible, 70 % is needed: "
                                              "nothing is in its way. It has been watched"),
            qPrintable(explanation.sentence()));
        QTRY_VERIFY(explanation.seenAt().isValid());
        QTRY_VERIFY(eventsOf(journal, ad->adId()).contains("tracker answered"));
        QTRY_VERIFY(count(journal, "share") > 0);
        view.reset();
        QTRY_COMPARE(explanation.reason(), ZNTAdExplanation::NoView);
        QCOMPARE(explanation.sentence(), "There is no view.");
    }

    void keepsAMillionEventsInBounds()
    {
        ZNTAdJournal journal;
        journal.setMaximumCount(1000);
        journal.setEnabled(true);
        for (int i = 1; i <= 1'000'000; ++i)
            ZNTAdTrace::note(ZNTAdTrace::Feedback, nullptr, QString::number(i));
        QTRY_COMPARE(journal.count(), 1000);
        QCOMPARE(journal.index(999).data(ZNTAdJournal::AdIdRole), "1000000");
        journal.setMaximumCount(-1);
        QCOMPARE(journal.count(), 1);
        journal.clear();
        QCOMPARE(journal.json(), "[\n]\n");
    }

    // In trees of all kinds; without the cause that it names, more of the view is visible.
    void explainsWhatIsDecided()
    {
        ShownWindow window({200, 200});
        QRandomGenerator random(1); // NOLINT: the same trees each time
        const auto oneIn = [&random](int n) { return random.bounded(n) == 0; };
        QHash<int, int> reasons;
        for (int tree = 0; tree < 3000; ++tree) {
            QQuickItem root(window.contentItem());
            root.setSize(window.size());
            QQuickItem *at = &root;
            for (int depth = random.bounded(5); depth >= 0; --depth) {
                auto *item = new QQuickItem(at);
                item->setPosition(QPointF(random.bounded(120) - 30, random.bounded(120) - 30));
                item->setSize(QSizeF(random.bounded(180), 1 + random.bounded(180)));
                item->setClip(oneIn(3));
                item->setScale(oneIn(6) ? 0.5 : 1);
                item->setRotation(oneIn(8) ? 90 : 0);
                item->setOpacity(oneIn(15) ? 0 : 1);
                item->setVisible(!oneIn(15));
                at = item;
            }
            ZNTAdExplanation explanation;
            explanation.setView(at);
            const std::optional<double> share = visibleShare(at);
            QCOMPARE(explanation.share(), share.value_or(0));
            QCOMPARE(explanation.counts(), share && *share >= explanation.ratio());
            QCOMPARE(explanation.reason() == ZNTAdExplanation::Nothing, share && *share > 99.999);
            ++reasons[explanation.reason()];
            QQuickItem *obstacle = explanation.obstacle();
            switch (explanation.reason()) {
            case ZNTAdExplanation::Hidden:
                QVERIFY(!obstacle->isVisible());
                obstacle->setVisible(true);
                QVERIFY(obstacle->isVisible());
                break;
            case ZNTAdExplanation::Transparent:
                QCOMPARE(obstacle->opacity(), 0);
                break;
            case ZNTAdExplanation::Clipped:
                obstacle->setClip(false);
                explanation.update();
                QVERIFY(explanation.obstacle() != obstacle
                    || explanation.reason() != ZNTAdExplanation::Clipped);
                break;
            case ZNTAdExplanation::Scaled:
                QVERIFY(obstacle->scale() != 1);
                break;
            default:
                QVERIFY(!obstacle || obstacle == at);
            }
        }
        for (const auto reason :
            {ZNTAdExplanation::Nothing, ZNTAdExplanation::Hidden, ZNTAdExplanation::Transparent,
                ZNTAdExplanation::Clipped, ZNTAdExplanation::OutsideWindow,
                ZNTAdExplanation::NoSize, ZNTAdExplanation::Scaled})
            QVERIFY2(reasons[reason] > 10, qPrintable(QString::number(reason)));
    }

    void namesWindowsAndLists()
    {
        ShownWindow window({200, 200});
        QQmlEngine engine;
        const auto object = created(&engine,
            "import QtQuick; ListView { width: 50; height: 50; cacheBuffer: 500; model: 20;"
            "delegate: Item { objectName: 'row'; width: 50; height: 20; Item { width: 50; height: "
            "20 }"
            "}}");
        auto *list = qobject_cast<QQuickItem *>(object.get());
        list->setParentItem(window.contentItem());
        QQuickItem *row = nullptr;
        const auto isMade = [&] {
            QMetaObject::invokeMethod(
                list, "itemAtIndex", Q_RETURN_ARG(QQuickItem *, row), Q_ARG(int, 6));
            return row != nullptr;
        };
        QTRY_VERIFY(isMade());
        ZNTAdExplanation explanation;
        explanation.setView(row->childItems().first());
        QCOMPARE(explanation.reason(), ZNTAdExplanation::NotDrawn);
        QVERIFY2(
            explanation.sentence().startsWith("Does not count: 0.0 % of it is visible, 70 % is "
                                              "needed: its list does not draw QQuickItem "
                                              "\"row\". It is not known"),
            qPrintable(explanation.sentence()));
        window.hide();
        explanation.update();
        QCOMPARE(explanation.reason(), ZNTAdExplanation::WindowNotShown);
        explanation.setView(nullptr);
        QCOMPARE(explanation.reason(), ZNTAdExplanation::NoView);
    }

    // Nothing of a host's own is covered by a panel that is closed, or needed by one that is open.
    void attachesAPanel()
    {
        ShownWindow window({375, 812});
        QVERIFY(!ZNTInspector::attach(nullptr));
        QPointer<QQuickItem> panel = ZNTInspector::attach(&window);
        QVERIFY(panel);
        QTest::keyClick(&window, Qt::Key_F12);
        QVERIFY(panel->property("open").toBool());
        QCOMPARE(panel->size(), QSizeF(375, 812));
        ZNTSplashManager splash;
        QVERIFY(splash.handleAdResponse(exchange.answer("splash")));
        splash.showSplashAdWithWindow(&window);
        QTRY_COMPARE(panel->property("selected"), "splash-1");
        splash.closeSplashAd();
        QTRY_VERIFY(!splash.splashAdView());
        QVERIFY(QMetaObject::invokeMethod(panel, "copy"));
        QTest::qWait(150);
        delete panel;
    }
};

QTEST_MAIN(TestInspector)
#include "tst_inspector.moc"
