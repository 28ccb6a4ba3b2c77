#include "core/visibilitywatch.h"

#include "support/visibleshare.h"

#include <ZNTAds/ZNTAdsManager.h>

#include <QQuickItem>

#include <chrono>

namespace znt {

VisibilityWatch::VisibilityWatch(QObject *parent)
    : QObject(parent)
{
    m_timer.setInterval(std::chrono::milliseconds(100));
    connect(&m_timer, &QTimer::timeout, this, &VisibilityWatch::tick);
}

void VisibilityWatch::start(std::function<QQuickItem *()> item)
{
    m_item = std::move(item);
    m_timer.start();
}

void VisibilityWatch::stop()
{
    m_timer.stop();
}

void VisibilityWatch::tick()
{
    const QQuickItem *item = m_item();
    if (!item || !item->window()) {
        stop();
        return;
    }
    const std::optional<double> share = visibleShare(item);
    if (!share || *share < ZNTAdsManager::sharedInstance()->currentExposureRatio())
        return;
    stop();
    Q_EMIT seen();
}

} // namespace znt
