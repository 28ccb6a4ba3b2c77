#include "support/clock.h"

#include "support/mainthread.h"

#include <QSemaphore>
#include <QThread>

#include <algorithm>
#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <utility>

namespace znt {

namespace {

struct Held
{
    struct Waiting
    {
        Timer *timer;
        quint64 run;
    };

    std::mutex mutex; // guards the rest; what waits is not destroyed under it
    qint64 time = 0;
    quint64 runs = 0;
    std::multimap<qint64, Waiting> due;

    void forget(const Timer *timer)
    {
        std::erase_if(due, [timer](const auto &entry) { return entry.second.timer == timer; });
    }
};

std::atomic<bool> isHeld = false;
std::atomic<qint64> ahead = 0; // of the system's clock, after a test held ours

Held &held()
{
    return neverDestroyed<Held>();
}

// Has the timer's own thread do it, if the timer is still there and has not started over. Released
// when that is over.
std::shared_ptr<QSemaphore> post(Held::Waiting waiting, std::function<void(Timer *)> call)
{
    auto semaphore = std::make_shared<QSemaphore>();
    const auto releaser = std::make_shared<QSemaphoreReleaser>(semaphore.get());
    QMetaObject::invokeMethod(
        waiting.timer,
        [waiting, semaphore, releaser, call = std::move(call)] {
            if (waiting.timer->isRun(waiting.run))
                call(waiting.timer);
        },
        Qt::QueuedConnection);
    return semaphore;
}

qint64 systemTime()
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

} // namespace

qint64 now()
{
    if (!isHeld.load(std::memory_order_relaxed))
        return systemTime() + ahead.load(std::memory_order_relaxed);
    const std::scoped_lock lock(held().mutex);
    return held().time;
}

Timer::Timer(Kind kind, QObject *parent)
    : QObject(parent)
    , m_kind(kind)
    , m_timer(this)
{
    m_timer.setTimerType(Qt::PreciseTimer); // a coarse one may come too soon
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &Timer::fire);
}

Timer::~Timer()
{
    stop();
}

void Timer::start(std::chrono::milliseconds interval)
{
    stop();
    m_interval = std::max(interval, std::chrono::milliseconds(0));
    m_isActive = true;
    run(m_interval);
}

void Timer::run(std::chrono::milliseconds interval)
{
    if (!isHeld.load(std::memory_order_relaxed)) {
        m_timer.setSingleShot(m_kind == Kind::Single || interval != m_interval);
        m_timer.start(interval);
        return;
    }
    m_timer.stop();
    const std::scoped_lock lock(held().mutex);
    m_run = ++held().runs;
    held().due.emplace(held().time + interval.count(), Held::Waiting{this, m_run});
}

void Timer::stop()
{
    m_isActive = false;
    m_timer.stop();
    if (std::exchange(m_run, 0) == 0)
        return;
    const std::scoped_lock lock(held().mutex);
    held().forget(this);
}

void Timer::fire()
{
    m_run = 0;
    if (m_kind == Kind::Single)
        m_isActive = false;
    else if (m_timer.isSingleShot() || isHeld.load(std::memory_order_relaxed))
        run(m_interval);
    Q_EMIT timeout();
}

} // namespace znt

using namespace znt;

void ZNTHeldClock::hold()
{
    const std::scoped_lock lock(held().mutex);
    if (znt::isHeld)
        return;
    held().time = systemTime() + ahead;
    znt::isHeld = true;
}

void ZNTHeldClock::release()
{
    const std::scoped_lock lock(held().mutex);
    if (!znt::isHeld)
        return;
    ahead = held().time - systemTime();
    znt::isHeld = false;
    for (const auto &[due, waiting] : std::exchange(held().due, {})) {
        const std::chrono::milliseconds rest(std::max<qint64>(0, due - held().time));
        post(waiting, [rest](Timer *timer) { timer->run(rest); });
    }
}

bool ZNTHeldClock::isHeld()
{
    return znt::isHeld;
}

qint64 ZNTHeldClock::now()
{
    return znt::now();
}

std::optional<qint64> ZNTHeldClock::nextTimer()
{
    const std::scoped_lock lock(held().mutex);
    return held().due.empty() ? std::nullopt : std::optional(held().due.begin()->first);
}

void ZNTHeldClock::moveTo(qint64 time)
{
    std::unique_lock lock(held().mutex);
    held().time = std::max(held().time, time);
    const quint64 last = held().runs; // what is started from now on waits for the next call
    auto &due = held().due;
    for (;;) {
        const auto end = due.upper_bound(held().time);
        const auto next = std::find_if(
            due.begin(), end, [last](const auto &entry) { return entry.second.run <= last; });
        if (next == end)
            return;
        const Held::Waiting waiting = due.extract(next).mapped();
        if (waiting.timer->thread() == QThread::currentThread()) {
            lock.unlock();
            waiting.timer->fire();
        } else {
            const auto done = post(waiting, [](Timer *timer) { timer->fire(); });
            lock.unlock();
            done->acquire();
        }
        lock.lock();
    }
}
