// What a log line costs the thread that logs it, beside an asynchronous spdlog line of the same
// form.
#include "slice.h"

#include "diagnostics/log.h"

#include <benchmark/benchmark.h>
#include <spdlog/async.h>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>

#include <QFileInfo>
#include <QTemporaryDir>

#include <algorithm>
#include <barrier>
#include <chrono>
#include <cstdio>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr int linesInBurst = 2'000;
constexpr char text[] = "Processed 3 view URLs of splash ad 7318264401 in 128 ms";
constexpr qint64 lineBytes = sizeof "[2026-03-07 14:05:09.031][INFO] \n" - 1 + sizeof text - 1;

// Nanoseconds a line, from the moment that all threads start to the end of the last one.
double burst(int threads, const std::function<void()> &line)
{
    std::vector<Clock::time_point> begins(threads);
    std::vector<Clock::time_point> ends(threads);
    std::barrier start(threads);
    const auto run = [&](int index) {
        start.arrive_and_wait();
        begins[index] = Clock::now();
        for (int i = 0; i < linesInBurst; ++i)
            line();
        ends[index] = Clock::now();
    };
    std::vector<std::thread> others;
    for (int i = 1; i < threads; ++i)
        others.emplace_back(run, i);
    run(0);
    for (std::thread &thread : others)
        thread.join();
    const std::chrono::duration<double, std::nano> time =
        std::ranges::max(ends) - std::ranges::min(begins);
    return time.count() / (threads * linesInBurst);
}

// A burst starts when the writers rest: everything that was logged is in the file.
void awaitSize(const QString &path, qint64 size)
{
    while (QFileInfo(path).size() < size)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

class Peer
{
public:
    explicit Peer(const QString &path)
        : m_path(path)
    {
        spdlog::init_thread_pool(8'192, 1);
        m_log = spdlog::basic_logger_mt<spdlog::async_factory>("peer", path.toStdString());
        m_log->set_pattern("[%Y-%m-%d %H:%M:%S.%e][INFO] %v");
    }
    ~Peer() { spdlog::shutdown(); }
    Q_DISABLE_COPY_MOVE(Peer)

    spdlog::logger &log() { return *m_log; }
    void rest(int newLines)
    {
        m_log->flush();
        awaitSize(m_path, m_bytes += newLines * lineBytes);
    }

private:
    const QString m_path;
    std::shared_ptr<spdlog::logger> m_log;
    qint64 m_bytes = 0;
};

void compare(benchmark::State &state, Peer &peer)
{
    const QString message = QString::fromLatin1(text);
    const auto ours = [&] { ZNTLogManager::sharedInstance()->logInfo(message); };
    const auto theirs = [&] { peer.log().info(text); };
    const int threads = int(state.range(0));
    ZNTLogManager *log = ZNTLogManager::sharedInstance();
    std::vector<double> ourTimes;
    std::vector<double> theirTimes;
    for ([[maybe_unused]] auto _ : state) {
        ourTimes.push_back(burst(threads, ours));
        log->flushLogBuffer();
        static qint64 ourBytes = 0;
        awaitSize(log->currentLogFilePath(), ourBytes += threads * linesInBurst * lineBytes);

        theirTimes.push_back(burst(threads, theirs));
        peer.rest(threads * linesInBurst);
        state.SetIterationTime(ourTimes.back() * threads * linesInBurst * 1e-9);
    }
    state.counters["ns_line"] = median(ourTimes);
    state.counters["ns_line_spdlog"] = median(theirTimes);
    state.counters["ratio"] = median(ourTimes) / median(theirTimes);
}

void switchedOff(benchmark::State &state)
{
    ZNTLogManager::sharedInstance()->setLogEnabled(false);
    for ([[maybe_unused]] auto _ : state)
        znt::logInfo("Processed %1 view URLs", 3);
}

} // namespace

int main(int argc, char **argv)
{
    QTemporaryDir home;
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", home.path().toUtf8());
    // Console lines are written, but not shown among the figures.
    if (!std::freopen("/dev/null", "w", stderr))
        return 1;
    ZNTLogManager::sharedInstance()->setLogEnabled(true);
    Peer peer(home.filePath(QStringLiteral("peer.log")));

    benchmark::RegisterBenchmark("line/threads", [&](auto &state) { compare(state, peer); })
        ->Arg(1)
        ->Arg(4)
        ->UseManualTime()
        ->Iterations(200)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("switched off", switchedOff);

    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
