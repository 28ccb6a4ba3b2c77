// The pulse of the visibility checks.
#pragma once

#include "ui/visibleshare.h"

#include <QtGlobal>

#include <functional>
#include <memory>

namespace znt {

// Ticks ten times a second. All that run share one timer of the platform's, and those that were
// started at about the same time share its wake-ups. Main thread.
class ZNTADS_INTERNAL VisibilityTimer
{
public:
    // Gets what the ticks of one wake-up share.
    using Tick = std::function<void(VisibleShares &shares)>;

    // The tick may stop the timer and destroy it.
    explicit VisibilityTimer(Tick tick)
        : m_tick(std::move(tick))
    {
    }
    Q_DISABLE_COPY_MOVE(VisibilityTimer)

    // Starts over. The first tick comes a tenth of a second from now or up to a hundredth later,
    // never sooner.
    void start();
    void stop() { m_run.reset(); }
    bool isActive() const { return m_run != nullptr; }

private:
    const Tick m_tick;
    // What the schedule calls, for as long as it is here; a new one with each start.
    std::shared_ptr<const Tick> m_run;
};

} // namespace znt
