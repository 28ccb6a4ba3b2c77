// Every fault of the exchange against every format and endpoint: what the host hears, that no request
// is doubled, that others are served meanwhile, and that the same manager goes on afterwards.
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

// What does not end by itself ends with the time of a request.
const QSet<QString> hanging{"slow", "dripping", "silent-after-head", "endless-head", "endless-100"};

// The rest carries an ad that every format can show.
const QHash<QString, QString> failures{
    {"slow", "QNetworkReply 4"},
    {"dripping", "QNetworkReply 4"},
    {"silent-after-head", "QNetworkReply 4"},
    {"endless-head", "QNetworkReply 4"},
    {"endless-100", "QNetworkReply 4"},
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

    template <class Manager>
    QString outcomeOf(const QString &fault)
    {
        Loader<Manager> loader;
        Loader<ZNTFeedManager> other;
        exchange.forgetRequests();
        loader.load(fault);
        other.load("feed");
        const auto waited = [&] { return requestsAt(fault) > 0 && !other.outcomes.isEmpty(); };
        if (!QTest::qWaitFor(waited, 10'000) || other.outcomes != QStringList{"load"})
            return "others are not served";
        if (hanging.contains(fault))
            application.clock.advance(requestTime);
        if (!QTest::qWaitFor([&] { return !loader.outcomes.isEmpty(); }, 10'000))
            return "nothing";
        const QStringList outcomes = loader.outcomes;
        if (outcomes.size() != 1)
            return "more than once: " + outcomes.join(", ");
        if (requestsAt(fault) != 1 && !fault.startsWith("redirect"))
            return QString("%1 requests").arg(requestsAt(fault));
        loader.load("splash");
        if (!QTest::qWaitFor([&] { return !loader.outcomes.isEmpty(); }, 10'000)
            || loader.outcomes != QStringList{"load"})
            return "no load afterwards";
        return outcomes.first();
    }

private slots:
    void initTestCase()
    {
        ZNTAdsSDK::setLogEnabled(false);
        application.clock.setSpeed(0);
    }

    void ofTheAdEndpoint()
    {
        QStringList positions = sandbox::builtInPositions();
        positions.removeIf([](const QString &name) { return name.front().isUpper(); });
        for (const QString &fault : std::as_const(positions)) {
            const QString splash = outcomeOf<ZNTSplashManager>(fault);
            const QString interstitial = outcomeOf<ZNTInterstitialManager>(fault);
            const QString feed = outcomeOf<ZNTFeedManager>(fault);
            qInfo("%s: %s, %s, %s", qPrintable(fault), qPrintable(splash),
                qPrintable(interstitial), qPrintable(feed));
        }
    }
};

QTEST_MAIN(TestFaults)
#include "tst_faults.moc"
