#pragma once

#include "adrun.h"

#include <ZNTAds/ZNTSplashAdView.h>

namespace player {

// A splash view by itself, without a manager: it shows a video.
class VideoRun : public AdRun, public ZNTSplashDelegate
{
    Q_OBJECT
    Q_INTERFACES(ZNTSplashDelegate)

public:
    VideoRun(const Options &options, EventLog &events, Stage &stage);

    void load() override;
    bool takeAnswer(const QJsonObject &answer) override;
    void show() override;
    void close() override;
    QQuickItem *adView(int row) const override;
    QQuickItem *screen() const override;

    void handleAdClick() override;

private:
    std::unique_ptr<QQuickItem> m_bottomView;
    std::unique_ptr<ZNTSplashAdView> m_view;
};

} // namespace player
