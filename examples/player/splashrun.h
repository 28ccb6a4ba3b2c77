#pragma once

#include "adrun.h"

#include <ZNTAds/ZNTSplashManager.h>

namespace player {

class SplashRun : public AdRun, public ZNTSplashDelegate
{
    Q_OBJECT
    Q_INTERFACES(ZNTSplashDelegate)

public:
    SplashRun(const Options &options, EventLog &events, Stage &stage);

    void load() override { m_manager.loadAndShowSplashAdWithWindow(&m_stage.window()); }
    bool takeAnswer(const QJsonObject &a) override { return m_manager.handleAdResponse(a); }
    void show() override;
    void close() override { m_manager.closeSplashAd(); }
    QQuickItem *adView(int row) const override;
    QQuickItem *screen() const override { return m_stage.window().contentItem(); }

    void splashAdDidLoad() override { tellLoaded(u"splashAdDidLoad"_s); }
    void splashAdDidFailed(const ZNTError &e) override { tellFailed(u"splashAdDidFailed"_s, e); }
    void splashAdDidVisible() override { tell(u"splashAdDidVisible"_s); }
    void handleAdClick() override { tell(u"handleAdClick"_s); }
    void splashAdDidCloseOtherController() override { tell(u"splashAdDidCloseOtherController"_s); }
    void splashAdDidShowFinish() override { tellClosed(u"splashAdDidShowFinish"_s); }
    void splashAdDidRender() override { tell(u"splashAdDidRender"_s); }

private:
    const std::unique_ptr<QQuickItem> m_bottomView;
    ZNTSplashManager m_manager;
};

// The host's strip of that height under a splash ad, or null.
std::unique_ptr<QQuickItem> makeBottomView(const Options &options, Stage &stage);

} // namespace player
