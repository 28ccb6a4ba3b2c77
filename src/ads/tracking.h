// Fires the advertiser's tracking URLs: one GET for each, as one batch.
#pragma once

#include "model/trackinglists.h"

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

// The most URLs of a list that are fired; one error line says how many are left.
constexpr qsizetype maximumTrackers = 1000;

// Nothing happens when `urls` is no list or an empty one. Elements that are no text, and empty
// texts, are passed over. When every request has been answered, the closing line is written and
// `finished` runs, in an event-loop iteration of its own. Main thread.
ZNTADS_INTERNAL void fireTracking(
    const QJsonValue &urls, const TrackingLogTexts &texts, std::function<void()> finished = {});

// Fires the list of an exposure.
void reportExposure(const QJsonValue &urls, std::function<void()> finished);

// What differs between the formats in the lines about a click.
struct ClickLog
{
    bool namesUrl;
    bool closesClicks;   // with a line when all have been answered
    bool closesDpEvents; // likewise
};

// Fires the lists of clicks and of deep-link events.
void reportClick(const TrackingLists &lists, const ClickLog &log);

} // namespace znt
