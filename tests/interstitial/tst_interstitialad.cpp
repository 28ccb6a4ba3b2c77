#include "support/beneath.h"
#include "support/frames.h"
#include "support/screenwindow.h"
#include "ui/safearea.h"

#include <ZNTAds/ZNTInterstitialAd.h>

using namespace znt;
using namespace znt::test;

class TestInterstitialAd : public QObject
{
    Q_OBJECT

private:
    TrustedExchange exchange;
    RunningClock clock;

    std::unique_ptr<ZNTInterstitialAd> shown(
        QQuickItem *screen, Host *host, const QByteArray &ad = "{}")
    {
        auto presenter = std::make_unique<ZNTInterstitialAd>("position");
        presenter->setDelegate(host);
        presenter->setupWithAdData(exchange.parsed(ad));
        presenter->showFromViewController(screen);
        return presenter;
    }

private slots:
    void init()
    {
        failOnWarnings();
        clock.setSpeed(1);
    }

    void laysOut()
    {
        const std::tuple<QSize, QMarginsF, QString> rows[] = {
            {{320, 568}, {}, R"(containerView 0 0 320 568 adImageView 32 130.4 256 307.2
                logoImageView 208 257.2 36 18 adLabel 208 257.2 36 18
                bottomInfoView 0 263.2 256 44 descLabel 15 0 141 44 skipButton 218 140.4 60 25)"},
            {{375, 812}, {0, 44, 0, 34}, // insets that matter to nothing
                "adImageView 37.5 226 300 360 skipButton 267.5 236 60 25"},
            {{500, 460}, {}, // the button only just on screen
                "adImageView 50 -10 400 480 skipButton 380 0 60 25"},
            {{812, 375}, {44, 24, 44, 21}, // it would be off screen
                "adImageView 81.2 -202.26 649.6 779.52 skipButton 660.8 34 60 25"},
            {{50, 20}, {}, R"(containerView 0 0 50 20 adImageView 5 -14 40 48
                descLabel 15 0 -75 44 skipButton -5 -2.5 60 25)"}};
        for (const auto &[size, insets, frames] : rows) {
            SafeArea::instance()->setInsets(insets);
            ScreenWindow window(size);
            Host host;
            const auto ad = shown(window.screen, &host);
            const auto frame = [&](const QString &name) {
                const QQuickItem *item = window.subview(name);
                return QRectF(item->position(), item->size());
            };
            QCOMPARE(framesNow(frames, frame), frames.simplified());

            // Resized and back again: the same.
            for (const QSize &other : {size + QSize(100, 60), size}) {
                window.resize(other);
                window.screen->setSize(other);
                QTRY_COMPARE(framesNow(frames, frame) == frames.simplified(), other == size);
            }
        }
        SafeArea::instance()->setInsets({});
    }

    void showsTextsAndPictures()
    {
        // The ad, its text; whether there is a picture, a logo in place of the badge, and it comes.
        const std::tuple<QByteArray, QString, bool, bool, bool> rows[] = {
            {R"({"images": [{"url": ""}], "sourceLogo": "",
                "texts": [{"type": "TXT", "content": ""}]})",
                "广告内容", false, false, false},
            {R"({"images": [{"url": "${BASE}/creatives/interstitial.jpg"}],
                "sourceLogo": "${BASE}/creatives/logo-tea.png", "texts": [1, {"type": "DESC",
                "content": "x"}, {"type": "TXT", "content": "a"}, {"type": "TXT", "content": 5}]})",
                "a", true, true, true},
            {R"({"images": ["${BASE}/creatives/interstitial.jpg"],
                "sourceLogo": "file:/etc/hostname", "texts": [{"type": "TITLE", "content": "b"}]})",
                "b", false, true, false},
            {R"({"texts": [{"type": "DESC", "content": "x"}]})", "广告内容", false, false, false}};
        for (const auto &[ad, text, picture, logo, logoArrives] : rows) {
            ScreenWindow window;
            Host host;
            const auto presenter = shown(window.screen, &host, ad);
            const auto has = [&](const char *name, const char *property) {
                return window.subview(name)->property(property).toBool();
            };
            QCOMPARE(window.subview("descLabel")->property("text"), text);
            QCOMPARE(has("logoImageView", "hidden"), !logo);
            QCOMPARE(has("adLabel", "hidden"), logo);
            QTRY_COMPARE(has("adImageView", "hasImage"), picture);
            QTRY_COMPARE(has("logoImageView", "hasImage"), logoArrives);
        }
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
            return title == "关闭";
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

        clock.setSpeed(5);
        QTRY_VERIFY(closable());
        QCOMPARE(titles, QStringList({"5", "4", "3", "2", "1", "关闭"}));
        window.tap("skipButton");
        window.tap("skipButton"); // a double click closes once
        QVERIFY(ad->adView() && ad->isReady());
        QTRY_COMPARE(host.heard, QStringList({"visible", "click", "click", "closed"}));
        QVERIFY(!window.subview("containerView") && !ad->adView() && !ad->isReady());

        QTRY_COMPARE(otherAd->remainingTime(), 0);
        clock.advance(3s);
        QCOMPARE(otherAd->remainingTime(), 0);
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
        ScreenWindow window;
        Beneath beneath(window.screen);
        const QString everything = "drag flick hover key point shortcut tap wheel";
        QCOMPARE(beneath.hearsOf({100, 400}), everything);
        Host host;
        const auto ad = shown(beneath.screen(), &host);
        for (const QPoint at : {QPoint(5, 100), QPoint(100, 400)}) // the ground, the picture
            QCOMPARE(beneath.hearsOf(at), "");
        ad->dismissWithAutoClose(true);
        QCOMPARE(beneath.hearsOf({5, 100}), "");
        QTRY_VERIFY(!window.subview("containerView"));
        QCOMPARE(beneath.hearsOf({5, 100}), everything);
    }

    void survives_data()
    {
        QTest::addColumn<QString>("after"); // the event after which it happens, none: at once
        QTest::addColumn<QString>("gone");
        for (const char *after : {"", "visible", "click", "dismissed", "auto-closed"}) {
            for (const char *gone : {"screen", "window", "presenter", "delegate"})
                QTest::addRow("%s gone, %s", gone, *after ? after : "shown") << after << gone;
        }
    }

    void survives()
    {
        QFETCH(QString, after);
        QFETCH(QString, gone);
        clock.setSpeed(20);
        auto window = std::make_unique<ScreenWindow>();
        auto host = std::make_unique<Host>();
        auto ad =
            shown(window->screen, host.get(), R"({"sourceLogo": "${BASE}/creatives/logo-tea.png",
            "images": [{"url": "${BASE}/creatives/interstitial.jpg"}]})");
        const QPointer<QQuickItem> container = window->subview("containerView");
        bool isGone = false;
        const auto destroy = [&] {
            isGone = true;
            const QHash<QString, std::function<void()>> ways{
                {"screen", [&] { delete window->screen; }}, {"window", [&] { window.reset(); }},
                {"presenter", [&] { ad.reset(); }}, {"delegate", [&] { delete host.release(); }}};
            ways.value(gone)();
        };
        host->then = [&](const QString &event) {
            if (event == after && gone == "delegate")
                QMetaObject::invokeMethod(qApp, destroy, Qt::QueuedConnection);
            else if (event == after)
                destroy();
        };
        if (after == "click") {
            QTRY_COMPARE(host->heard, QStringList({"visible"}));
            window->tap("adImageView");
        }
        if (after == "dismissed" || after == "auto-closed")
            ad->dismissWithAutoClose(true);
        if (after.isEmpty() || after == "dismissed")
            destroy();
        QTRY_VERIFY(isGone);
        if (gone != "delegate" || after == "auto-closed")
            QTRY_VERIFY(!container);
        if (host && ad && !ad->isReady())
            QTRY_COMPARE(host->heard.last(), "auto-closed");
        clock.advance(350ms); // whatever still runs
    }
};

QTEST_MAIN(TestInterstitialAd)
#include "tst_interstitialad.moc"
