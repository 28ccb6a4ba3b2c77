// What the tests of the splash creatives share.
#pragma once

#include "support/host.h"

#include <ZNTAds/ZNTShakeAdView.h>
#include <ZNTAds/ZNTSlideAdView.h>
#include <ZNTAds/ZNTSplashImageAdView.h>

namespace znt::test {

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
        : window(size)
    {
        view = newCreative(style, window.contentItem());
        view->setSize(size);
        view->setDelegate(&host);
        QObject::connect(view, &ZNTSplashAdView::skipClicked, &host, [this] { ++skips; });
    }
    ~Scene() { delete view; }

    QQuickItem *item(const QString &name) const { return view->findChild<QQuickItem *>(name); }
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
    qsizetype clicks() const { return host.heard.size(); } // nothing else is told by a creative

    ShownWindow window;
    Host host;
    int skips = 0;
    QPointer<ZNTSplashAdView> view;
};

} // namespace znt::test
