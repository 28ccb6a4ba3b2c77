// Reading an answer of a hundred ads into records and writing them again, beside reading the JSON
// alone.
#include "slice.h"

#include "support/json.h"

#include <ZNTAds/ZNTAdInfo.h>
#include <ZNTAds/ZNTAdsResponse.h>
#include <ZNTAds/ZNTAdsResponseFactory.h>

#include "sandbox/exchange.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <QJsonDocument>

#include <vector>

namespace {

QByteArray answerOf(int count)
{
    sandbox::Exchange exchange;
    exchange.start();
    QJsonObject answer = exchange.answer(QStringLiteral("splash"));
    const QJsonValue ad = answer.value(QLatin1String("data")).toArray().first();
    QJsonArray ads;
    for (int i = 0; i < count; ++i)
        ads.append(ad);
    answer.insert(QLatin1String("data"), ads);
    return QJsonDocument(answer).toJson(QJsonDocument::Compact);
}

template <class Work>
double milliseconds(const Work &work)
{
    const Slice slice;
    work();
    return slice.processorMilliseconds();
}

void records(benchmark::State &state)
{
    const QByteArray text = answerOf(100);
    std::vector<double> ours, theirs;
    for ([[maybe_unused]] auto _ : state) {
        ours.push_back(milliseconds([&text] {
            const auto response =
                ZNTAdsResponseFactory::createFromServerResponse(znt::json::parse(text).value);
            benchmark::DoNotOptimize(response.toDictionary());
        }));
        theirs.push_back(
            milliseconds([&text] { benchmark::DoNotOptimize(QJsonDocument::fromJson(text)); }));
        state.SetIterationTime(ours.back() * 1e-3);
    }
    state.counters["ms"] = median(ours);
    state.counters["ms_parse"] = median(theirs);
    state.counters["ratio"] = median(ours) / median(theirs);
}
BENCHMARK(records)->UseManualTime()->Iterations(100)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
