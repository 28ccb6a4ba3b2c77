// The two plugins of src/plugins, loaded when they are first needed and kept.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QPointer>

#include <functional>

namespace znt {

class MotionBackend;
class VideoBackend;

// Calls `then` on the main thread with the backend, if there is one and the receiver still lives.
// From any thread. The first call has the pool load the plugin, later ones on the main thread call
// at once.
void withVideoBackend(
    const QPointer<QObject> &receiver, const std::function<void(VideoBackend &)> &then);
void withMotionBackend(
    const QPointer<QObject> &receiver, const std::function<void(MotionBackend &)> &then);

} // namespace znt
