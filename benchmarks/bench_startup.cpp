// What the library takes of the main thread: the registration call, and the longest single slice
// from the load call to the first frame of a splash ad, beside the same window without an ad.

#include "sandbox/exchange.h"

#include <ZNTAds/ZNTAdsSDK.h>
#include <ZNTAds/ZNTSplashAdView.h>
#include <ZNTAds/ZNTSplashManager.h>

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QQuickWindow>
#include <QThread>

#include <benchmark/benchmark.h>

namespace {

// Knows how long the longest event of the main thread took.
class TimedApplication : public QGuiApplication
{
public:
    using QGuiApplication::QGuiApplication;

    bool notify(QObject *receiver, QEvent *event) override
    {
        if (m_depth++ > 0 || QThread::currentThread() != thread())
            return leave(QGuiApplication::notify(receiver, event));
        QElapsedTimer timer;
        timer.start();
        const bool result = QGuiApplication::notify(receiver, event);
        const double took = double(timer.nsecsElapsed()) / 1e6;
        if (took > 5 && qEnvironmentVariableIsSet("SHOW_SLICES"))
            qInfo(
                "%6.2f ms: %s event %d", took, receiver->metaObject()->className(), event->type());
        longest = qMax(longest, took);
        return leave(result);
    }

    double longest = 0; // milliseconds

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
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
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

// The peer: what the window alone takes.
void windowAlone(benchmark::State &state)
{
    double longest = 0;
    for (auto _ : state) {
        QQuickWindow window;
        window.resize(375, 812);
        window.show();
        runUntil([&window] { return window.isExposed(); });
        application->longest = 0;
        int frames = 0;
        QObject::connect(&window, &QQuickWindow::afterFrameEnd, &window, [&frames] { ++frames; });
        window.update();
        runUntil([&frames] { return frames > 0; });
        longest = qMax(longest, application->longest);
    }
    state.counters["longest_slice_ms"] = longest;
}
BENCHMARK(windowAlone)->Iterations(10)->Unit(benchmark::kMillisecond);

void splashAd(benchmark::State &state)
{
    double longest = 0;
    for (auto _ : state) {
        QQuickWindow window;
        window.resize(375, 812);
        window.show();
        runUntil([&window] { return window.isExposed(); });
        Host host;
        ZNTSplashManager manager;
        manager.setDelegate(&host);
        manager.setMediaId(QStringLiteral("splash"));
        manager.setAdStyle(state.range(0));
        application->longest = 0;
        QElapsedTimer call;
        call.start();
        manager.loadAndShowSplashAdWithWindow(&window);
        longest = qMax(longest, double(call.nsecsElapsed()) / 1e6);
        runUntil([&host] { return host.loaded; });
        call.start();
        manager.showSplashAdWithWindow(&window);
        longest = qMax(longest, double(call.nsecsElapsed()) / 1e6);
        runUntil([&manager] { return !manager.splashAdView()->isHidden(); });
        int frames = 0;
        QObject::connect(&window, &QQuickWindow::afterFrameEnd, &window, [&frames] { ++frames; });
        window.update();
        runUntil([&frames] { return frames > 1; });
        longest = qMax(longest, application->longest);
    }
    state.counters["longest_slice_ms"] = longest;
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
    QElapsedTimer timer;
    timer.start();
    ZNTAdsSDK::registerWithAppId(
        QStringLiteral("app"), QStringLiteral("media"), QStringLiteral("demo-secret"));
    registration = double(timer.nsecsElapsed()) / 1e6;
    ZNTAdsSDK::setLogEnabled(false);

    benchmark::RunSpecifiedBenchmarks();
    thread.quit();
    thread.wait();
}

#include "bench_startup.moc"
