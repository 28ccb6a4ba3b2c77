#include "ads/visibilitywatch.h"

#include "ui/visibleshare.h"

#include <ZNTAds/ZNTAdsManager.h>

#include <QQuickItem>

namespace znt {

bool checkSeen(const QQuickItem *item, VisibleShares &shares)
{
    const std::optional<double> share = shares.of(item);
    const bool seen = share && *share >= ZNTAdsManager::sharedInstance()->currentExposureRatio();
    if (seen)
        shares.forget();
    return seen;
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

void VisibilityWatch::tick(VisibleShares &shares)
{
    const QQuickItem *item = m_item();
    if (!item || !item->window()) {
        stop();
        return;
    }
    if (!checkSeen(item, shares))
        return;
    stop();
    Q_EMIT seen();
}

} // namespace znt
