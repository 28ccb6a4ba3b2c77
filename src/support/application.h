// What depends on the application object being there.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QCoreApplication>

#include <functional>
#include <utility>

namespace znt {

// Posts to the main thread, from any; drops the call when there is no application object.
ZNTADS_INTERNAL void onMainThread(std::function<void()> call);

// The one T that lives as long as the application object: made at the first call, null without an
// application. Main thread.
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

} // namespace znt
