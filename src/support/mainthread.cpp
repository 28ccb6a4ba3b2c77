#include "support/mainthread.h"

#include <QMutex>
#include <QThreadPool>

#include <vector>

namespace znt {

namespace {

enum class Application { NotYet, Running, Ended };

// Once the application object has begun to go, nothing is posted to it any more.
Q_CONSTINIT QBasicMutex mutex;
Q_CONSTINIT Application application = Application::NotYet;

using Waiting = std::vector<std::function<void()>>;

void post(std::function<void()> call)
{
    QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(call), Qt::QueuedConnection);
}

void end()
{
    const QMutexLocker lock(&mutex);
    application = Application::Ended;
}

void begin()
{
    const QMutexLocker lock(&mutex);
    const bool mayWait = std::exchange(application, Application::Running) == Application::NotYet;
    qAddPostRoutine(end);
    if (!mayWait)
        return;
    for (auto &call : std::exchange(neverDestroyed<Waiting>(), {}))
        post(std::move(call));
}
Q_COREAPP_STARTUP_FUNCTION(begin)

} // namespace

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
    neverDestroyed<QThreadPool>().start(std::move(work));
}

} // namespace znt
