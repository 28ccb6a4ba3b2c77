// The library in the life of a process: never called, called before there is an application, with a
// host that keeps the threads for itself. Each in a process of its own, which is this program
// again.
#include "support/host.h"

#include <ZNTAds/ZNTAdsManager.h>
#include <ZNTAds/ZNTAdsSDK.h>
#include <ZNTAds/ZNTFeedManager.h>
#include <ZNTAds/ZNTInterstitialAd.h>
#include <ZNTAds/ZNTInterstitialManager.h>
#include <ZNTAds/ZNTLogManager.h>
#include <ZNTAds/ZNTSplashAdView.h>
#include <ZNTAds/ZNTSplashManager.h>

#include <QThreadPool>

#include <thread>

using namespace znt::test;

namespace {

void meet(const QStringList &exchange)
{
    sandbox::trust(QSslCertificate::fromPath(exchange.at(2)).constFirst());
    ZNTAdsSDK::setEndpoints(QUrl(exchange.at(0)), QUrl(exchange.at(1)));
    ZNTAdsManager::sharedInstance()->setSecret("demo-secret");
}

int runUntilAnswered(QGuiApplication &application)
{
    QTimer::singleShot(10000, &application, [] { QCoreApplication::exit(9); });
    return QCoreApplication::exec();
}

void request()
{
    ZNTAdsManager::sharedInstance()->requestAdWithPositionId(
        "splash", 0, [](const QJsonObject &) { QCoreApplication::exit(0); },
        [](const ZNTError &) { QCoreApplication::exit(1); });
}

int neverCalled(int &argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QTimer::singleShot(0, &application, &QCoreApplication::quit);
    QCoreApplication::exec();
    return ZNTAdsSDK::version().isEmpty(); // keeps the library linked
}

int beforeTheApplication(int &argc, char **argv, const QStringList &exchange)
{
    meet(exchange);
    ZNTLogManager::sharedInstance()->logError("early");
    std::thread(request).join();
    QGuiApplication application(argc, argv);
    return runUntilAnswered(application);
}

int withoutThreads(int &argc, char **argv, const QStringList &exchange)
{
    meet(exchange);
    QGuiApplication application(argc, argv);
    QThreadPool *hosts = QThreadPool::globalInstance();
    QSemaphore end;
    hosts->setMaxThreadCount(1);
    hosts->start([&end] { end.acquire(); });
    QTimer::singleShot(0, &application, request);
    const int status = runUntilAnswered(application);
    end.release();
    return status;
}

// Ends by exit() while ads of all formats are under way: so many milliseconds after the load on the
// main thread or on another, or, without a number, in the callback of that name.
int exitAmidst(int &argc, char **argv, const QStringList &exchange)
{
    const QString where = exchange.at(3);
    const auto delay = std::chrono::milliseconds(exchange.at(4).toInt());
    meet(exchange);
    QGuiApplication application(argc, argv);
    QQuickWindow window;
    window.resize(320, 480);
    window.show();
    Host host;
    ZNTSplashManager splash;
    host.then = [&](const QString &heard) {
        if (heard == where)
            std::exit(0);
        if (heard == "load")
            splash.showSplashAdWithWindow(&window);
    };
    splash.setDelegate(&host);
    splash.setMediaId("splash");
    splash.loadAndShowSplashAdWithWindow(&window);
    ZNTInterstitialManager interstitial;
    interstitial.loadAdData();
    ZNTFeedManager feed;
    feed.setMediaId("feed");
    feed.loadAdData();
    std::thread other;
    if (where == "thread") {
        other = std::thread([delay] {
            std::this_thread::sleep_for(delay);
            std::exit(0);
        });
    } else if (where == "timer") {
        QTimer::singleShot(delay, &application, [] { std::exit(0); });
    }
    return runUntilAnswered(application);
}

// Quits when the first of many pictures is there, with the others still being decoded.
int endsAmidPictures(int &argc, char **argv, const QStringList &exchange)
{
    meet(exchange);
    QGuiApplication application(argc, argv);
    std::vector<std::unique_ptr<ZNTSplashAdView>> views(20);
    for (auto &view : views) {
        view.reset(ZNTSplashManager::createAdViewWithStyle(0));
        view->setSize({100, 100});
        view->setupWithImageUrl(exchange.at(0) + "/creatives/interstitial.jpg", {}, {}, {});
        QObject::connect(view.get(), &ZNTSplashAdView::hiddenChanged, &QCoreApplication::quit);
    }
    return runUntilAnswered(application);
}

// Shows ads before there is an application, and again with one that has no screen.
int withoutScreen(int &argc, char **argv)
{
    const auto answer =
        json(R"({"code": 200, "data": [{"images": ["http://localhost:9/a.png"]}]})");
    QQuickItem screen;
    Host host;
    ZNTSplashManager splash;
    splash.setDelegate(&host);
    splash.handleAdResponse(answer);
    ZNTInterstitialManager interstitial;
    interstitial.setDelegate(&host);
    interstitial.handleAdResponse(answer);
    interstitial.setShowAdController(&screen);
    ZNTInterstitialAd presenter("position");
    presenter.setupWithAdData(interstitial.adData());
    const auto show = [&] {
        splash.showSplashAdWithWindow(nullptr);
        interstitial.showInterstitialAd();
        presenter.showFromViewController(&screen);
    };
    show();
    QCoreApplication application(argc, argv);
    show();
    QStringList errors;
    for (int i = 0; i < 4; ++i)
        errors.append(host.next().section(u' ', 0, 1));
    return errors.count("ZNTSplashManager -1005") != 2
        || errors.count("ZNTInterstitialManager -1005") != 2;
}

int child(int argc, char **argv)
{
    const QString part = argv[1];
    QStringList exchange;
    for (int i = 2; i < argc; ++i)
        exchange.append(QString::fromLocal8Bit(argv[i]));
    if (part == "--never-called")
        return neverCalled(argc, argv);
    if (part == "--without-screen")
        return withoutScreen(argc, argv);
    if (part == "--pictures")
        return endsAmidPictures(argc, argv, exchange);
    if (part == "--exit")
        return exitAmidst(argc, argv, exchange);
    return part == "--early" ? beforeTheApplication(argc, argv, exchange)
                             : withoutThreads(argc, argv, exchange);
}

} // namespace

class TestLifecycle : public QObject
{
    Q_OBJECT

private:
    TrustedExchange exchange;
    QTemporaryDir home;

    int run(const QString &part, const QHash<QString, QString> &variables = {},
        const QStringList &more = {})
    {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *place : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
            environment.insert(place, home.path());
        for (auto it = variables.begin(); it != variables.end(); ++it)
            environment.insert(it.key(), it.value());
        process.setProcessEnvironment(environment);
        QSignalSpy finished(&process, &QProcess::finished);
        process.start(QCoreApplication::applicationFilePath(),
            QStringList{part, exchange.httpsUrl().toString(), exchange.httpUrl().toString(),
                exchange.caFile()}
                + more);
        if (!finished.wait(30000))
            return -1;
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

private slots:
    void init()
    {
        failOnWarnings();
        exchange.forgetRequests();
    }

    void leavesNoTraceWhereItIsNotCalled()
    {
        QCOMPARE(run("--never-called"), 0);
        QVERIFY(QDir(home.path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    }

    void whatComesBeforeTheApplicationWaitsForIt()
    {
        QCOMPARE(run("--early", {{"QT_SCALE_FACTOR", "3"}}), 0); // of a screen of 800 pixels
        QVERIFY(exchange.waitForRequests("/logs.do", 1));
        const QJsonObject report = exchange.requests("/logs.do").constFirst().json();
        QCOMPARE(report[u"errorSummary"], "early");
        QCOMPARE(report[u"screenResolution"], "800x800");
        const QJsonObject request = exchange.requests("/s/req2.do").constFirst().json();
        QCOMPARE(request[u"device"][u"screenWidth"], 266);
        QCOMPARE(request[u"device"][u"screenHeight"], 266);
    }

    void picturesAreFinishedBeforeTheEnd() { QCOMPARE(run("--pictures"), 0); }

    void showsNothingWithoutAScreen() { QCOMPARE(run("--without-screen"), 0); }

    void mayEndByExitAnywhere_data()
    {
        QTest::addColumn<QString>("where");
        QTest::addColumn<int>("milliseconds");
        for (const int delay : {0, 10, 30, 60, 100, 150})
            QTest::addRow("timer %d", delay) << "timer" << delay;
        for (const char *callback : {"load", "visible", "render"})
            QTest::addRow("%s", callback) << callback << 0;
        QTest::addRow("thread") << "thread" << 700;
    }
    void mayEndByExitAnywhere()
    {
        QFETCH(QString, where);
        QFETCH(int, milliseconds);
        QCOMPARE(run("--exit", {}, {where, QString::number(milliseconds)}), 0);
    }

    void needsNoneOfTheHostsThreads() { QCOMPARE(run("--without-threads"), 0); }
};

int main(int argc, char **argv)
{
    if (argc > 1 && QByteArray(argv[1]).startsWith("--"))
        return child(argc, argv);
    QGuiApplication application(argc, argv);
    TestLifecycle test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_lifecycle.moc"
