// Pictures from the network, for views.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QImage>
#include <QObject>

#include <functional>

namespace znt {

// Fetches the picture at `url` (http or https) and decodes it, both off the main thread, and hands
// it to `done` on the main thread. Nothing happens when it cannot be had, or when the receiver has
// gone meanwhile. Called on the main thread.
ZNTADS_INTERNAL void fetchImage(
    const QString &url, QObject *receiver, std::function<void(const QImage &picture)> done);

// The same with a copy of the picture, made off the main thread as well.
ZNTADS_INTERNAL void fetchImageAndCopy(const QString &url, QObject *receiver,
    std::function<QImage(const QImage &)> makeCopy,
    std::function<void(const QImage &picture, const QImage &copy)> done);

} // namespace znt
