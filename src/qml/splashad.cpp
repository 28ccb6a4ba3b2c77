#include "qml/splashad.h"

namespace znt {

SplashAd::SplashAd(QObject *parent)
    : FullScreenAd(parent)
{
    follow(&m_manager);
    connect(&m_manager, &ZNTSplashManager::adStyleChanged, this, &SplashAd::styleChanged);
    connect(&m_manager, &ZNTSplashManager::bottomViewChanged, this, &SplashAd::bottomViewChanged);
    connect(&m_manager, &ZNTSplashManager::closed, this, &SplashAd::takeClose);
}

// The manager has forgotten the ad.
void SplashAd::takeClose()
{
    State next = state();
    next.isShown = false;
    next.isReady = false;
    if (setState(next))
        Q_EMIT closed();
}

} // namespace znt
