#pragma once

#include "adrun.h"

#include <ZNTAds/ZNTInterstitialManager.h>

namespace player {

class InterstitialRun : public AdRun, public ZNTInterstitialDelegate
{
    Q_OBJECT
    Q_INTERFACES(ZNTInterstitialDelegate)

public:
    InterstitialRun(const Options &options, EventLog &events, Stage &stage);

    void load() override { m_manager.loadAdData(); }
    bool takeAnswer(const QJsonObject &a) override { return m_manager.handleAdResponse(a); }
    void show() override { m_manager.showInterstitialAd(); }
    void close() override;
    QQuickItem *adView(int row) const override;
    QQuickItem *adItems(int) const override { return m_screen.get(); }
    QQuickItem *screen() const override { return m_screen.get(); }

    void interstitialAdDidLoad() override { tellLoaded(u"interstitialAdDidLoad"_s); }
    void interstitialAdDidFailed(const ZNTError &e) override
    {
        tellFailed(u"interstitialAdDidFailed"_s, e);
    }
    void interstitialAdDidVisible() override { tell(u"interstitialAdDidVisible"_s); }
    void interstitialAdDidClick() override { tell(u"interstitialAdDidClick"_s); }
    void interstitialAdDidCloseOtherController() override
    {
        tell(u"interstitialAdDidCloseOtherController"_s);
    }
    void interstitialAdDidAutoClose(bool autoClose) override
    {
        tellClosed(u"interstitialAdDidAutoClose"_s, {{u"auto"_s, autoClose}});
    }

private:
    const std::unique_ptr<QQuickItem> m_screen;
    ZNTInterstitialManager m_manager;
};

} // namespace player
