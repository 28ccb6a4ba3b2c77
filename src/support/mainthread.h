// The two places where the library's work is done, the main thread and a pool of its own, and how
// long what belongs to the whole process lives.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QCoreApplication>
#include <QPointer>

#include <functional>
#include <memory>
#include <utility>

namespace znt {

// Posts to the main thread, from any. What is posted before the application object exists waits for
// it; what is posted after its end is dropped.
ZNTADS_INTERNAL void onMainThread(std::function<void()> call);

// Runs the work on a thread of the library's own pool. Calls from one thread may overtake each
// other. The end of the application object waits for work that has begun; what is left is dropped.
ZNTADS_INTERNAL void inPool(std::function<void()> work);

// Runs `work` in the pool, then `then` with its result on the main thread if the receiver still
// lives. `work` is destroyed in the pool, `then` on the main thread.
template <class Work, class Then>
void inPool(const QPointer<QObject> &receiver, Work work, Then then)
{
    struct Return
    {
        QPointer<QObject> receiver;
        Then then;
    };
    auto back = std::make_shared<Return>(Return{receiver, std::move(then)});
    inPool([work = std::move(work), back = std::move(back)]() mutable {
        onMainThread([back = std::move(back), result = work()] {
            if (back->receiver)
                back->then(result);
        });
    });
}

// Destroys the value in the pool: what a large answer holds takes milliseconds.
template <class Value>
void discardInPool(Value value)
{
    inPool([value = std::move(value)] {});
}

// Whether the caller is on the main thread of an application that is running.
ZNTADS_INTERNAL bool isMainThread();

// Whether there is an application object that has not begun to go, and exit() was not called.
ZNTADS_INTERNAL bool isApplicationRunning();

// Calls `end` on the main thread when the application object goes, or at exit() if that comes
// first: a thread that still ran then would use what static destructors have destroyed.
ZNTADS_INTERNAL void endWithApplication(void (*end)());

// Has exit() end what belongs to the application before it destroys what was loaded up to now, Qt's
// plugins and globals: it goes backwards. To be called a few times in a process.
ZNTADS_INTERNAL void endBeforeLoaded();

// The one T that lives as long as the application is running: made at the first call, null without
// an application. For what uses windows, timers, sockets or threads. Main thread.
template <class T>
T *ofApplication()
{
    static T *object = nullptr;
    if (!object && isApplicationRunning()) {
        object = new T;
        endWithApplication([] { delete std::exchange(object, nullptr); });
    }
    return object;
}

// The one T that lives from the first call to the end of the process and is never destroyed,
// because other threads and exit handlers may still use it. From any thread.
template <class T>
T &neverDestroyed()
{
    static T *const object = new T;
    return *object;
}

} // namespace znt
