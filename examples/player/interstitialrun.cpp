#include "interstitialrun.h"

#include <ZNTAds/ZNTInterstitialAd.h>

namespace player {

InterstitialRun::InterstitialRun(const Options &options, EventLog &events, Stage &stage)
    : AdRun(options, events, stage)
    , m_screen(stage.fill(u"HostScreen"_s))
{
    m_screen->setObjectName(u"showAdController"_s);
    if (m_options.hasPosition)
        m_manager.setMediaId(m_options.positionId());
    m_manager.setShowAdController(m_screen.get());
    m_manager.setDelegate(this);
    m_manager.setAutoCloseTime(m_options.autoClose);
}

void InterstitialRun::close()
{
    if (ZNTInterstitialAd *ad = m_manager.interstitialAd())
        ad->dismissWithAutoClose(false);
}

QQuickItem *InterstitialRun::adView(int) const
{
    const ZNTInterstitialAd *ad = m_manager.interstitialAd();
    return ad ? ad->adView() : nullptr;
}

} // namespace player
