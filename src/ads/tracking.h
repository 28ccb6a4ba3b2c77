// Fires the advertiser's tracking URLs: one GET for each, as one group.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QJsonValue>

#include <functional>

namespace znt {

// The lines that a list's firing writes: the opening one, "NAME failed[URL]: ERROR" or
// "NAME successful[URL]" for each answer, and the closing one.
struct TrackingLogTexts
{
    const char *opening;
    const char *name;
    const char *closing = nullptr; // none
    bool namesUrl = true;
};

// Nothing happens when `urls` is no list or an empty one. Elements that are no text, and empty
// texts, are passed over. When every request has been answered, the closing line is written and
// `finished` runs, on a later turn of the main thread's event loop. Main thread.
ZNTADS_INTERNAL void fireTracking(
    const QJsonValue &urls, const TrackingLogTexts &texts, std::function<void()> finished = {});

} // namespace znt
