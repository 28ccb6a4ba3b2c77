// What ads do, step by step, for an inspector that listens.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QString>

#include <atomic>

class QObject;

class ZNTADS_EXPORT ZNTAdTrace
{
public:
    ZNTAdTrace() = delete;

    enum Step {
        Requested,     // source: the manager; text: the ad position
        Answered,      // source: the manager
        Refused,       // source: the manager; text: the error
        Loaded,        // source: the manager, before the host hears of it
        Telling,       // source: the manager, which is about to emit one of its signals
        FeedView,      // source: a view that now stands for the feed ad whose id is the text
        WatchStarted,  // source: the view
        WatchSeen,     // source: the view; it was enough of it
        WatchStopped,  // source: the view
        TrackerFired,  // text: the URL
        TrackerDone,   // text: the URL
        TrackerFailed, // text: the URL, a space, the error
        LinkOpened,    // text: the link
        LinkRefused,   // text: the link, which could not be opened or may not be
        Feedback,      // text: the ad's id
    };
    // Hears of a step at once, on whatever thread it happens; the source is alive for that long.
    using Listener = void (*)(Step step, const QObject *source, const QString &text);

    // From any thread; null for none.
    static void setListener(Listener listener);
    static bool isOn() { return s_listener.load(std::memory_order_relaxed); }
    static void note(Step step, const QObject *source, const QString &text = {});

private:
    static std::atomic<Listener> s_listener;
};
