// Hosts that do anything in any order, also inside of callbacks. Each life has a seed of its own,
// which is printed when it fails. ZNTADS_LIVES and ZNTADS_CYCLES make the runs longer, ZNTADS_SEED
// begins elsewhere.
#include "support/host.h"

#include <ZNTAds/ZNTFeedAdItem.h>
#include <ZNTAds/ZNTFeedAdView.h>
#include <ZNTAds/ZNTFeedAds.h>
#include <ZNTAds/ZNTFeedManager.h>
#include <ZNTAds/ZNTInterstitialAd.h>
#include <ZNTAds/ZNTInterstitialManager.h>
#include <ZNTAds/ZNTSplashAdView.h>
#include <ZNTAds/ZNTSplashManager.h>

#include <QDir>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QRandomGenerator>

#include <malloc.h>

using namespace znt::test;

extern Q_CORE_EXPORT quintptr qtHookData[];

namespace {

int setting(const char *name, int otherwise)
{
    bool isSet = false;
    const int value = qEnvironmentVariableIntValue(name, &isSet);
    return isSet ? value : otherwise;
}

// Everything that a host has, a few of each, and what it may do with them.
class Life
{
public:
    Life(quint32 seed, const TrustedExchange &exchange, ZNTTestClock *clock)
        : m_random(seed)
        , m_exchange(exchange)
        , m_clock(clock)
    {
    }
    ~Life()
    {
        m_depth = 99; // what is still heard does nothing more
        QList<int> kinds{0, 1, 2, 3, 4, 5, 6};
        while (!kinds.isEmpty()) {
            switch (kinds.takeAt(below(int(kinds.size())))) {
            case 0:
                m_windows.clear();
                break;
            case 1:
                clear(&m_items);
                break;
            case 2:
                m_splashes.clear();
                break;
            case 3:
                m_interstitials.clear();
                break;
            case 4:
                m_feeds.clear();
                break;
            case 5:
                m_hosts.clear();
                break;
            default:
                m_engines.clear();
            }
            if (below(2) == 0)
                QCoreApplication::processEvents();
        }
        m_clock->advance(std::chrono::milliseconds(400));
    }

    void step()
    {
        using Action = void (Life::*)();
        static constexpr Action actions[] = {&Life::window, &Life::item, &Life::changeItem,
            &Life::splash, &Life::useSplash, &Life::useSplash, &Life::interstitial,
            &Life::useInterstitial, &Life::useInterstitial, &Life::feed, &Life::useFeed,
            &Life::useFeed, &Life::host, &Life::tap, &Life::qml, &Life::pass, &Life::pass};
        (this->*actions[below(int(std::size(actions)))])();
    }

private:
    int below(int end) { return end > 0 ? m_random.bounded(end) : 0; }
    template <class Container>
    auto *any(Container &all)
    {
        return all.empty() ? nullptr : &*all[std::size_t(below(int(all.size())))];
    }
    // One more, or one less: at most three of each.
    template <class Type, class Make>
    void change(std::vector<std::unique_ptr<Type>> &all, Make make)
    {
        if (all.size() < 3 && below(3) > 0) {
            all.push_back(make());
        } else if (!all.empty()) {
            const auto at = all.begin() + below(int(all.size()));
            const std::unique_ptr<Type> gone = std::move(*at); // what it tells may change the list
            all.erase(at);
        }
    }
    static void clear(QList<QPointer<QQuickItem>> *items)
    {
        for (const auto &item : std::exchange(*items, {}))
            delete item;
    }

    Host *anyHost() { return any(m_hosts); }
    QQuickItem *anyItem()
    {
        m_items.removeAll(QPointer<QQuickItem>());
        return m_items.isEmpty() ? nullptr : m_items[below(int(m_items.size()))].data();
    }
    QJsonObject answer()
    {
        static constexpr const char *positions[] = {
            "splash", "interstitial", "feed", "wrong-types"};
        return m_exchange.answer(positions[below(4)]);
    }

    void host()
    {
        change(m_hosts, [this] {
            auto made = std::make_unique<Host>();
            made->then = [this](const QString &) {
                if (m_depth > 1 || below(3) > 0)
                    return;
                ++m_depth;
                step();
                --m_depth;
            };
            return made;
        });
    }
    void window()
    {
        if (QQuickWindow *window = any(m_windows); window && below(2) == 0) {
            window->resize(below(900), below(900));
            window->setVisible(below(3) > 0);
        } else {
            change(m_windows, [this] {
                auto made = std::make_unique<QQuickWindow>();
                made->resize(375, 200 + below(600));
                made->show();
                return made;
            });
        }
    }
    void item()
    {
        QQuickWindow *const window = any(m_windows);
        if (m_items.size() < 4 && window) {
            m_items.append(new QQuickItem(window->contentItem()));
            m_items.last()->setSize(window->size());
        } else {
            delete anyItem();
        }
    }
    void changeItem()
    {
        QQuickItem *const item = anyItem();
        if (!item)
            return;
        QQuickWindow *const window = any(m_windows);
        item->setParentItem(window && below(4) > 0 ? window->contentItem() : nullptr);
        item->setOpacity(below(3) / 2.0);
        item->setVisible(below(4) > 0);
        item->setSize(QSizeF(below(800), below(800)));
        item->setClip(below(2) == 0);
    }

    void splash()
    {
        change(m_splashes, [] { return std::make_unique<ZNTSplashManager>(); });
    }
    void useSplash()
    {
        const QPointer<ZNTSplashManager> splash(any(m_splashes));
        if (!splash)
            return;
        splash->setMediaId(below(5) == 0 ? QString() : QString("splash"));
        switch (below(9)) {
        case 0:
            return splash->setDelegate(anyHost());
        case 1:
            return splash->setAdStyle(below(4) - 1);
        case 2:
            return splash->setBottomView(anyItem());
        case 3:
            return splash->setShowAdController(anyItem());
        case 4:
            return splash->loadAndShowSplashAdWithWindow(any(m_windows));
        case 5:
            splash->handleAdResponse(answer());
            break;
        case 6:
            return splash->closeSplashAd();
        case 7:
            return splash->handleAdClick();
        default:
            delete splash->splashAdView();
        }
        if (splash)
            splash->showSplashAdWithWindow(any(m_windows));
    }
    void interstitial()
    {
        change(m_interstitials, [] { return std::make_unique<ZNTInterstitialManager>(); });
    }
    void useInterstitial()
    {
        const QPointer<ZNTInterstitialManager> manager(any(m_interstitials));
        if (!manager)
            return;
        manager->setMediaId("interstitial");
        switch (below(7)) {
        case 0:
            return manager->setDelegate(anyHost());
        case 1:
            return manager->setAutoCloseTime(below(3));
        case 2:
            return manager->loadAdData();
        case 3:
            manager->handleAdResponse(answer());
            break;
        case 4:
            if (manager->interstitialAd())
                manager->interstitialAd()->dismissWithAutoClose(below(2) == 0);
            return;
        default:
            manager->setShowAdController(anyItem());
        }
        if (manager)
            manager->showInterstitialAd();
    }
    void feed()
    {
        change(m_feeds, [] { return std::make_unique<ZNTFeedManager>(); });
    }
    void useFeed()
    {
        const QPointer<ZNTFeedManager> feed(any(m_feeds));
        if (!feed)
            return;
        feed->setMediaId("feed");
        const QList<ZNTFeedAdDataPtr> ads = feed->loadedAdDataArray();
        const ZNTFeedAdDataPtr ad = ads.value(below(int(ads.size())));
        switch (below(7)) {
        case 0:
            return feed->setDelegate(anyHost());
        case 1:
            return feed->loadAdData();
        case 2:
            feed->handleAdResponse(answer());
            return;
        case 3:
            return feed->unregisterAdData(ad);
        case 4:
            return feed->deallocAllFeedProperty();
        case 5:
            return feed->registerAdForView(anyItem(), ad);
        default:
            break;
        }
        auto *view =
            qobject_cast<ZNTFeedAdView *>(feed->createAdViewWithStyle(below(10), {375, 200}));
        if (!view)
            return; // there is no such style
        view->setupWithAdsData(ad);
        feed->registerAdForView(view, ad);
        view->setParentItem(anyItem());
        m_items.append(view);
    }

    void tap()
    {
        if (QQuickWindow *window = any(m_windows); window && window->isExposed())
            QTest::mouseClick(
                window, Qt::LeftButton, {}, {below(window->width()), below(window->height())});
    }
    void qml()
    {
        static constexpr const char *elements[] = {
            "SplashAd { id: ad; mediaId: 'splash'; showWhenLoaded: true; onAppeared: ad.destroy() "
            "}",
            "InterstitialAd { mediaId: 'interstitial'; showWhenLoaded: true }",
            "FeedAds { id: ads; mediaId: 'feed' } ListView { anchors.fill: parent; model: ads;"
            "delegate: FeedAd { required property var model; width: 300; height: implicitHeight;"
            "adData: model.adData; onRendered: ads.remove(adData) } }"};
        change(m_engines, [this] {
            auto engine = std::make_unique<QQmlEngine>();
            QQmlComponent component(engine.get());
            component.setData(QByteArray("import QtQuick; import ZNTAds; Window { width: 300;"
                                         "height: 600; visible: true;")
                    + elements[below(3)] + "}",
                {});
            QObject *window = component.create();
            if (!window)
                qFatal("%s", qPrintable(component.errorString()));
            window->setParent(engine.get());
            for (QObject *element : window->findChildren<QObject *>())
                if (element->metaObject()->indexOfMethod("load()") >= 0)
                    QMetaObject::invokeMethod(element, "load");
            return engine;
        });
    }
    void pass()
    {
        if (m_depth == 0)
            m_clock->advance(std::chrono::milliseconds(below(4) == 0 ? 3000 : below(150)));
    }

    QRandomGenerator m_random;
    const TrustedExchange &m_exchange;
    ZNTTestClock *const m_clock;
    int m_depth = 0; // of callbacks in callbacks
    std::vector<std::unique_ptr<QQuickWindow>> m_windows;
    QList<QPointer<QQuickItem>> m_items;
    std::vector<std::unique_ptr<ZNTSplashManager>> m_splashes;
    std::vector<std::unique_ptr<ZNTInterstitialManager>> m_interstitials;
    std::vector<std::unique_ptr<ZNTFeedManager>> m_feeds;
    std::vector<std::unique_ptr<Host>> m_hosts;
    std::vector<std::unique_ptr<QQmlEngine>> m_engines;
};

// Qt's own way to learn of each object that is made or destroyed, in any thread.
std::atomic<int> objects = 0;

void countObjects()
{
    constexpr int addObject = 3;
    constexpr int removeObject = 4;
    qtHookData[addObject] = quintptr(+[](QObject *) { ++objects; });
    qtHookData[removeObject] = quintptr(+[](QObject *) { --objects; });
}

// What a process holds, by the system's own account and Qt's.
struct Holdings
{
    Holdings()
    {
        malloc_trim(0);
        const QByteArray status = contents("/proc/self/status");
        const auto field = [&status](const char *name) {
            const qsizetype at = status.indexOf(name) + qstrlen(name);
            return status.mid(at, status.indexOf('\n', at) - at)
                .simplified()
                .split(' ')
                .first()
                .toInt();
        };
        memory = field("VmRSS:");
        threads = field("Threads:");
        handles = int(QDir("/proc/self/fd").entryList(QDir::AllEntries | QDir::System).size());
    }

    int objects = ::objects; // timers among them
    int memory;              // KiB
    int threads;
    int handles;
};

} // namespace

class TestLives : public QObject
{
    Q_OBJECT

private:
    TrustedExchange exchange;
    HostApplication application;

    void oneCycle()
    {
        Host host;
        QQuickWindow window;
        window.resize(375, 812);
        window.show();
        ZNTSplashManager splash;
        splash.setDelegate(&host);
        splash.handleAdResponse(exchange.answer("splash"));
        splash.showSplashAdWithWindow(&window);
        application.clock.advance(150ms);
        splash.closeSplashAd();
        ZNTInterstitialManager interstitial;
        interstitial.setDelegate(&host);
        interstitial.setShowAdController(window.contentItem());
        interstitial.handleAdResponse(exchange.answer("interstitial"));
        interstitial.showInterstitialAd();
        application.clock.advance(450ms);
        interstitial.interstitialAd()->dismissWithAutoClose(true);
        ZNTFeedManager feed;
        feed.setDelegate(&host);
        feed.handleAdResponse(exchange.answer("feed"));
        const ZNTFeedAdDataPtr ad = feed.loadedAdDataArray().first();
        const std::unique_ptr<QQuickItem> item(feed.createAdViewWithStyle(3, {375, 200}));
        auto *view = qobject_cast<ZNTFeedAdView *>(item.get());
        view->setupWithAdsData(ad);
        feed.registerAdForView(view, ad);
        view->setParentItem(window.contentItem());
        application.clock.advance(400ms);
    }
    // Pictures and trackers are real and do not keep up with held time; the exchange keeps what
    // comes.
    void settle()
    {
        do {
            exchange.forgetRequests();
            QTest::qWait(200);
        } while (!exchange.requests().isEmpty());
    }
    void cycle(int count)
    {
        for (int i = 1; i <= count; ++i) {
            oneCycle();
            if (i % 50 == 0 || i == count)
                settle();
        }
        QTRY_VERIFY(Holdings().handles < 200); // connections that are being closed
    }

private slots:
    void initTestCase()
    {
        ZNTAdsSDK::setLogEnabled(false);
        application.clock.setSpeed(0);
    }

    void init() { failOnWarnings(); }

    void doAnythingInAnyOrder()
    {
        const int first = setting("ZNTADS_SEED", 1);
        const int count = setting("ZNTADS_LIVES", 40);
        for (int seed = first; seed < first + count; ++seed) {
            const auto failed = qScopeGuard([seed] {
                if (QTest::currentTestFailed())
                    qInfo("seed %d", seed);
            });
            Life life(quint32(seed), exchange, &application.clock);
            for (int i = 0; i < 80; ++i)
                life.step();
            if (QTest::currentTestFailed())
                return;
        }
        qInfo("%d lives from seed %d", count, first);
    }

    // After a tenth of the cycles everything has come to stay that does.
    void holdsNoMoreAfterwards()
    {
        const int count = setting("ZNTADS_CYCLES", 50);
        countObjects();
        cycle(count / 10);
        const Holdings before;
        cycle(count - count / 10);
        constexpr int slack = 8; // what the pool and idle connections come and go by
        QTRY_VERIFY(Holdings().handles <= before.handles + slack);
        QTRY_VERIFY(Holdings().objects <= before.objects + slack);
        QTRY_VERIFY(Holdings().threads <= before.threads + slack);
        const Holdings after;
        qInfo("%d cycles: memory %d KiB, then %d; threads %d, %d; handles %d, %d; objects %+d",
            count, before.memory, after.memory, before.threads, after.threads, before.handles,
            after.handles, after.objects - before.objects);
        if (count >= 10'000) // fewer say nothing of memory
            QVERIFY(after.memory - before.memory < 1024);
    }
};

QTEST_MAIN(TestLives)
#include "tst_lives.moc"
