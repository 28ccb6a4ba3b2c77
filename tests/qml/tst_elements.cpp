#include "support/host.h"
#include "ui/visibleshare.h"

#include <ZNTAds/ZNTFeedAdItem.h>
#include <ZNTAds/ZNTFeedAdPlacer.h>
#include <ZNTAds/ZNTFeedAdView.h>
#include <ZNTAds/ZNTFeedManager.h>

#include <QAbstractItemModelTester>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QRandomGenerator>
#include <QStandardItemModel>
#include <QTranslator>

using namespace znt;
using namespace znt::test;

// Hosts that are written in QML.
class TestElements : public QObject
{
    Q_OBJECT

private:
    TrustedExchange exchange;
    HostApplication application;
    QQmlEngine engine;
    std::unique_ptr<QQuickWindow> window;

    // A window with `content` in it; what happens is appended to its `heard`.
    void create(const QByteArray &content, const QByteArray &imports = {})
    {
        window.reset();
        QQmlComponent component(&engine);
        component.setData("import QtQuick; import QtQml.Models; import ZNTAds; " + imports
                + "Window { width: 375; height: 600; visible: true; property var heard: [];"
                  "function hear(what) { heard.push(what) }"
                + content + "}",
            QUrl("host.qml"));
        window.reset(qobject_cast<QQuickWindow *>(component.create()));
        if (!window)
            qFatal("%s", qPrintable(component.errorString()));
        QVERIFY(QTest::qWaitForWindowExposed(window.get()));
    }
    QStringList heard() const { return window->property("heard").toStringList(); }
    template <class Type>
    Type *find(const char *name) const
    {
        return window->findChild<Type *>(name);
    }
    // A row of the list named "list".
    ZNTFeedAdItem *row(int index) const
    {
        QQuickItem *item = nullptr;
        QMetaObject::invokeMethod(find<QQuickItem>("list"), "itemAtIndex",
            Q_RETURN_ARG(QQuickItem *, item), Q_ARG(int, index));
        return qobject_cast<ZNTFeedAdItem *>(item);
    }
    // Ads "1" to `count` at the position "feed", in the templates 0, 1, ….
    void offerFeed(int count)
    {
        QByteArrayList ads;
        for (int i = 1; i <= count; ++i) {
            ads.append(QByteArray(R"({"adId": "@", "adStyle": "XCT", "trackInfo": {
                "viewUrl3rd": ["${BASE}/t/view/@"], "clickUrl3rd": ["${BASE}/t/click/@"]},
                "urlInfo": {"h5url": "${BASE}/landing/@"}})")
                           .replace('@', QByteArray::number(i)));
        }
        exchange.setAnswer(
            "feed", exchange.parsed(R"({"code": 200, "data": [)" + ads.join(',') + "]}"));
    }

private slots:
    void initTestCase() { ZNTAdsSDK::setLogEnabled(false); }

    void init()
    {
        failOnWarnings();
        exchange.forgetRequests();
        application.opened.clear();
    }

    void cleanup() { window.reset(); }

    void splash()
    {
        create("SplashAd { id: ad; objectName: 'ad'; mediaId: 'splash'; style: SplashAd.Slide;"
               "showWhenLoaded: true; Component.onCompleted: load();"
               "onLoaded: hear('loaded ' + ready + shown); onAppeared: hear('appeared ' + shown);"
               "onRendered: hear('rendered ' + seen); onClosed: hear('closed ' + shown + ready);"
               "onRemainingSecondsChanged: if (remainingSeconds === 5) hear('5'); }");
        auto *ad = find<QObject>("ad");
        QVERIFY(ad->property("loading").toBool());
        const QStringList shown{"loaded truefalse", "appeared true", "5", "rendered true"};
        QTRY_COMPARE(heard(), shown);
        QVERIFY(QMetaObject::invokeMethod(ad, "close"));
        QTRY_COMPARE(heard(), shown + QStringList{"closed falsefalse"});

        ad->setProperty("mediaId", QString());
        QVERIFY(QMetaObject::invokeMethod(ad, "load"));
        QTRY_COMPARE(ad->property("error").value<ZNTError>().code(), -1001);
        QVERIFY(!ad->property("loading").toBool());
    }

    void interstitial()
    {
        create("Item { InterstitialAd { id: ad; objectName: 'ad'; mediaId: 'interstitial';"
               "Component.onCompleted: load(); onLoaded: show(); onAppeared: hear('appeared');"
               "onRendered: close(); onFailed: error => hear(error.domain + error.code);"
               "onClosed: automatically => hear('closed ' + automatically + seen + ready); } }");
        QTRY_COMPARE(heard(), (QStringList{"appeared", "closed falsetruetrue"}));
        exchange.setAnswer("broken", R"({"code": 200})");
        find<QObject>("ad")->setProperty("mediaId", "broken");
        QVERIFY(QMetaObject::invokeMethod(find<QObject>("ad"), "load"));
        QTRY_COMPARE(heard().last(), "ZNTInterstitialManager-1002");
    }

    // Each handler ends what called it; a host that sets nothing hears of its failure.
    void endsInItsOwnHandlers()
    {
        for (const QByteArray &element : {QByteArray("SplashAd"), QByteArray("InterstitialAd")}) {
            const QByteArray position = element == "SplashAd" ? "splash" : "interstitial";
            for (const QByteArray &handler :
                {QByteArray("onLoaded"), QByteArray("onAppeared"), QByteArray("onRendered"),
                    QByteArray("onStateChanged: if (shown) ad.destroy(); onClicked")}) {
                create("Item { Loader { id: loader; sourceComponent: Component { " + element
                    + " { id: ad; mediaId: '" + position
                    + "'; showWhenLoaded: true; Component.onCompleted: load();" + handler
                    + ": { hear('gone'); loader.active = false } "
                      "Component.onDestruction: hear('gone') } } } }");
                QTRY_VERIFY(heard().contains("gone") || handler.contains("State"));
                QTest::qWait(0);
            }
        }
        create("SplashAd { id: s; onFailed: hear('s') } FeedAds { id: f; onFailed: hear('f') }"
               "InterstitialAd { id: i; onFailed: hear('i') } FeedAd { } FeedAdPlacer { }"
               "Component.onCompleted: { s.load(); i.load(); f.load() }");
        QTRY_COMPARE(heard().size(), 3);
    }

    // Every row is about its own ad, also when the list gives it another one.
    void aListOfAds()
    {
        offerFeed(30);
        create("FeedAds { id: ads; objectName: 'ads'; mediaId: 'feed'; adCount: -1;"
               "Component.onCompleted: load(); onLoaded: hear(count + adCount) }"
               "ListView { objectName: 'list'; anchors.fill: parent; model: ads; reuseItems: true;"
               "clip: true; delegate: FeedAd { required property var model; width: ListView.view"
               ".width; height: implicitHeight; adData: model.adData;"
               "onRendered: hear('seen ' + adData.adId); onClicked: hear('click ' + adData.adId);"
               "onClosed: ads.remove(adData); onTargetOpened: hear('opened') } }");
        QTRY_VERIFY(heard().contains("seen 1"));
        QTRY_COMPARE(exchange.hits("/t/view/1"), 1);
        QCOMPARE(row(0)->width(), 375.0);
        QVERIFY(row(0)->height() > 50);

        auto *list = find<QQuickItem>("list");
        QMetaObject::invokeMethod(list, "positionViewAtEnd");
        QTRY_VERIFY(heard().contains("seen 30"));
        QMetaObject::invokeMethod(list, "positionViewAtBeginning");
        QTRY_VERIFY(row(0) && row(0)->ad().adId() == "1");
        twoTicks();
        QTRY_COMPARE(exchange.hits("/t/view/30"), 1);
        QCOMPARE(exchange.hits("/t/view/1"), 1);
        QCOMPARE(exchange.hits("/t/view/15"), 0);
        QVERIFY(row(0)->isSeen());

        ZNTFeedAdItem *second = row(1);
        QTest::mouseClick(window.get(), Qt::LeftButton, {}, second->mapToScene({40, 40}).toPoint());
        QTRY_VERIFY(heard().contains("opened"));
        QVERIFY(heard().contains("click 2"));
        QCOMPARE(application.opened, QStringList{exchange.at("/landing/2")});
        QTRY_COMPARE(exchange.hits("/t/click/2"), 1);

        second->adView()->closeButtonClicked();
        QTRY_VERIFY(row(1) && row(1)->ad().adId() == "3");
        QVERIFY(exchange.waitForRequests("/s/negfb.do", 1));
        QVERIFY(exchange.requests("/s/negfb.do").first().body.contains(R"("2")"));
        QCOMPARE(find<ZNTFeedAds>("ads")->count(), 29);
        QCOMPARE(second->ad().adId(), "2"); // it is kept for another ad, and not drawn
        QCOMPARE(visibleShare(second), std::nullopt);
    }

    void anItemThatIsGivenAnything()
    {
        offerFeed(2);
        create("FeedAds { id: ads; objectName: 'ads'; mediaId: 'feed'; adCount: 2; "
               "Component.onCompleted: load() } FeedAd { objectName: 'item'; width: 300;"
               "height: implicitHeight }");
        auto *ads = find<ZNTFeedAds>("ads");
        auto *item = find<ZNTFeedAdItem>("item");
        QTRY_COMPARE(ads->count(), 2);
        for (const QVariant &value : {QVariant(), QVariant::fromValue(nullptr), QVariant(7),
                 QVariant("ad"), QVariant::fromValue(ads->get(5))}) {
            item->setProperty("adData", value);
            QVERIFY(!item->adView() && item->height() == 0);
        }
        item->setAd(ads->get(0));
        QVERIFY(item->adView() && item->height() > 50);
        QVERIFY(ads->manager()->isCheckingVisibility(ads->get(0).adData()));
        item->setAd(ads->get(1));
        QVERIFY(!ads->manager()->isCheckingVisibility(ads->get(0).adData()));
        QVERIFY(ads->manager()->isCheckingVisibility(ads->get(1).adData()));
        const QPalette palette = QGuiApplication::palette();
        QCOMPARE(item->color().alpha(), 0);
        QGuiApplication::setPalette(QPalette(Qt::white, Qt::black, {}, {}, {}, {}, {}, {}, {}));
        window->setColor(Qt::black);
        item->update();
        QTRY_COMPARE(window->grabWindow().pixelColor(150, 2), QColor(Qt::white));
        item->setColor(Qt::yellow);
        QCOMPARE(window->grabWindow().pixelColor(150, 2), QColor(Qt::yellow));
        QGuiApplication::setPalette(palette);
        ads->load(); // while it shows an ad of the load before
        QSignalSpy loaded(ads, &ZNTFeedAds::loaded);
        QTRY_COMPARE(loaded.size(), 1);
        const ZNTFeedAd ad = item->ad();
        delete ads;
        QVERIFY(!ad.manager() && ad.adId() == "2");
        item->adView()->adViewTapped();
        item->setAd({});
    }

    // Whatever the user sees or hears of an ad that brings no texts of its own.
    void textsAreTheTranslators()
    {
        struct Bracketed : QTranslator
        {
            QString translate(
                const char *context, const char *text, const char *, int) const override
            {
                return qstrcmp(context, "ZNTAds") == 0 ? QString("[%1]").arg(text) : QString();
            }
            bool isEmpty() const override { return false; }
        } translator;
        QCoreApplication::installTranslator(&translator);
        create("ZNTOverlayAdView { objectName: 'feed'; width: 300; height: 200 }"
               "ZNTSlideAdView { objectName: 'splash'; width: 300; height: 500 }");
        find<ZNTFeedAdView>("feed")->setupWithAdsData(std::make_shared<ZNTFeedAdData>());
        QStringList texts;
        for (const QObject *object : window->findChildren<QObject *>()) {
            const QString text = object->property("text").toString();
            if (!text.isEmpty() && text != u"×")
                texts.append(text);
        }
        QCoreApplication::removeTranslator(&translator);
        QVERIFY(texts.contains("[广告标题]") && texts.contains("[查看详情]"));
        for (const QString &text : std::as_const(texts))
            QVERIFY2(text.startsWith('['), qPrintable(text));
    }

    // The placer against plain arithmetic, while source and ads change at random.
    void adsBetweenRows()
    {
        offerFeed(6);
        ZNTFeedAds ads;
        ads.setMediaId("feed");
        ads.setAdCount(-1);
        ads.load();
        QTRY_COMPARE(ads.count(), 6);

        QStandardItemModel source;
        ZNTFeedAdPlacer placer;
        QAbstractItemModelTester tester(
            &placer, QAbstractItemModelTester::FailureReportingMode::QtTest);
        placer.setInterval(3);
        placer.setSourceModel(&source);
        placer.setAds(&ads);
        const auto verify = [&] {
            QStringList expected;
            for (int i = 0; i < source.rowCount(); ++i) {
                expected.append(source.item(i)->text());
                const int slot = (i + 1) / 3;
                if ((i + 1) % 3 == 0 && slot <= 6)
                    expected.append(QString("ad %1").arg(slot));
            }
            QStringList found;
            for (int i = 0; i < placer.rowCount(); ++i) {
                const QModelIndex index = placer.index(i, 0);
                const bool isAd = index.data(ZNTFeedAdPlacer::IsAdRole).toBool();
                found.append(isAd ? "ad " + placer.ad(i).adId() : index.data().toString());
                if (!isAd)
                    QCOMPARE(placer.rowOf(placer.sourceRow(i)), i);
            }
            QCOMPARE(found, expected);
        };
        QRandomGenerator random(7);
        int named = 0;
        for (int step = 0; step < 400; ++step) {
            const int rows = source.rowCount();
            const int at = random.bounded(rows + 1);
            if (rows < 25 && random.bounded(2)) {
                QList<QStandardItem *> items;
                for (int i = random.bounded(1, 6); i > 0; --i)
                    items.append(new QStandardItem(QString("row %1").arg(named++)));
                source.invisibleRootItem()->insertRows(at, items);
            } else if (rows > at) {
                source.removeRows(at, random.bounded(1, rows - at + 1));
            }
            if (step % 50 == 49)
                source.sort(0);
            verify();
        }
        source.clear();
        for (int i = 0; i < 9; ++i)
            source.appendRow(new QStandardItem(QString::number(i)));
        QVERIFY(ads.remove(placer.ad(3)));
        QCOMPARE(placer.rowCount(), 11);
        QVERIFY(!placer.isAd(3) && placer.isAd(6) && placer.isAd(10)); // the next one moved up
        ads.load();
        QSignalSpy loaded(&ads, &ZNTFeedAds::loaded);
        QTRY_COMPARE(loaded.size(), 1);
        QVERIFY(placer.isAd(3) && placer.isAd(7) && placer.isAd(11));
    }
};

QTEST_MAIN(TestElements)
#include "tst_elements.moc"
