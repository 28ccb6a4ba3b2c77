#pragma once

#include "adrun.h"

#include <ZNTAds/ZNTFeedManager.h>

namespace player {

class FeedRun : public AdRun, public ZNTFeedDelegate
{
    Q_OBJECT
    Q_INTERFACES(ZNTFeedDelegate)

public:
    FeedRun(const Options &options, EventLog &events, Stage &stage);

    void load() override { m_manager.loadAdData(); }
    bool takeAnswer(const QJsonObject &a) override { return m_manager.handleAdResponse(a); }
    void show() override;
    void close() override { m_manager.deallocAllFeedProperty(); }
    QQuickItem *adView(int row) const override { return m_rows.value(row); }
    QQuickItem *screen() const override { return m_screen.get(); }
    void scroll(double y) override { m_list->setProperty("contentY", y); }

    void feedAdDidLoad(const QList<ZNTFeedAdDataPtr> &ads) override
    {
        tellLoaded(u"feedAdDidLoad"_s, {{u"count"_s, ads.size()}});
    }
    void feedAdDidFail(const ZNTError &e) override { tellFailed(u"feedAdDidFail"_s, e); }
    void feedAdDidVisible() override { tell(u"feedAdDidVisible"_s); }
    void feedAdDidClick() override { tell(u"feedAdDidClick"_s); }
    void feedAdDidClose() override { tell(u"feedAdDidClose"_s); }
    void feedAdDidCloseOtherController() override { tell(u"feedAdDidCloseOtherController"_s); }

private:
    void addRow(const ZNTFeedAdDataPtr &ad);
    double rowsHeight() const { return double(m_rows.size()) * m_options.templateSize.height(); }

    ZNTFeedManager m_manager;
    const std::unique_ptr<QQuickItem> m_screen;
    QQuickItem *const m_list;   // in the screen
    QList<QQuickItem *> m_rows; // in the list
};

} // namespace player
