#include "feedrun.h"

#include <ZNTAds/ZNTNativeAdRenderProtocol.h>

namespace player {

FeedRun::FeedRun(const Options &options, EventLog &events, Stage &stage)
    : AdRun(options, events, stage)
    , m_screen(stage.fill(u"HostList"_s))
    , m_list(m_screen->property("list").value<QQuickItem *>())
{
    if (m_options.hasPosition)
        m_manager.setMediaId(m_options.positionId());
    m_manager.setDelegate(this);
    m_manager.setAdCount(m_options.count);
}

void FeedRun::show()
{
    for (const ZNTFeedAdDataPtr &ad : m_manager.loadedAdDataArray())
        addRow(ad);
    m_list->setProperty("contentHeight", rowsHeight());
}

void FeedRun::addRow(const ZNTFeedAdDataPtr &ad)
{
    QQuickItem *view = m_manager.createAdViewWithStyle(ad->style(), m_options.templateSize);
    if (!view)
        return;
    view->setObjectName(u"row%1"_s.arg(m_rows.size()));
    view->setParent(m_screen.get());
    view->setY(rowsHeight());
    m_rows.append(view);

    if (auto *drawer = qobject_cast<ZNTNativeAdRenderProtocol *>(view))
        drawer->setupWithAdsData(ad);
    m_manager.registerAdForView(view, ad);
    view->setParentItem(m_list->property("contentItem").value<QQuickItem *>());
}

} // namespace player
