#include "splashrun.h"

#include <ZNTAds/ZNTSplashAdView.h>

namespace player {

std::unique_ptr<QQuickItem> makeBottomView(const Options &options, Stage &stage)
{
    if (!options.bottomView)
        return nullptr;
    std::unique_ptr<QQuickItem> view(stage.make(u"HostFooter"_s));
    view->setObjectName(u"bottomView"_s);
    view->setHeight(*options.bottomView);
    return view;
}

SplashRun::SplashRun(const Options &options, EventLog &events, Stage &stage)
    : AdRun(options, events, stage)
    , m_bottomView(makeBottomView(options, stage))
{
    if (m_options.hasPosition)
        m_manager.setMediaId(m_options.positionId());
    m_manager.setDelegate(this);
    m_manager.setAdStyle(m_options.style);
    m_manager.setBottomView(m_bottomView.get());
}

void SplashRun::show()
{
    m_manager.showSplashAdWithWindow(&m_stage.window());
    if (ZNTSplashAdView *view = m_manager.splashAdView())
        view->setObjectName(u"splashAdView"_s);
}

QQuickItem *SplashRun::adView(int) const
{
    return m_manager.splashAdView();
}

} // namespace player
