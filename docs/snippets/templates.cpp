#include <ZNTAds/ZNTFeedAdView.h>
#include <ZNTAds/ZNTFeedManager.h>

void show(ZNTFeedManager &manager, const ZNTFeedAdDataPtr &ad, QQuickItem *row)
{
    //! [templates]
    QQuickItem *item = manager.createAdViewWithStyle(ad->style(), row->size());
    if (auto *view = qobject_cast<ZNTFeedAdView *>(item)) {
        view->setParent(row);
        view->setupWithAdsData(ad);
        manager.registerAdForView(view, ad);
        view->setParentItem(row);
    }
    //! [templates]
}
