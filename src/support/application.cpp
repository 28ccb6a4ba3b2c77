#include "support/application.h"

#include <QMutex>

namespace znt {

namespace {

// Other threads reach the application object through this alone: once it has begun to go, nothing
// is posted to it any more.
Q_CONSTINIT QBasicMutex mutex;
Q_CONSTINIT bool isThere = false;

void setThere(bool there)
{
    const QMutexLocker lock(&mutex);
    isThere = there;
}

void begin()
{
    setThere(true);
    qAddPostRoutine([] { setThere(false); });
}
Q_COREAPP_STARTUP_FUNCTION(begin)

} // namespace

void onMainThread(std::function<void()> call)
{
    const QMutexLocker lock(&mutex);
    if (isThere)
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), std::move(call), Qt::QueuedConnection);
}

} // namespace znt
