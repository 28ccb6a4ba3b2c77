#include "support/mainthread.h"

#include <QMutex>
#include <QSemaphore>
#include <QThread>
#include <QThreadPool>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace znt {

namespace {

enum class Application { NotYet, Running, Ended };

// Once the application object has begun to go, nothing is posted to it or begun in the pool any
// more.
Q_CONSTINIT QBasicMutex mutex;
Q_CONSTINIT Application application = Application::NotYet;

// How long exit() waits for the main thread when it is called on another.
constexpr int endPatience = 2000; // ms
// How long the main thread then stands still, if exit() takes that long.
constexpr int standStill = 1000; // ms

// Work that takes longer than this does not hold up the end of the application.
constexpr int poolPatience = 1000; // ms

using Waiting = std::vector<std::function<void()>>;
using Ends = std::vector<void (*)()>;

// What has not run when the application ends is dropped, even if its event loop goes on.
void post(std::function<void()> call)
{
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [call = std::move(call)] {
            if (isApplicationRunning())
                call();
        },
        Qt::QueuedConnection);
}

QThreadPool &pool()
{
    return neverDestroyed<QThreadPool>();
}

// Static destructors, which come next, take away what work in the pool uses, Qt's picture formats
// for example.
void end()
{
    {
        const QMutexLocker lock(&mutex);
        application = Application::Ended;
    }
    pool().clear();
    pool().waitForDone(poolPatience);
}

// Each end does nothing the second time.
void endAll()
{
    end();
    const Ends &ends = neverDestroyed<Ends>();
    std::for_each(ends.rbegin(), ends.rend(), [](const auto &each) { each(); });
}

// The main thread stands still afterwards: exit() destroys what it would use, the host's code too.
void endFromAnotherThread()
{
    const auto ended = std::make_shared<QSemaphore>();
    onMainThread([ended] {
        endAll();
        ended->release();
        QThread::msleep(standStill);
    });
    ended->tryAcquire(1, endPatience);
}

void endAtExit()
{
    if (isMainThread())
        endAll();
    else if (isApplicationRunning())
        endFromAnotherThread();
}

void begin()
{
    const QMutexLocker lock(&mutex);
    const bool mayWait = std::exchange(application, Application::Running) == Application::NotYet;
    qAddPostRoutine(end);
    std::atexit(endAtExit);
    if (!mayWait)
        return;
    for (auto &call : std::exchange(neverDestroyed<Waiting>(), {}))
        post(std::move(call));
}
Q_COREAPP_STARTUP_FUNCTION(begin)

} // namespace

bool isMainThread()
{
    return isApplicationRunning()
        && QThread::currentThread() == QCoreApplication::instance()->thread();
}

bool isApplicationRunning()
{
    const QMutexLocker lock(&mutex);
    return application == Application::Running;
}

void endWithApplication(void (*end)())
{
    qAddPostRoutine(end);
    auto &ends = neverDestroyed<Ends>();
    if (std::ranges::count(ends, end))
        return;
    ends.push_back(end);
    endBeforeLoaded();
}

void endBeforeLoaded()
{
    std::atexit(endAtExit);
}

void onMainThread(std::function<void()> call)
{
    const QMutexLocker lock(&mutex);
    if (application == Application::Running)
        post(std::move(call));
    else if (application == Application::NotYet)
        neverDestroyed<Waiting>().push_back(std::move(call));
}

void inPool(std::function<void()> work)
{
    const QMutexLocker lock(&mutex);
    if (application != Application::Ended)
        pool().start(std::move(work));
}

} // namespace znt
