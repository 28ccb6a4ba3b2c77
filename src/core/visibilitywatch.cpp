#include "core/visibilitywatch.h"

#include "support/visibleshare.h"

#include <ZNTAds/ZNTAdsManager.h>

#include <QQuickItem>

namespace znt {

bool isSeen(const QQuickItem *item)
{
    const std::optional<double> share = visibleShare(item);
    return share && *share >= ZNTAdsManager::sharedInstance()->currentExposureRatio();
}

VisibilityWatch::VisibilityWatch(QObject *parent)
    : QObject(parent)
{
}

void VisibilityWatch::start(std::function<QQuickItem *()> item)
{
    m_item = std::move(item);
    m_timer.start();
}

void VisibilityWatch::tick()
{
    const QQuickItem *item = m_item();
    if (!item || !item->window()) {
        stop();
        return;
    }
    if (!isSeen(item))
        return;
    stop();
    Q_EMIT seen();
}

} // namespace znt
