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
// other.
ZNTADS_INTERNAL void inPool(std::function<void()> work);

// Runs `work` in the pool, then `then` with its result on the main thread if the receiver still
// lives. Both functions are destroyed on the main thread.
template <class Work, class Then>
void inPool(const QPointer<QObject> &receiver, Work work, Then then)
{
    struct Job
    {
        QPointer<QObject> receiver;
        Work work;
        Then then;
    };
    auto job = std::make_shared<Job>(Job{receiver, std::move(work), std::move(then)});
    inPool([job = std::move(job)]() mutable {
        auto result = job->work();
        onMainThread([job = std::move(job), result = std::move(result)] {
            if (job->receiver)
                job->then(result);
        });
    });
}

// The one T that lives as long as the application object: made at the first call, null without an
// application. For what uses windows, timers or sockets. Main thread.
template <class T>
T *ofApplication()
{
    static T *object = nullptr;
    if (!object && QCoreApplication::instance()) {
        object = new T;
        qAddPostRoutine([] { delete std::exchange(object, nullptr); });
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
