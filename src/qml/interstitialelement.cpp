#include "qml/interstitialelement.h"

#include <ZNTAds/ZNTInterstitialAd.h>

#include <QQuickWindow>

namespace znt {

InterstitialAdElement::InterstitialAdElement(QObject *parent)
    : FullScreenAd(parent)
{
    follow(&m_manager);
    connect(&m_manager, &ZNTInterstitialManager::autoCloseTimeChanged, this,
        &InterstitialAdElement::autoCloseTimeChanged);
    connect(&m_manager, &ZNTInterstitialManager::closed, this, &InterstitialAdElement::takeClose);
}

void InterstitialAdElement::close()
{
    if (isShown())
        m_manager.interstitialAd()->dismissWithAutoClose(false);
}

void InterstitialAdElement::showOver(QQuickWindow *window)
{
    m_manager.setShowAdController(window->contentItem());
    m_manager.showInterstitialAd();
}

// The manager keeps the ad, which may be shown again.
void InterstitialAdElement::takeClose(bool automatically)
{
    if (change([](State &state) { state.isShown = false; }))
        Q_EMIT closed(automatically);
}

} // namespace znt
