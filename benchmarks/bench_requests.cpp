// An ad request from the call to the success callback, beside a bare POST of the same bytes whose
// answer is parsed; and how long the main thread is away while a thousand tracking URLs are fired.
#include "slice.h"

#include "ads/tracking.h"
#include "sandbox/exchange.h"

#include <ZNTAds/ZNTAdsManager.h>
#include <ZNTAds/ZNTAdsSDK.h>

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QThread>
#include <QTimer>

#include <optional>
#include <vector>

namespace {

sandbox::Exchange *exchange = nullptr;

template <class Done>
void runUntil(const Done &done)
{
    while (!done())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

double adRequest()
{
    bool answered = false;
    const Slice slice;
    ZNTAdsManager::sharedInstance()->requestAdWithPositionId(
        QStringLiteral("feed"), 0, [&answered](const QJsonObject &) { answered = true; },
        [](const ZNTError &error) { qFatal("%s", qPrintable(error.localizedDescription())); });
    runUntil([&answered] { return answered; });
    return slice.milliseconds();
}

// What the last ad request had in it, sent again.
double barePost(QNetworkAccessManager *network, const sandbox::Request &sent)
{
    QNetworkRequest request(exchange->url(QStringLiteral("/s/req2.do")));
    for (const auto &[name, value] : sent.headers) {
        if (name.toLower() != "host" && name.toLower() != "content-length")
            request.setRawHeader(name, value);
    }
    const Slice slice;
    QNetworkReply *reply = network->post(request, sent.body);
    runUntil([reply] { return reply->isFinished(); });
    benchmark::DoNotOptimize(QJsonDocument::fromJson(reply->readAll()));
    const double time = slice.milliseconds();
    delete reply;
    return time;
}

void request(benchmark::State &state)
{
    QNetworkAccessManager network;
    adRequest();
    sandbox::Request sent;
    QMetaObject::invokeMethod(
        exchange, [&sent] { sent = exchange->requests(QStringLiteral("/s/req2.do")).last(); },
        Qt::BlockingQueuedConnection);
    barePost(&network, sent);
    std::vector<double> ours, theirs, fresh;
    for ([[maybe_unused]] auto _ : state) {
        ours.push_back(adRequest());
        theirs.push_back(barePost(&network, sent));
        QNetworkAccessManager another; // and so another connection, as each ad request has
        fresh.push_back(barePost(&another, sent));
        state.SetIterationTime(ours.back() * 1e-3);
    }
    state.counters["ms"] = median(ours);
    state.counters["ms_bare"] = median(theirs);
    state.counters["ratio"] = median(ours) / median(theirs);
    state.counters["ratio_fresh"] = median(ours) / median(fresh);
}
BENCHMARK(request)->UseManualTime()->Iterations(200)->Unit(benchmark::kMillisecond);

void trackers(benchmark::State &state)
{
    QJsonArray urls;
    for (int i = 0; i < 1000; ++i)
        urls.append(exchange->url(QStringLiteral("/t/%1").arg(i)).toString());
    double longest = 0;
    for ([[maybe_unused]] auto _ : state) {
        bool finished = false;
        QTimer ticks;
        std::optional<Slice> last(std::in_place);
        QObject::connect(&ticks, &QTimer::timeout, &ticks, [&] {
            longest = std::max(longest, last->milliseconds());
            last.emplace();
        });
        ticks.start(0);
        QTimer::singleShot(0, &ticks, [&] {
            znt::fireTracking(urls, {"", ""}, [&finished] { finished = true; });
        });
        runUntil([&finished] { return finished; });
    }
    state.counters["longest_absence_ms"] = longest;
}
BENCHMARK(trackers)->Iterations(5)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("ZNTAds benchmarks"));
    QThread thread;
    exchange = new sandbox::Exchange;
    exchange->moveToThread(&thread);
    QObject::connect(&thread, &QThread::finished, exchange, &QObject::deleteLater);
    thread.start();
    QMetaObject::invokeMethod(
        exchange, [] { exchange->start(); }, Qt::BlockingQueuedConnection);
    sandbox::trust(exchange->ca());
    ZNTAdsSDK::setEndpoints(exchange->httpsUrl(), exchange->httpUrl());
    ZNTAdsSDK::setLogEnabled(false);
    // Requests are begun once the event loop runs.
    QTimer::singleShot(0, &application, [&] {
        ZNTAdsSDK::registerWithAppId(
            QStringLiteral("app"), QStringLiteral("media"), QStringLiteral("demo-secret"));
        ZNTAdsSDK::setLogEnabled(false);
        benchmark::Initialize(&argc, argv);
        benchmark::RunSpecifiedBenchmarks();
        QCoreApplication::quit();
    });
    QCoreApplication::exec();
    thread.quit();
    thread.wait();
    return 0;
}
