// Every fault of the exchange against every format and endpoint: what the host hears, that no
// request is doubled, that others are served meanwhile, and that the same manager goes on
// afterwards.
#include "sandbox/builtinanswers.h"
#include "support/host.h"

#include <ZNTAds/ZNTFeedManager.h>
#include <ZNTAds/ZNTInterstitialManager.h>
#include <ZNTAds/ZNTSplashAdView.h>
#include <ZNTAds/ZNTSplashManager.h>

using namespace znt::test;

using sandbox::Answer;

namespace {

constexpr auto requestTime = 15s;

// What a manager hears of a load: the event, or the error's code.
template <class Manager>
class Loader
{
public:
    Loader()
    {
        manager.setDelegate(&m_host);
        QObject::connect(&manager, &Manager::loaded, &manager, [this] { outcomes.append("load"); });
        QObject::connect(&manager, &Manager::failed, &manager, [this](const ZNTError &error) {
            outcomes.append(error.domain() + ' ' + QString::number(error.code()));
        });
    }
    void load(const QString &position)
    {
        outcomes.clear();
        manager.setMediaId(position);
        if constexpr (std::is_same_v<Manager, ZNTSplashManager>)
            manager.loadAndShowSplashAdWithWindow(nullptr);
        else
            manager.loadAdData();
    }

    Manager manager;
    QStringList outcomes;

private:
    Host m_host;
};

struct Fault
{
    const char *outcome; // of a load, in every format
    QStringList positions;
    bool hangs = false; // ends with the time of a request
};

const Fault faults[] = {
    {"QNetworkReply 4", {"slow", "dripping", "silent-after-head", "endless-head", "endless-100"},
        true},
    {"QNetworkReply 205", {"dropped", "dropped-in-head", "not-http"}},
    {"QNetworkReply 2", {"dropped-after-head", "truncated"}},
    {"QNetworkReply 11", {"redirect-loop", "redirect-downgrade", "redirect-file"}},
    {"QNetworkReply 299",
        {"gigantic", "gzip-bomb", "gzip-broken", "gzip-truncated", "gzip-wrong-checksum",
            "gzip-wrong-length"}},
    {"QJsonParseError 5", {"empty-body", "not-json"}},
    {"QJsonParseError 9", {"invalid-utf8"}},
    {"QJsonParseError 12", {"deep"}},
    {"ZNTAdsManager 500", {"refused", "not-object", "scalar"}},
    {"-1002", {"no-ads"}},
    {"load",
        {"http-500", "huge", "gzip", "nulls", "wrong-types", "wrong-types-inside", "bad-urls",
            "single-trackers", "long-texts", "many", "missing-image", "broken-image",
            "endless-image", "bomb-image", "slow-image", "local-image"}},
};

} // namespace

class TestFaults : public QObject
{
    Q_OBJECT

private:
    TrustedExchange exchange;
    HostApplication application;

    int requestsAt(const QString &position) const
    {
        const auto requests = exchange.requests("/s/req2.do");
        return int(std::count_if(requests.begin(), requests.end(),
            [&position](const auto &request) { return request.position == position; }));
    }

    // At once in every format, while others are served.
    void tryLoading(const QString &position, const Fault &fault)
    {
        Loader<ZNTSplashManager> splash;
        Loader<ZNTInterstitialManager> interstitial;
        Loader<ZNTFeedManager> feed;
        Loader<ZNTFeedManager> other;
        const auto each = [&](const auto &action) {
            action(splash);
            action(interstitial);
            action(feed);
        };
        exchange.forgetRequests();
        each([&](auto &loader) { loader.load(position); });
        other.load("feed");
        QTRY_COMPARE_WITH_TIMEOUT(other.outcomes, QStringList{"load"}, 10'000);
        if (fault.hangs) {
            QTRY_COMPARE(requestsAt(position), 3);
            application.clock.advance(requestTime);
        }
        each([&](auto &loader) {
            QTRY_VERIFY_WITH_TIMEOUT(!loader.outcomes.isEmpty(), 20'000);
            QCOMPARE(loader.outcomes.size(), 1);
            QVERIFY2(loader.outcomes.first().endsWith(QLatin1String(fault.outcome)),
                qPrintable(loader.outcomes.first()));
        });
        // Less when a connection that one had dropped was the next one's.
        if (!position.startsWith("redirect"))
            QVERIFY2(requestsAt(position) <= 3, qPrintable(QString::number(requestsAt(position))));
        each([&](auto &loader) { loader.load("splash"); });
        each([&](auto &loader) {
            QTRY_COMPARE_WITH_TIMEOUT(loader.outcomes.value(0), "load", 10'000);
        });
    }

    // From the request to the feedback of somebody who skips it.
    QStringList lifeOfASplashAd()
    {
        Host host;
        ShownWindow window({375, 812});
        ZNTSplashManager splash;
        splash.setDelegate(&host);
        splash.setMediaId("splash");
        // A request may be put on a kept connection whose end is on its way.
        for (int attempt = 0; attempt < 3 && !host.heard.contains("load"); ++attempt) {
            host.heard.clear();
            splash.loadAndShowSplashAdWithWindow(&window);
            if (!QTest::qWaitFor([&] { return !host.heard.isEmpty(); }, 20'000))
                break;
        }
        if (host.heard != QStringList{"load"})
            return QStringList{"not loaded"} + host.heard;
        splash.showSplashAdWithWindow(&window);
        const auto isThere = [&] { return !splash.splashAdView()->isHidden(); };
        if (QTest::qWaitFor(isThere, m_pictureTime)) {
            application.clock.advance(200ms);
            Q_EMIT splash.splashAdView()->skipClicked();
        }
        application.clock.advance(6s);
        for (qsizetype count = -1; count != exchange.requests().size(); QTest::qWait(30))
            count = exchange.requests().size(); // what is on its way still
        return host.heard;
    }

private slots:
    void initTestCase()
    {
        ZNTAdsSDK::setLogEnabled(false);
        application.clock.setSpeed(0);
    }

    void ofTheAdEndpoint()
    {
        QSet<QString> tried;
        for (const Fault &fault : faults) {
            for (const QString &position : fault.positions) {
                tryLoading(position, fault);
                if (QTest::currentTestFailed())
                    QFAIL(qPrintable(position));
                tried.insert(position);
            }
        }
        for (const QString &position : sandbox::builtInPositions()) {
            const bool isGood = position.front().isUpper()
                || QStringList{"splash", "interstitial", "feed"}.contains(position);
            QVERIFY2(isGood != tried.contains(position), qPrintable(position));
        }
    }

    // Feedback, trackers, pictures: an ad lives as if nothing were, but does not
    // appear without its picture.
    void ofTheOtherEndpoints()
    {
        const Answer::Wire silent{
            .begin = "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n", .closes = false};
        const QList<Answer> answers{{.delivery = Answer::Delivery::Dropped},
            {.body = "half", .delivery = Answer::Delivery::Truncated}, {.status = 500},
            {.body = "<html>"}, {.wire = silent},
            {.wire = Answer::Wire{.begin = "HTTP/1.1 200 OK\r\n", .repeated = "X: 1\r\n"}},
            {.status = 307, .headers = {{"Location", "file:///etc/hostname"}}}};
        int cells = 0;
        const QStringList seen{"load", "visible", "render", "finish"};
        for (const QString &path :
            {QString("/conf.do"), QString("/s/negfb.do"), QString("/t/view/splash-1/exchange"),
                QString("/creatives/logo-tea.png"), QString("/creatives/splash.jpg")}) {
            for (const Answer &answer : answers) {
                if (++cells % 3 != 0 && !qEnvironmentVariableIsSet("ZNTADS_ALL_FAULTS"))
                    continue;
                const bool isPicture = path.endsWith(".jpg");
                exchange.reset();
                exchange.setAnswerAt(path, answer);
                m_pictureTime = isPicture ? 300 : 5000;
                const QStringList heard = lifeOfASplashAd();
                m_pictureTime = 5000;
                const QByteArray cell =
                    path.toUtf8() + ' ' + QByteArray::number(&answer - answers.data());
                if (isPicture)
                    QVERIFY2(
                        !heard.contains("render") && heard.last() == "finish", cell.constData());
                else
                    QVERIFY2(heard == seen, (cell + heard.join(u" ").toUtf8()).constData());
                // Qt itself repeats a GET whose connection ends without an answer, and a picture
                // that failed is asked for once more when it is shown.
                const int most = path == "/s/negfb.do" ? 1 : 4;
                QVERIFY2(exchange.hits(path) <= most,
                    (cell + ", times " + QByteArray::number(exchange.hits(path))).constData());
                application.clock.advance(requestTime); // what hangs
            }
            exchange.reset();
            QVERIFY2(lifeOfASplashAd() == seen, qPrintable(path));
        }
    }

private:
    int m_pictureTime = 5000; // milliseconds
};

QTEST_MAIN(TestFaults)
#include "tst_faults.moc"
