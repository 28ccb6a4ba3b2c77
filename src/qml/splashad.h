// A splash ad as a QML element.
#pragma once

#include "qml/fullscreenad.h"

#include <ZNTAds/ZNTSplashManager.h>

namespace znt {

class SplashAd : public znt::FullScreenAd
{
    Q_OBJECT
    Q_PROPERTY(Style style READ style WRITE setStyle NOTIFY styleChanged)
    // See ZNTSplashManager::setBottomView().
    Q_PROPERTY(QQuickItem *bottomView READ bottomView WRITE setBottomView NOTIFY bottomViewChanged)
    QML_ELEMENT

public:
    enum Style {
        Image = ZNTSplashManager::ImageStyle,
        Shake = ZNTSplashManager::ShakeStyle,
        Slide = ZNTSplashManager::SlideStyle,
    };
    Q_ENUM(Style)

    explicit SplashAd(QObject *parent = nullptr);

    QString mediaId() const override { return m_manager.mediaId(); }
    void setMediaId(const QString &mediaId) override { m_manager.setMediaId(mediaId); }
    Style style() const { return Style(m_manager.adStyle()); }
    void setStyle(Style style) { m_manager.setAdStyle(style); }
    QQuickItem *bottomView() const { return m_manager.bottomView(); }
    void setBottomView(QQuickItem *view) { m_manager.setBottomView(view); }
    int remainingSeconds() const override { return int(m_manager.remainingTime()); }

    void close() override { m_manager.closeSplashAd(); }

Q_SIGNALS:
    void styleChanged();
    void bottomViewChanged();
    void closed();

private:
    void requestAd() override { m_manager.loadAndShowSplashAdWithWindow(nullptr); }
    void showOver(QQuickWindow *window) override { m_manager.showSplashAdWithWindow(window); }
    void takeClose();

    ZNTSplashManager m_manager;
};

} // namespace znt
