#include "interstitial/interstitialhost.h"
#include "support/exchangetest.h"
#include "support/safearea.h"

#include <ZNTAds/ZNTInterstitialAd.h>

#include <QQmlComponent>
#include <QQmlEngine>

using namespace znt;
using test::Host;
using test::ScreenWindow;

class TestInterstitialAd : public QObject
{
    Q_OBJECT

private:
    test::TrustedExchange exchange;

    std::unique_ptr<ZNTInterstitialAd> shown(
        QQuickItem *screen, Host *host, const QByteArray &ad = "{}")
    {
        auto presenter = std::make_unique<ZNTInterstitialAd>(QStringLiteral("position"));
        presenter->setDelegate(host);
        presenter->setupWithAdData(exchange.parsed(ad));
        presenter->showFromViewController(screen);
        return presenter;
    }

    static QString frames(const ScreenWindow &window)
    {
        QStringList all;
        for (const char *name : {"containerView", "adImageView", "logoImageView", "adLabel",
                 "bottomInfoView", "descLabel", "skipButton"}) {
            const QQuickItem *item = window.subview(name);
            all.append(QStringLiteral("%1,%2 %3x%4")
                           .arg(item->x())
                           .arg(item->y())
                           .arg(item->width())
                           .arg(item->height()));
        }
        return all.join(QStringLiteral(" | "));
    }

private slots:
    void init() { test::failOnWarnings(); }

    void laysOut_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QMarginsF>("insets");
        QTest::addColumn<QString>("expected");

        // The overlay, the picture, its badge and logo, its bar and text, the close button.
        QTest::newRow("small phone")
            << QSize(320, 568) << QMarginsF()
            << "0,0 320x568 | 32,130.4 256x307.2 | 208,257.2 36x18 | 208,257.2 36x18 | "
               "0,263.2 256x44 | 15,0 141x44 | 218,140.4 60x25";
        QTest::newRow("phone, insets that matter to nothing")
            << QSize(375, 812) << QMarginsF(0, 44, 0, 34)
            << "0,0 375x812 | 37.5,226 300x360 | 252,310 36x18 | 252,310 36x18 | 0,316 300x44 | "
               "15,0 185x44 | 267.5,236 60x25";
        QTest::newRow("landscape with bars, the button would be off screen")
            << QSize(812, 375) << QMarginsF(44, 24, 44, 21)
            << "0,0 812x375 | 81.2,-202.26 649.6x779.52 | 601.6,729.52 36x18 | "
               "601.6,729.52 36x18 | 0,735.52 649.6x44 | 15,0 534.6x44 | 660.8,34 60x25";
        QTest::newRow("smaller than the button")
            << QSize(50, 20) << QMarginsF()
            << "0,0 50x20 | 5,-14 40x48 | -8,-2 36x18 | -8,-2 36x18 | 0,4 40x44 | 15,0 -75x44 | "
               "-5,-2.5 60x25";
    }

    void laysOut()
    {
        QFETCH(QSize, size);
        QFETCH(QMarginsF, insets);
        QFETCH(QString, expected);
        SafeArea::instance()->setInsets(insets);

        ScreenWindow window(size);
        Host host;
        const auto ad = shown(window.screen, &host);
        QCOMPARE(frames(window), expected);

        // Resized and back again: the same.
        window.resize(size + QSize(100, 60));
        window.screen->setSize(size + QSize(100, 60));
        QVERIFY(frames(window) != expected);
        window.resize(size);
        window.screen->setSize(size);
        QTRY_COMPARE(frames(window), expected);
        SafeArea::instance()->setInsets({});
    }

    void showsTextsAndPictures_data()
    {
        QTest::addColumn<QByteArray>("ad");
        QTest::addColumn<QStringList>("texts"); // any of them
        QTest::addColumn<bool>("picture");
        QTest::addColumn<bool>("logo"); // in place of the badge
        QTest::addColumn<bool>("logoArrives");

        const QStringList none{QStringLiteral("广告内容")};
        QTest::newRow("nothing in it") << QByteArray(R"({"images": [{"url": ""}], "sourceLogo": "",
                "texts": [{"type": "TXT", "content": ""}]})")
                                       << none << false << false << false;
        QTest::newRow("all of it")
            << QByteArray(R"({"images": [{"url": "${BASE}/creatives/interstitial.jpg"}],
                "sourceLogo": "${BASE}/creatives/logo-tea.png", "texts": [1, {"type": "DESC",
                "content": "x"}, {"type": "TXT", "content": "a"}, {"type": "TITLE", "content": "b"},
                {"type": "TXT", "content": 5}]})")
            << QStringList{QStringLiteral("a"), QStringLiteral("b")} << true << true << true;
        QTest::newRow("not to be had")
            << QByteArray(R"({"images": ["${BASE}/creatives/interstitial.jpg"],
                "sourceLogo": "file:/etc/hostname", "texts": [{"type": "DESC", "content": "x"}]})")
            << none << false << true << false;
    }

    void showsTextsAndPictures()
    {
        QFETCH(QByteArray, ad);
        QFETCH(QStringList, texts);
        QFETCH(bool, picture);
        QFETCH(bool, logo);
        QFETCH(bool, logoArrives);

        ScreenWindow window;
        Host host;
        QStringList seen;
        for (int i = 0; i < 50 && seen.size() < texts.size(); ++i) {
            const auto presenter = shown(window.screen, &host, ad);
            const QString text = window.subview("descLabel")->property("text").toString();
            QVERIFY2(texts.contains(text), qPrintable(text));
            if (!seen.contains(text))
                seen.append(text);
        }
        QCOMPARE(seen.size(), texts.size());

        const auto presenter = shown(window.screen, &host, ad);
        const auto has = [&](const char *name, const char *property) {
            return window.subview(name)->property(property).toBool();
        };
        QCOMPARE(has("logoImageView", "hidden"), !logo);
        QCOMPARE(has("adLabel", "hidden"), logo);
        QTRY_COMPARE(has("adImageView", "hasImage"), picture);
        QTRY_COMPARE(has("logoImageView", "hasImage"), logoArrives);
    }

    // One is closed by its button, the other by the keyboard.
    void closesOnceTheCountdownHasEnded()
    {
        ScreenWindow window, other; // the other is the active one
        Host host, otherHost;
        auto *field = new QQuickItem(other.screen);
        field->forceActiveFocus();
        const auto otherAd = shown(other.screen, &otherHost);
        const auto ad = shown(window.screen, &host);

        QStringList titles;
        const auto closable = [&] {
            const QString title = window.subview("skipButton")->property("text").toString();
            if (titles.isEmpty() || titles.last() != title)
                titles.append(title);
            return title == QStringLiteral("关闭");
        };
        QVERIFY(!closable());
        window.tap("skipButton");
        QTest::mouseClick(&window, Qt::LeftButton, {}, {5, 5}); // the dimmed ground
        for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Space})
            QTest::keyClick(&other, key); // Tab stays with the one button that there is so far
        QTRY_COMPARE(otherHost.heard, QStringList({"click", "visible"}));
        QTRY_COMPARE(host.heard, QStringList({"visible"}));
        window.tap("adImageView");
        QTRY_COMPARE(host.heard, QStringList({"visible", "click"}));
        QTest::mouseClick(
            &window, Qt::LeftButton, {}, window.centre("bottomInfoView") + QPoint(100, 0));
        QTRY_COMPARE(host.heard, QStringList({"visible", "click", "click"}));

        QVERIFY(QTest::qWaitFor(closable, 7000));
        QCOMPARE(titles, QStringList({"5", "4", "3", "2", "1", QStringLiteral("关闭")}));
        window.tap("skipButton");
        window.tap("skipButton"); // a double click closes once
        QTRY_VERIFY(!ad->adView());
        QVERIFY(ad->isReady());
        QTRY_COMPARE(host.heard, QStringList({"visible", "click", "click", "closed"}));
        QVERIFY(!window.subview("containerView") && !ad->isReady());

        QTRY_COMPARE(otherAd->remainingTime(), 0);
        for (const bool onSkipButton : {true, false, true}) {
            QTest::keyClick(&other, Qt::Key_Tab);
            QCOMPARE(other.subview("skipButton")->hasActiveFocus(), onSkipButton);
        }
        QTest::keyClick(&other, Qt::Key_Escape);
        QTRY_COMPARE(otherHost.heard, QStringList({"click", "visible", "closed"}));
        QTRY_COMPARE(other.activeFocusItem(), field);
    }

    void tellsEveryDismissal()
    {
        ScreenWindow window;
        Host host;
        const auto ad = shown(window.screen, &host);
        ad->dismissWithAutoClose(true); // still fading in
        ad->dismissWithAutoClose(false);
        QTRY_COMPARE(host.heard, QStringList({"auto-closed", "closed"}));
        ad->dismissWithAutoClose(true);
        QTRY_COMPARE(host.heard, QStringList({"auto-closed", "closed", "auto-closed"}));
        ad->showFromViewController(window.screen);
        QVERIFY(!ad->adView());

        ZNTInterstitialAd empty({});
        empty.setupWithAdData({});
        empty.showFromViewController(window.screen);
        empty.setupWithAdData(QJsonObject());
        empty.showFromViewController(nullptr);
        QVERIFY(!empty.adView());
    }

    void letsNothingThrough()
    {
        const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
        QQmlEngine engine;
        QQmlComponent component(&engine);
        component.setData(R"(import QtQuick
            Flickable {
                property var hits: new Set()
                contentHeight: 5000
                contentWidth: width
                onMovementStarted: hits.add("flick")
                Shortcut { sequence: "a"; onActivated: hits.add("shortcut") }
                Keys.onPressed: hits.add("key")
                function taken(): string { const all = [...hits].sort().join(" "); hits.clear(); return all }
                Item {
                    objectName: "screen"
                    width: 375; height: 812
                    TapHandler { onTapped: hits.add("tap") }
                    HoverHandler { acceptedDevices: PointerDevice.Mouse
                            onHoveredChanged: hits.add("hover") }
                    Item {
                        anchors.fill: parent
                        z: 100
                        TapHandler { onTapped: hits.add("tap") }
                        DragHandler { target: null; yAxis.enabled: false
                            onActiveChanged: hits.add("drag") }
                        WheelHandler { onWheel: hits.add("wheel") }
                    }
                }
            })",
            {});
        ScreenWindow window;
        const std::unique_ptr<QObject> beneath(component.create());
        auto *flickable = qobject_cast<QQuickItem *>(beneath.get());
        QVERIFY2(flickable, qPrintable(component.errorString()));
        flickable->setParentItem(window.screen);
        flickable->setSize(window.size());
        flickable->forceActiveFocus();

        const auto useAll = [&](QPoint at) {
            QTest::mouseMove(&window, {1, 1});
            QTest::mouseMove(&window, at);
            QTest::mouseClick(&window, Qt::LeftButton, {}, at);
            QWheelEvent wheel(at, at, {}, {0, 120}, {}, {}, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(&window, &wheel);
            QTest::keyClick(&window, Qt::Key_A);
            QTest::keyClick(&window, Qt::Key_B);
            for (const QPoint step : {QPoint(4, 0), QPoint(0, -4)}) {
                QTest::mousePress(&window, Qt::LeftButton, {}, at);
                for (int i = 1; i < 20; ++i)
                    QTest::mouseMove(&window, at + i * step);
                QTest::mouseRelease(&window, Qt::LeftButton, {}, at + 20 * step);
                QTest::touchEvent(&window, finger.get()).press(0, at);
                for (int i = 1; i < 20; ++i)
                    QTest::touchEvent(&window, finger.get()).move(0, at + i * step);
                QTest::touchEvent(&window, finger.get()).release(0, at + 20 * step);
            }
            QString taken;
            QMetaObject::invokeMethod(flickable, "taken", Q_RETURN_ARG(QString, taken));
            return taken;
        };
        QCOMPARE(useAll({100, 400}), QStringLiteral("drag flick hover key shortcut tap wheel"));
        flickable->setProperty("contentY", 0);

        Host host;
        const auto ad = shown(window.subview("screen"), &host);
        for (const QPoint at : {QPoint(5, 100), QPoint(100, 400)}) // the ground, the picture
            QCOMPARE(useAll(at), QString());
        ad->dismissWithAutoClose(true);
        QCOMPARE(useAll({5, 100}), QString());
        QTRY_VERIFY(!window.subview("containerView"));
        QVERIFY(useAll({5, 100}).contains(QStringLiteral("tap")));
    }

    void survives_data()
    {
        QTest::addColumn<QString>("after"); // the event after which it happens, none: at once
        QTest::addColumn<QString>("gone");
        for (const char *after : {"", "visible", "click", "dismissed", "auto-closed"}) {
            for (const char *gone : {"screen", "window", "presenter", "delegate"})
                QTest::addRow("%s gone, %s", gone, *after ? after : "shown")
                    << QString::fromLatin1(after) << QString::fromLatin1(gone);
        }
    }

    void survives()
    {
        QFETCH(QString, after);
        QFETCH(QString, gone);
        auto window = std::make_unique<ScreenWindow>();
        auto host = std::make_unique<Host>();
        auto ad =
            shown(window->screen, host.get(), R"({"sourceLogo": "${BASE}/creatives/logo-tea.png",
            "images": [{"url": "${BASE}/creatives/interstitial.jpg"}]})");
        const QPointer<QQuickItem> container = window->subview("containerView");
        bool isGone = false;
        const auto destroy = [&] {
            isGone = true;
            if (gone == QStringLiteral("screen"))
                delete window->screen;
            else if (gone == QStringLiteral("window"))
                window.reset();
            else if (gone == QStringLiteral("presenter"))
                ad.reset();
            else
                delete host.release();
        };
        host->then = [&](const QString &event) {
            if (event == after && gone == QStringLiteral("delegate"))
                QMetaObject::invokeMethod(qApp, destroy, Qt::QueuedConnection);
            else if (event == after)
                destroy();
        };
        if (after.isEmpty())
            destroy();
        if (after == QStringLiteral("click")) {
            QTRY_COMPARE(host->heard, QStringList({"visible"}));
            window->tap("adImageView");
        }
        if (after == QStringLiteral("dismissed") || after == QStringLiteral("auto-closed"))
            ad->dismissWithAutoClose(true);
        if (after == QStringLiteral("dismissed"))
            destroy();
        QTRY_VERIFY(isGone);
        if (gone != QStringLiteral("delegate") || after == QStringLiteral("auto-closed"))
            QTRY_VERIFY(!container);
        if (host && ad && !ad->isReady())
            QTRY_COMPARE(host->heard.last(), QStringLiteral("auto-closed"));
        QTest::qWait(350); // whatever still runs
    }
};

QTEST_MAIN(TestInterstitialAd)
#include "tst_interstitialad.moc"
