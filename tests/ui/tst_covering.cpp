// What covers a window, by the two formats that do.
#include "support/screenwindow.h"

#include <ZNTAds/ZNTInterstitialAd.h>
#include <ZNTAds/ZNTInterstitialManager.h>
#include <ZNTAds/ZNTSplashAdView.h>
#include <ZNTAds/ZNTSplashManager.h>

#include <QAccessible>
#include <QShortcut>

using namespace znt::test;

namespace {

enum class Format { Splash, Interstitial };

// An ad over a screen of the host's, which has further items, and the focus in one of them.
class Stage
{
public:
    Stage(const TrustedExchange &exchange, Format format)
        : window(std::make_unique<ScreenWindow>(QSize(120, 200)))
        , earlier(window->screen)
        , later(new QQuickItem(window->contentItem()))
    {
        earlier->setFlag(QQuickItem::ItemIsFocusScope);
        const QJsonObject answer = exchange.answer("splash");
        if (format == Format::Splash) {
            splash = std::make_unique<ZNTSplashManager>();
            splash->setDelegate(&host);
            splash->handleAdResponse(answer);
        } else {
            interstitial = std::make_unique<ZNTInterstitialManager>();
            interstitial->setDelegate(&host);
            interstitial->setShowAdController(window->screen);
            interstitial->handleAdResponse(answer);
        }
    }

    // False when it does not come to cover the window and to have the focus.
    bool shows()
    {
        if (splash) {
            splash->showSplashAdWithWindow(window.get());
            ad = splash->splashAdView();
        } else {
            interstitial->showInterstitialAd();
            ad = window->screen->childItems().constLast();
        }
        return QTest::qWaitFor([this] { return ad->isVisible() && hasFocus(); });
    }
    void close() const
    {
        if (splash)
            splash->closeSplashAd();
        else
            interstitial->interstitialAd()->dismissWithAutoClose(false);
    }
    bool hasFocus() const
    {
        const QQuickItem *now = window->activeFocusItem();
        return now && ad && (now == ad || ad->isAncestorOf(now));
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(window.get(), key, modifiers);
        QCoreApplication::sendPostedEvents();
    }

    Host host;
    std::unique_ptr<ScreenWindow> window;
    const QPointer<QQuickItem> earlier, later; // siblings; the interstitial lies in the earlier one
    std::unique_ptr<ZNTSplashManager> splash;
    std::unique_ptr<ZNTInterstitialManager> interstitial;
    QPointer<QQuickItem> ad;
};

} // namespace

class TestCovering : public QObject
{
    Q_OBJECT

private:
    TrustedExchange exchange;
    HostApplication application;

private slots:
    void init() { failOnWarnings(); }

    void liesOverWhateverTheHostRaises()
    {
        for (const Format format : {Format::Splash, Format::Interstitial}) {
            Stage stage(exchange, format);
            QQuickItem *under = stage.splash ? stage.window->contentItem() : stage.earlier.data();
            QQuickItem high(under);
            high.setZ(2e6);
            QVERIFY(stage.shows());
            QQuickItem newcomer(under);
            newcomer.setZ(1e5);
            QVERIFY(stage.ad->z() >= high.z() && stage.ad->z() > newcomer.z());
        }
    }

    void survivesEveryOrderOfDestruction_data()
    {
        QTest::addColumn<Format>("format");
        QTest::addColumn<bool>("isFading");
        for (const bool isFading : {false, true}) {
            const char *state = isFading ? "fading" : "shown";
            QTest::addRow("splash, %s", state) << Format::Splash << isFading;
            QTest::addRow("interstitial, %s", state) << Format::Interstitial << isFading;
        }
    }
    // Any two within one iteration of the event loop, the others after it. Of the item that had the
    // focus it is enough that it leaves its window.
    void survivesEveryOrderOfDestruction()
    {
        QFETCH(const Format, format);
        QFETCH(const bool, isFading);
        for (int first = 0; first < 6; ++first) {
            for (int second = 0; second < 6; ++second) {
                Stage stage(exchange, format);
                const QPointer<QQuickItem> owner =
                    new QQuickItem((first + second) % 2 ? stage.later : stage.earlier);
                owner->forceActiveFocus();
                QVERIFY(stage.shows());
                if (isFading)
                    stage.close();
                QStringList heard;
                const std::function<void()> ways[] = {[&] { stage.window.reset(); },
                    [&] { delete stage.earlier; }, [&] { delete stage.later; },
                    [&] { delete stage.ad; },
                    [&] {
                        stage.splash.reset();
                        stage.interstitial.reset();
                        heard = stage.host.heard;
                    },
                    [&] {
                        if (owner)
                            owner->setParentItem(nullptr);
                    }};
                ways[first]();
                ways[second]();
                QCoreApplication::processEvents();
                if (stage.window && !stage.ad && owner && owner->window())
                    QCOMPARE(stage.window->activeFocusItem(), owner);
                for (const auto &destroy : ways)
                    destroy();
                QCoreApplication::processEvents();
                QVERIFY(!stage.ad);
                QCOMPARE(stage.host.heard, heard);
            }
        }
    }

    // While it counts down, and then until Escape or Android's Back closes it.
    void isADialogThatKeepsTheKeyboard()
    {
        const std::pair<Format, Qt::Key> rows[] = {{Format::Splash, Qt::Key_Escape},
            {Format::Splash, Qt::Key_Back}, {Format::Interstitial, Qt::Key_Escape},
            {Format::Interstitial, Qt::Key_Back}};
        for (const auto &[format, closing] : rows) {
            application.clock.setSpeed(1);
            Stage stage(exchange, format);
            int shortcuts = 0;
            for (const QKeySequence &keys : {QKeySequence("a"), QKeySequence("Ctrl+S"),
                     QKeySequence("Tab"), QKeySequence(closing)}) {
                const auto *shortcut = new QShortcut(keys, stage.window.get());
                connect(shortcut, &QShortcut::activated, this, [&] { ++shortcuts; });
            }
            const auto typeAll = [&stage, key = closing] {
                stage.press(Qt::Key_A);
                stage.press(Qt::Key_S, Qt::ControlModifier);
                stage.press(key);
            };
            stage.earlier->setActiveFocusOnTab(true);
            stage.later->setActiveFocusOnTab(true);
            stage.press(Qt::Key_Tab);
            typeAll();
            QCOMPARE(std::exchange(shortcuts, 0), 4);
            stage.later->forceActiveFocus();

            QVERIFY(stage.shows());
            const auto accessible = [](QObject *item) {
                return QAccessible::queryAccessibleInterface(item);
            };
            QAccessibleInterface *dialog = accessible(stage.ad->childItems().constFirst());
            QVERIFY(dialog && dialog->role() == QAccessible::Dialog);
            QCOMPARE(dialog->text(QAccessible::Name), "广告");
            for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
                for (int i = 0; i < 5; ++i) {
                    stage.press(key);
                    QVERIFY(stage.hasFocus());
                }
            }

            auto *button = stage.window->subview("skipButton");
            QSet<QString> names, titles;
            const auto isCountedDown = [&] {
                names.insert(accessible(button)->text(QAccessible::Name));
                titles.insert(button->property("text").toString());
                return button->property("clickable").toBool() && titles.size() > 1;
            };
            if (format == Format::Interstitial) { // cannot be closed yet
                stage.press(closing);
                QVERIFY(stage.hasFocus() && !stage.host.heard.contains("closed"));
            }
            application.clock.setSpeed(20);
            QTRY_VERIFY(isCountedDown());
            QCOMPARE(names, QSet<QString>{format == Format::Splash ? "跳过" : "关闭"});

            typeAll();
            QCOMPARE(shortcuts, 0);
            QVERIFY(!stage.splash || stage.splash->remainingTime() == 0);
            QTRY_VERIFY(!stage.ad);
            QCOMPARE(stage.host.heard.last(), format == Format::Splash ? "finish" : "closed");
            QTRY_COMPARE(stage.window->activeFocusItem(), stage.later);
        }
    }
};

QTEST_MAIN(TestCovering)
#include "tst_covering.moc"
