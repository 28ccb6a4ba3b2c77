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
    const bool isAlive = change([](State &state) {
        state.isShown = false;
        state.isReady = false;
    });
    if (isAlive)
        Q_EMIT closed();
}

} // namespace znt
