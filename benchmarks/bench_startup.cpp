// What the library takes of the main thread: the registration call, and the longest single slice
// from the load call to the first frame of a splash ad, beside the same window without an ad.

#include "slice.h"

#include "sandbox/exchange.h"

#include <ZNTAds/ZNTAdsSDK.h>
#include <ZNTAds/ZNTSplashAdView.h>
#include <ZNTAds/ZNTSplashManager.h>

#include <QGuiApplication>
#include <QQuickWindow>
#include <QThread>

#include <benchmark/benchmark.h>

namespace {

// Knows the longest event of the main thread.
class TimedApplication : public QGuiApplication
{
public:
    using QGuiApplication::QGuiApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (m_depth++ > 0 || QThread::currentThread() != thread())
            return leave(QGuiApplication::notify(receiver, event));
        const Slice slice;
        const bool result = QGuiApplication::notify(receiver, event);
        if (slice.milliseconds() > 5 && qEnvironmentVariableIsSet("SHOW_SLICES"))
            qInfo("%6.2f ms, %6.2f by the processor: %s event %d", slice.milliseconds(),
                slice.processorMilliseconds(), receiver->metaObject()->className(), event->type());
        longest.add(slice);
        return leave(result);
    }

    Longest longest;

private:
    bool leave(bool result)
    {
        --m_depth;
        return result;
    }
    int m_depth = 0;
};

TimedApplication *application = nullptr;
double registration = 0; // milliseconds

void runUntil(const std::function<bool()> &done)
{
    while (!done())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

class Host : public QObject, public ZNTSplashDelegate
{
    Q_OBJECT
    Q_INTERFACES(ZNTSplashDelegate)

public:
    void splashAdDidLoad() override { loaded = true; }
    bool loaded = false;
};

void registering(benchmark::State &state)
{
    for (auto _ : state)
        state.SetIterationTime(registration / 1e3);
}
BENCHMARK(registering)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

void report(benchmark::State &state)
{
    const Longest &longest = application->longest;
    state.counters["longest_slice_ms"] = longest.milliseconds;
    state.counters["processor_ms"] = longest.processorMilliseconds;
}

void showEmpty(QQuickWindow &window)
{
    window.resize(375, 812);
    window.show();
    runUntil([&window] { return window.isExposed(); });
}

void runUntilFrame(QQuickWindow &window, int number)
{
    int frames = 0;
    QObject::connect(&window, &QQuickWindow::afterFrameEnd, &window, [&frames] { ++frames; });
    window.update();
    runUntil([&frames, number] { return frames >= number; });
}

// The peer: what the window alone takes.
void windowAlone(benchmark::State &state)
{
    application->longest = {};
    for (auto _ : state) {
        QQuickWindow window;
        showEmpty(window);
        runUntilFrame(window, 1);
    }
    report(state);
}
BENCHMARK(windowAlone)->Iterations(10)->Unit(benchmark::kMillisecond);

void splashAd(benchmark::State &state)
{
    Longest longest;
    for (auto _ : state) {
        QQuickWindow window;
        showEmpty(window);
        Host host;
        ZNTSplashManager manager;
        manager.setDelegate(&host);
        manager.setMediaId(QStringLiteral("splash"));
        manager.setAdStyle(state.range(0));
        application->longest = longest;
        const Slice load;
        manager.loadAndShowSplashAdWithWindow(&window);
        application->longest.add(load);
        runUntil([&host] { return host.loaded; });
        const Slice show;
        manager.showSplashAdWithWindow(&window);
        application->longest.add(show);
        runUntil([&manager] { return !manager.splashAdView()->isHidden(); });
        runUntilFrame(window, 2);
        longest = application->longest;
    }
    report(state);
}
BENCHMARK(splashAd)->ArgName("style")->DenseRange(0, 2)->Iterations(10)->Unit(
    benchmark::kMillisecond);

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    TimedApplication app(argc, argv);
    application = &app;
    QCoreApplication::setOrganizationName(QStringLiteral("ZNTAds benchmarks"));

    // The exchange has a thread of its own, so that its work is not counted here.
    QThread thread;
    auto *exchange = new sandbox::Exchange;
    exchange->moveToThread(&thread);
    QObject::connect(&thread, &QThread::finished, exchange, &QObject::deleteLater);
    thread.start();
    QMetaObject::invokeMethod(
        exchange, [exchange] { exchange->start(); }, Qt::BlockingQueuedConnection);
    sandbox::trust(exchange->ca());

    ZNTAdsSDK::setEndpoints(exchange->httpsUrl(), exchange->httpUrl());
    const Slice slice;
    ZNTAdsSDK::registerWithAppId(
        QStringLiteral("app"), QStringLiteral("media"), QStringLiteral("demo-secret"));
    registration = slice.milliseconds();
    ZNTAdsSDK::setLogEnabled(false);

    benchmark::RunSpecifiedBenchmarks();
    thread.quit();
    thread.wait();
}

#include "bench_startup.moc"
