#include "ads/visibilitywatch.h"
#include "support/host.h"
#include "support/loglines.h"

#include <ZNTAds/ZNTAdsManager.h>
#include <ZNTAds/ZNTFeedAdView.h>
#include <ZNTAds/ZNTFeedManager.h>

using namespace znt;
using namespace znt::test;

class TestFeedManager : public QObject
{
    Q_OBJECT

private:
    TrustedExchange exchange;
    HostApplication application;
    ShownWindow window{{200, 200}};
    Host host;
    std::unique_ptr<ZNTFeedManager> manager;

    int hits(const char *path) const { return exchange.hits(path); }

    // Ads "1" to `count`, each with trackers and targets of its own.
    QJsonObject answer(int count) const
    {
        QByteArrayList ads;
        for (int i = 1; i <= count; ++i) {
            ads.append(
                QByteArray(R"({"adId": "@", "trackInfo": {"viewUrl3rd": ["${BASE}/t/view/@", ""],
                    "clickUrl3rd": "${BASE}/t/click/@", "dpEventUrls": ["${BASE}/t/dp/@"]},
                    "urlInfo": {"deepLinkUrl": "app:@", "h5url": "${BASE}/landing/@"}})")
                    .replace('@', QByteArray::number(i)));
        }
        return exchange.parsed(R"({"code": 200, "data": [)" + ads.join(',') + "]}");
    }

    // Loads that many ads and gives the records.
    QList<ZNTFeedAdDataPtr> load(int count)
    {
        manager->setAdCount(-1);
        return manager->handleAdResponse(answer(count)) ? manager->loadedAdDataArray()
                                                        : QList<ZNTFeedAdDataPtr>();
    }
    ZNTFeedAdDataPtr read(const QByteArray &ad)
    {
        const QJsonObject response = exchange.parsed(R"({"code": "200", "data": [)" + ad + "]}");
        return manager->handleAdResponse(response) ? manager->adData() : nullptr;
    }
    std::unique_ptr<QQuickItem> view(const QRectF &frame)
    {
        auto item = std::make_unique<QQuickItem>(window.contentItem());
        item->setPosition(frame.topLeft());
        item->setSize(frame.size());
        return item;
    }
    bool isChecking(const ZNTFeedAdDataPtr &record) const
    {
        return manager->isCheckingVisibility(record);
    }

private slots:
    void initTestCase() { ZNTAdsSDK::setLogEnabled(false); }

    void init()
    {
        failOnWarnings();
        manager = std::make_unique<ZNTFeedManager>();
        manager->setDelegate(&host);
        host.then = {};
        host.heard.clear();
        application.opened.clear();
        application.opensDeepLinks = false;
        exchange.forgetRequests();
        ZNTAdsManager::sharedInstance()->setExposureRatio(70);
    }

    void loads()
    {
        manager->loadAdData();
        QCOMPARE(host.next(), "ZNTFeedManager -1001 mediaId不能为空");
        QVERIFY(exchange.requests("/s/req2.do").isEmpty());

        const auto load = [this](const char *position) {
            manager->setMediaId(position);
            manager->loadAdData();
            return host.next();
        };
        manager->setAdCount(20);
        QCOMPARE(load("feed"), "load 9");
        for (qint64 style = 0; style < 9; ++style)
            QCOMPARE(manager->loadedAdDataArray().at(style)->style(), style);
        QCOMPARE(manager->adData(), manager->loadedAdDataArray().last());
        QCOMPARE(load("no-ads"), "ZNTFeedManager -1002 广告数据解析失败");
        QCOMPARE(manager->loadedAdDataArray().size(), 9);
        manager->setAdCount(0);
        QCOMPARE(load("feed"), "load 0");
        QVERIFY(manager->adData());
        manager->setAdCount(-1);
        QCOMPARE(load("nulls"), "load 2");
        QCOMPARE(load("wrong-types-inside"), "load 1");
        QCOMPARE(load("many"), "load 10000");
        QCOMPARE(load("long-texts"), "load 1");
        QCOMPARE(manager->adData()->title().size(), 100'000);
        QCOMPARE(load(""), "ZNTAdsManager 500 Invalid ad data"); // sent as it is

        manager->loadAdData();
        manager.reset();
        twoTicks();
        QVERIFY(host.heard.isEmpty()); // nobody is told
    }

    void readsRecords()
    {
        ZNTFeedAdDataPtr record = read(R"({"adId": "7", "adStyle": "XST", "sourceName": "Tea",
            "sourceLogo": "", "texts": [{"type": "TXT", "content": "a"}, 5,
            {"type": "TXT", "content": "b"}, {"type": "DESC", "content": "c"}],
            "images": [{"url": "i1"}, {"url": 3}, 9, {"url": "i2"}],
            "trackInfo": {"viewUrl3rd": 4, "clickUrl3rd": "k", "dpEventUrls": ["d", 1]}})");
        QVERIFY(record->title() == u"a" || record->title() == u"b");
        QCOMPARE(record->desc(), record->title());
        QCOMPARE(record->style(), 6);
        QVERIFY(record->sourceLogo().isEmpty() && !record->sourceLogo().isNull());
        QCOMPARE(record->imageUrls(), QStringList({"i1", "i2"}));
        QCOMPARE(record->clickUrl3rd(), QJsonArray{"k"});
        QVERIFY(record->h5url().isNull());

        record = read(R"({"adId": 7, "adStyle": "xst", "texts": {}, "images": "i", "urlInfo": 1})");
        QVERIFY(record->adId().isNull() && record->title().isNull() && record->style() == 0);
        record = read("17");
        QVERIFY(record->adId().isNull() && record->imageUrls().isEmpty());

        for (const auto &[count, kept] : {std::pair(3, 3), {10, 5}, {-1, 5}, {0, 0}}) {
            manager->setAdCount(count);
            QVERIFY(manager->handleAdResponse(answer(5)));
            QCOMPARE(manager->loadedAdDataArray().size(), kept);
        }
        QCOMPARE(manager->adData()->adId(), "5");
    }

    void countsAnAdOnceItIsSeen()
    {
        const auto records = load(3);
        const auto shown = view({0, 130, 100, 100});
        const auto hidden = view({0, 131, 100, 100});
        const auto loose = std::make_unique<QQuickItem>();
        manager->registerAdForView(shown.get(), records[0]);
        manager->registerAdForView(shown.get(), records[0]);
        manager->registerAdForView(hidden.get(), records[1]);
        manager->registerAdForView(loose.get(), records[2]);
        manager->registerAdForView(nullptr, records[0]);
        manager->registerAdForView(shown.get(), nullptr);
        manager->unregisterAdData(nullptr);
        QCOMPARE(manager->registeredViews().size(), 3);
        QTRY_VERIFY(manager->reportedAdIds().contains("1"));
        QVERIFY(!isChecking(records[0]) && isChecking(records[1]) && !isChecking(records[2]));
        QCOMPARE(hits("/t/view/1"), 1);

        loose->setParentItem(window.contentItem());
        loose->setSize({10, 10});
        const auto again = load(1).first(); // the same id, another record
        manager->registerAdForView(shown.get(), again);
        hidden->setY(130);
        QTRY_VERIFY(!isChecking(again) && manager->reportedAdIds().size() == 2);
        QCOMPARE(manager->reportedAdIds(), QSet<QString>({"1", "2"}));
        QCOMPARE(hits("/t/view/1"), 1);
        manager->unregisterAdData(records[1]);
        QVERIFY(!manager->registeredViews().contains(records[1].get()));
    }

    void looksATenthOfASecondAfterRegistration()
    {
        qint64 first = 0;
        QElapsedTimer clock;
        VisibilityTimer timer([&](auto &) { first = first ? first : clock.nsecsElapsed(); });
        VisibilityTimer other([&](auto &) { other.stop(); });
        other.start();
        QTest::qWait(37); // with another one under way, out of step
        clock.start();
        timer.start();
        QTRY_VERIFY(first > 0);
        QVERIFY2(first >= 100'000'000, qPrintable(QString::number(first)));
        timer.stop();
        QVERIFY(!other.isActive());

        // A view may come into the window after it was registered, within the same turn.
        const auto record = load(1).first();
        const auto late = std::make_unique<QQuickItem>();
        late->setSize({10, 10});
        manager->registerAdForView(late.get(), record);
        late->setParentItem(window.contentItem());
        QTRY_VERIFY(manager->reportedAdIds().contains("1"));
    }

    // Every order of these, within one iteration of the event loop: a view is put into a window,
    // registered, its record unregistered, and it is destroyed.
    void whatTheHostDoesHasTheLastWord()
    {
        QStringList orders{""};
        for (qsizetype i = 0; i < orders.size(); ++i) {
            for (const QChar step : QString("PRUD")) {
                if (!orders[i].contains(step))
                    orders.append(orders[i] + step);
            }
        }
        QCOMPARE(orders.size(), 1 + 4 + 12 + 24 + 24);

        std::vector<std::unique_ptr<ZNTFeedManager>> managers;
        std::vector<std::unique_ptr<QQuickItem>> views;
        QStringList seen;
        for (const QString &order : std::as_const(orders)) {
            manager = std::make_unique<ZNTFeedManager>();
            const QByteArray ad = R"({"trackInfo": {"viewUrl3rd": "${BASE}/t/view/@"}})";
            const auto record = read(QByteArray(ad).replace('@', order.toUtf8()));
            std::unique_ptr<QQuickItem> view(manager->createAdViewWithStyle(0, {10, 10}));
            bool isWatched = false;
            for (const QChar step : order) {
                isWatched = step == 'U' ? false : isWatched || view;
                if (step == 'P' && view)
                    view->setParentItem(window.contentItem());
                else if (step == 'R')
                    manager->registerAdForView(view.get(), record);
                else if (step == 'U')
                    manager->unregisterAdData(record);
                else if (step == 'D')
                    view.reset();
            }
            if (isWatched && view && view->window())
                seen.append("/t/view/" + order);
            managers.push_back(std::move(manager));
            views.push_back(std::move(view));
        }
        twoTicks();
        QVERIFY(exchange.waitForRequests("/t/view/RP", 1));
        for (const QString &order : std::as_const(orders)) {
            const QString path = "/t/view/" + order;
            QTRY_VERIFY2(exchange.hits(path) == (seen.contains(path) ? 1 : 0), qPrintable(order));
        }
    }

    // Another view that is registered for the record counts, not the one that has just arrived.
    void aRegistrationReplacesAnArrival()
    {
        const auto record = load(1).first();
        const std::unique_ptr<QQuickItem> arrived(manager->createAdViewWithStyle(0, {10, 10}));
        arrived->setX(500);
        arrived->setParentItem(window.contentItem());
        const auto shown = view({0, 0, 10, 10});
        manager->registerAdForView(shown.get(), record);
        QTRY_COMPARE(hits("/t/view/1"), 1);
        QVERIFY(!isChecking(record));
    }

    void tellsNoIdFromAnEmptyOne()
    {
        const auto shown = view({0, 0, 10, 10});
        const auto reports = [&](const QByteArray &id) {
            exchange.forgetRequests();
            const auto record =
                read("{" + id + R"("trackInfo": {"viewUrl3rd": "${BASE}/t/view/1"}})");
            manager->registerAdForView(shown.get(), record);
            twoTicks();
            return QTest::qWaitFor([&] { return hits("/t/view/1") == 1; }, 100);
        };
        QVERIFY(reports(""));
        QVERIFY(reports(R"("adId": "",)"));
        QTRY_COMPARE(manager->reportedAdIds(), QSet<QString>{""});
        QVERIFY(reports(""));
        QVERIFY(!reports(R"("adId": "",)"));
    }

    // Whoever hears of the first of them may hide the page that both are on.
    void looksAgainAfterEveryNotice()
    {
        const auto page = view({0, 0, 100, 100});
        auto *row = new QQuickItem(page.get());
        int seen = 0, looked = 0;
        const auto ended = [&](VisibilityWatch::End) {
            ++seen;
            page->setX(500);
        };
        VisibilityWatch watches[] = {VisibilityWatch(ended), VisibilityWatch(ended)};
        for (VisibilityWatch &watch : watches) {
            auto *ad = new QQuickItem(row);
            ad->setSize({50, 50});
            watch.start([&looked, ad] {
                ++looked;
                return ad;
            });
        }
        QTRY_VERIFY(looked >= 2);
        QCOMPARE(seen, 1);
    }

    void letsItsLastRecordServeAllViews()
    {
        manager->adViewDidClick(); // without any ad
        manager->adViewDidClose();
        manager->adViewDidExposure(window.contentItem());
        QCOMPARE(std::exchange(host.heard, {}), QStringList({"click", "close", "visible"}));
        QVERIFY(exchange.requests("/s/negfb.do").isEmpty());

        load(3);
        manager->adViewDidClick();
        QCOMPARE(host.heard, QStringList{"click"});
        QTRY_COMPARE(host.heard, QStringList({"click", "other"}));
        QCOMPARE(application.opened, QStringList({"app:3", exchange.at("/landing/3")}));
        QTRY_VERIFY(hits("/t/click/3") == 1 && hits("/t/dp/3") == 1);
        QCOMPARE(hits("/t/click/1"), 0);

        manager->adViewDidClose();
        QVERIFY(exchange.waitForRequests("/s/negfb.do", 1));
        QCOMPARE(exchange.requests("/s/negfb.do").first().json()[u"bizId"], "3");

        const auto shown = view({0, 0, 10, 10});
        manager->adViewDidExposure(shown.get());
        manager->adViewDidExposure(nullptr);
        QVERIFY(isChecking(manager->adData()));
        QTRY_COMPARE(manager->reportedAdIds(), QSet<QString>{"3"});
        QCOMPARE(host.heard.mid(2), QStringList({"close", "visible", "visible"}));
    }

    void logsItsSteps()
    {
        LogLines log;
        QVERIFY(manager->handleAdResponse(exchange.answer("bad-urls")));
        QCOMPARE(log.take(),
            QStringList({"INFO Processing 1 ads from response",
                "INFO Processing ad 0 - Style: 3, Title: 第一口春天，来自云雾深处",
                "INFO Processed 1 images for ad 0", "INFO Processing tracking information",
                "INFO Processed 9 view URLs", "INFO Processed click URLs",
                "INFO Processed dpEventUrls",
                "INFO Processed URL info - h5url: file:///etc/hostname, "
                "deepLinkUrl: javascript:alert(1)"}));
        manager->adViewDidClick();
        QStringList lines;
        QTRY_COMPARE((lines += log.take()).filter(" reports completed").size(), 2);
        QCOMPARE(lines.mid(0, 4),
            QStringList({"INFO Feed ad clicked", "INFO Starting click reporting",
                "INFO Starting dpEventUrls reporting", "INFO Attempting to open deep link"}));
        QVERIFY(lines.contains("INFO Deep link failed, falling back to H5 URL"));
        for (const QString list : {"Click", "DpEvent"}) {
            QCOMPARE(lines.filter("ERROR " + list + " report failed[").size(), 7);
            QVERIFY(lines.contains("INFO " + list + " report successful["
                + exchange.at("/t/view/the-good-one") + "]"));
        }
        QVERIFY(lines.contains("INFO All click reports completed"));
        QVERIFY(lines.contains("INFO All dpEventUrls reports completed"));
        QCOMPARE(host.heard, QStringList({"click", "other"}));
        QVERIFY(application.opened.isEmpty());
        QCOMPARE(hits("/t/view/the-good-one"), 2);
    }

    void tearsDownInItsOrder()
    {
        const auto old = load(1).first();
        auto shown = view({500, 0, 10, 10});
        manager->registerAdForView(shown.get(), old);
        const auto current = load(2);
        manager->registerAdForView(shown.get(), current[0]);
        manager->deallocAllFeedProperty();
        QVERIFY(!isChecking(old) && !isChecking(current[0]));
        QVERIFY(manager->loadedAdDataArray().isEmpty() && manager->registeredViews().isEmpty());
        QVERIFY(manager->adData());

        shown->setX(0); // the check of the earlier load is out of reach and goes on
        QTRY_COMPARE(manager->reportedAdIds(), QSet<QString>{"1"});
        manager->deallocAllFeedProperty();
        shown.reset();
        twoTicks();
        QVERIFY(manager->reportedAdIds().isEmpty());
    }

    void survivesWhoeverDies()
    {
        const auto records = load(3);
        auto shown = view({0, 0, 10, 10});
        manager->registerAdForView(shown.get(), records[0]);
        shown.reset();
        QTRY_VERIFY(!isChecking(records[0]));

        shown = view({0, 0, 10, 10});
        manager->registerAdForView(shown.get(), records[1]);
        QTRY_COMPARE(hits("/t/view/2"), 1);
        manager->deallocAllFeedProperty(); // with the report in flight
        manager->registerAdForView(shown.get(), records[2]);
        host.then = [this](const QString &) { manager.reset(); };
        manager->adViewDidExposure(shown.get());
        QVERIFY(!manager);
        twoTicks();
        QCOMPARE(hits("/t/view/3"), 0);
    }
};

QTEST_MAIN(TestFeedManager)
#include "tst_feedmanager.moc"
