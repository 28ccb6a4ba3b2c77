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
    ~Stage()
    {
        splash.reset();
        interstitial.reset();
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

    static void addFormats()
    {
        QTest::addColumn<Format>("format");
        QTest::addRow("splash") << Format::Splash;
        QTest::addRow("interstitial") << Format::Interstitial;
    }

private slots:
    void init() { failOnWarnings(); }

    void liesOverWhateverTheHostRaises_data() { addFormats(); }
    void liesOverWhateverTheHostRaises()
    {
        QFETCH(const Format, format);
        Stage stage(exchange, format);
        auto *high = new QQuickItem(
            format == Format::Splash ? stage.earlier->parentItem() : stage.earlier.data());
        high->setZ(2e6);
        QVERIFY(stage.shows());
        auto *newcomer = new QQuickItem(high->parentItem());
        newcomer->setZ(1e5);
        QVERIFY(stage.ad->z() >= high->z() && stage.ad->z() > newcomer->z());
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
    // Any two in that order within one iteration of the event loop, the others after it.
    void survivesEveryOrderOfDestruction()
    {
        QFETCH(const Format, format);
        QFETCH(const bool, isFading);
        for (int i = 0; i < 5 * 5 * 2; ++i) {
            Stage stage(exchange, format);
            const QPointer<QQuickItem> owner =
                new QQuickItem(i % 2 ? stage.later.data() : stage.earlier.data());
            owner->forceActiveFocus();
            QVERIFY(stage.shows());
            if (isFading)
                stage.close();
            QStringList heard;
            const std::function<void()> destroyers[] = {[&] { stage.window.reset(); },
                [&] { delete stage.earlier; }, [&] { delete stage.later; },
                [&] { delete stage.ad; },
                [&] {
                    stage.splash.reset();
                    stage.interstitial.reset();
                    heard = stage.host.heard;
                }};
            destroyers[i / 2 % 5]();
            destroyers[i / 10]();
            QCoreApplication::processEvents();
            if (stage.window && !stage.ad && owner)
                QCOMPARE(stage.window->activeFocusItem(), owner);
            for (const auto &destroy : destroyers)
                destroy();
            QCoreApplication::processEvents();
            QVERIFY(!stage.ad);
            QCOMPARE(stage.host.heard, heard);
        }
    }

    void givesNoFocusToWhoIsGone_data() { addFormats(); }
    void givesNoFocusToWhoIsGone()
    {
        QFETCH(const Format, format);
        for (const bool isDestroyed : {false, true}) {
            for (const bool isGoneFirst : {false, true}) {
                Stage stage(exchange, format);
                auto owner = std::make_unique<QQuickItem>(stage.later);
                owner->forceActiveFocus();
                QVERIFY(stage.shows());
                const auto go = [&] {
                    owner->setParentItem(nullptr);
                    if (isDestroyed)
                        owner.reset();
                };
                if (isGoneFirst)
                    go();
                delete stage.ad; // the focus is given back in the next iteration
                if (!isGoneFirst)
                    go();
                QCoreApplication::processEvents();
                QVERIFY(!owner || !owner->hasActiveFocus());
                const QQuickItem *now = stage.window->activeFocusItem();
                QVERIFY(!now || now->isFocusScope());
            }
        }
    }

    // While it counts down, and then until Escape or Android's Back closes it.
    void isADialogThatKeepsTheKeyboard_data()
    {
        QTest::addColumn<Qt::Key>("closing");
        QTest::addRow("Escape") << Qt::Key_Escape;
        QTest::addRow("Back") << Qt::Key_Back;
    }
    void isADialogThatKeepsTheKeyboard()
    {
        QFETCH(const Qt::Key, closing);
        for (const Format format : {Format::Splash, Format::Interstitial}) {
            Stage stage(exchange, format);
            int shortcuts = 0;
            for (const QKeySequence &keys : {QKeySequence("a"), QKeySequence("Ctrl+S"),
                     QKeySequence("Tab"), QKeySequence(closing)}) {
                const auto *shortcut = new QShortcut(keys, stage.window.get());
                connect(shortcut, &QShortcut::activated, this, [&] { ++shortcuts; });
            }
            const auto typeAll = [&] {
                stage.press(Qt::Key_A);
                stage.press(Qt::Key_S, Qt::ControlModifier);
                stage.press(closing);
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
            QTRY_VERIFY_WITH_TIMEOUT(isCountedDown(), 7000);
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
