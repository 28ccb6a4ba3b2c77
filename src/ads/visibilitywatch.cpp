#include "ads/visibilitywatch.h"

#include "diagnostics/adtrace.h"

#include <ZNTAds/ZNTAdsManager.h>

#include <QQuickItem>

namespace znt {

void VisibilityWatch::start(Item item)
{
    m_item = std::move(item);
    m_timer.start();
    if (ZNTAdTrace::isOn())
        ZNTAdTrace::note(ZNTAdTrace::WatchStarted, m_item());
}

void VisibilityWatch::stop()
{
    if (ZNTAdTrace::isOn() && isRunning())
        ZNTAdTrace::note(ZNTAdTrace::WatchStopped, m_item());
    m_timer.stop();
}

void VisibilityWatch::look(VisibleShares &shares)
{
    const QQuickItem *item = m_item();
    if (!item || !item->window()) {
        end(End::Lost);
        return;
    }
    const std::optional<double> share = shares.of(item);
    if (!share || *share < ZNTAdsManager::sharedInstance()->currentExposureRatio())
        return;
    shares.forget(); // whoever is notified may move items
    end(End::Seen);
}

void VisibilityWatch::end(End how)
{
    if (how == End::Seen && ZNTAdTrace::isOn())
        ZNTAdTrace::note(ZNTAdTrace::WatchSeen, m_item());
    stop();
    const auto ended = m_ended; // a copy: it may destroy the watch
    ended(how);
}

} // namespace znt
