// What the tests of the splash creatives share.
#pragma once

#include "support/exchangetest.h"

#include <ZNTAds/ZNTShakeAdView.h>
#include <ZNTAds/ZNTSlideAdView.h>
#include <ZNTAds/ZNTSplashImageAdView.h>

#include <QQuickWindow>

namespace znt::test {

// Counts clicks, and may do something at each.
class ClickCounter : public QObject, public ZNTSplashDelegate
{
    Q_OBJECT
    Q_INTERFACES(ZNTSplashDelegate)

public:
    void handleAdClick() override
    {
        ++clicks;
        if (onClick)
            onClick();
    }

    int clicks = 0;
    std::function<void()> onClick;
};

enum Style { Image, Shake, Slide };

inline ZNTSplashAdView *newCreative(int style, QQuickItem *parent)
{
    if (style == Shake)
        return new ZNTShakeAdView(parent);
    if (style == Slide)
        return new ZNTSlideAdView(parent);
    return new ZNTSplashImageAdView(parent);
}

// A creative that fills a window of its own, and who hears of its clicks.
struct Scene
{
    explicit Scene(int style, const QSize &size = {375, 812})
    {
        window.resize(size);
        window.show();
        view = newCreative(style, window.contentItem());
        view->setSize(size);
        view->setDelegate(&host);
        QObject::connect(view, &ZNTSplashAdView::skipClicked, &host, [this] { ++skips; });
    }
    ~Scene() { delete view; }

    template <class Item = QQuickItem>
    Item *item(const QString &name) const
    {
        return view->findChild<Item *>(name);
    }
    QRectF frame(const QString &name) const
    {
        const QQuickItem *at = item(name);
        return at ? at->mapRectToItem(view, {QPointF(), at->size()}) : QRectF();
    }
    QVariant get(const QString &name, const char *property) const
    {
        const QQuickItem *at = item(name);
        return at ? at->property(property) : QVariant();
    }
    QPoint centre(const QString &name) const { return frame(name).center().toPoint(); }

    // Whatever a person has done has taken effect.
    static void settle() { QCoreApplication::sendPostedEvents(); }
    void tap(const QPoint &at)
    {
        QTest::mouseClick(&window, Qt::LeftButton, {}, at);
        settle();
    }

    QQuickWindow window;
    ClickCounter host;
    int skips = 0;
    QPointer<ZNTSplashAdView> view;
};

} // namespace znt::test
