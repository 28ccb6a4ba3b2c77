#include "ads.h"

#include <ZNTAds/ZNTNativeAdRenderProtocol.h>

Ads::Ads()
{
    m_splash.setMediaId(QStringLiteral("splash"));
    m_splash.setDelegate(this);
    m_feed.setMediaId(QStringLiteral("feed"));
    m_feed.setDelegate(this);
    m_feed.setAdCount(9);
}

void Ads::start(QQuickWindow *window)
{
    m_window = window;
    m_splash.loadAndShowSplashAdWithWindow(window);
    m_feed.loadAdData();
}

int Ads::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_ads.size());
}

void Ads::feedAdDidLoad(const QList<ZNTFeedAdDataPtr> &ads)
{
    beginResetModel();
    m_ads = ads; // the next load would empty the manager's own list
    endResetModel();
}

void Ads::place(int row, QQuickItem *item)
{
    const ZNTFeedAdDataPtr ad = m_ads.value(row);
    QQuickItem *view = ad ? m_feed.createAdViewWithStyle(ad->style(), item->size()) : nullptr;
    if (!view)
        return;
    view->setParent(item);
    connect(item, &QQuickItem::widthChanged, view, [view, item] { view->setWidth(item->width()); });

    // Fill, register, show: in this order the ad is watched from its first moment on screen.
    if (auto *drawer = qobject_cast<ZNTNativeAdRenderProtocol *>(view))
        drawer->setupWithAdsData(ad);
    m_feed.registerAdForView(view, ad);
    view->setParentItem(item);
}
