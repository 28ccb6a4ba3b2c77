// What it costs to create and fill a feed template, beside the same items as one plain, compiled
// QML document.
#include <ZNTAds/ZNTFeedManager.h>
#include <ZNTAds/ZNTNativeAdRenderProtocol.h>

#include <benchmark/benchmark.h>

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>

namespace {

void ours(benchmark::State &state)
{
    ZNTFeedManager manager;
    const auto record = std::make_shared<ZNTFeedAdData>();
    record->setTitle(QStringLiteral("Spring sale"));
    record->setSource(QStringLiteral("Tea"));
    for (auto _ : state) {
        const std::unique_ptr<QQuickItem> view(
            manager.createAdViewWithStyle(state.range(0), {375, 100}));
        qobject_cast<ZNTNativeAdRenderProtocol *>(view.get())->setupWithAdsData(record);
    }
}

void plainQml(benchmark::State &state)
{
    QQmlEngine engine;
    QQmlComponent component(
        &engine, QUrl(QStringLiteral("qrc:/qt-project.org/imports/ZNTAds/PlainTemplate.qml")));
    const QVariantMap content{{QStringLiteral("width"), 375}, {QStringLiteral("height"), 100},
        {QStringLiteral("title"), QStringLiteral("Spring sale")},
        {QStringLiteral("source"), QStringLiteral("Tea")}};
    for (auto _ : state) {
        const std::unique_ptr<QObject> view(component.createWithInitialProperties(content));
        if (!view)
            state.SkipWithError(qPrintable(component.errorString()));
    }
}

BENCHMARK(ours)->Name("create_and_fill/ours")->Arg(7)->Unit(benchmark::kMicrosecond);
BENCHMARK(plainQml)->Name("create_and_fill/plain_qml/7")->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char **argv)
{
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
