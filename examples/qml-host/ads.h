// What QML sees of the ads: a list of feed ads, each of which can be put into an item.
#pragma once

#include <ZNTAds/ZNTFeedManager.h>
#include <ZNTAds/ZNTSplashManager.h>

#include <QAbstractListModel>

class Ads : public QAbstractListModel, public ZNTSplashDelegate, public ZNTFeedDelegate
{
    Q_OBJECT
    Q_INTERFACES(ZNTSplashDelegate ZNTFeedDelegate)

public:
    Ads();

    // A splash ad over the window, and feed ads for its lists.
    void start(QQuickWindow *window);

    // Draws the row's ad in the item, for as long as the item lives.
    Q_INVOKABLE void place(int row, QQuickItem *item);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &, int) const override { return {}; }

    void splashAdDidLoad() override { m_splash.showSplashAdWithWindow(m_window); }
    void feedAdDidLoad(const QList<ZNTFeedAdDataPtr> &ads) override;

private:
    QPointer<QQuickWindow> m_window;
    ZNTSplashManager m_splash;
    ZNTFeedManager m_feed;
    QList<ZNTFeedAdDataPtr> m_ads;
};
