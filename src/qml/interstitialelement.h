// An interstitial ad as a QML element.
#pragma once

#include "qml/fullscreenad.h"

#include <ZNTAds/ZNTInterstitialManager.h>

namespace znt {

class InterstitialAdElement : public znt::FullScreenAd
{
    Q_OBJECT
    // In seconds; see ZNTInterstitialManager::setAutoCloseTime().
    Q_PROPERTY(
        double autoCloseTime READ autoCloseTime WRITE setAutoCloseTime NOTIFY autoCloseTimeChanged)
    QML_NAMED_ELEMENT(InterstitialAd)

public:
    explicit InterstitialAdElement(QObject *parent = nullptr);

    QString mediaId() const override { return m_manager.mediaId(); }
    void setMediaId(const QString &mediaId) override { m_manager.setMediaId(mediaId); }
    double autoCloseTime() const { return m_manager.autoCloseTime(); }
    void setAutoCloseTime(double seconds) { m_manager.setAutoCloseTime(seconds); }
    int remainingSeconds() const override { return int(m_manager.remainingTime()); }

    void close() override;

Q_SIGNALS:
    void autoCloseTimeChanged();
    void closed(bool automatically);

private:
    void requestAd() override { m_manager.loadAdData(); }
    void showOver(QQuickWindow *window) override;
    void takeClose(bool automatically);

    ZNTInterstitialManager m_manager;
};

} // namespace znt
