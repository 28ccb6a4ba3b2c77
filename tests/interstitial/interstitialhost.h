// A host of interstitial ads: a window with a screen in it, and a delegate that keeps what it
// hears.
#pragma once

#include "support/recorder.h"

#include <ZNTAds/ZNTInterstitialDelegate.h>

#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

namespace znt::test {

class Host : public QObject, public ZNTInterstitialDelegate, public Recorder
{
public:
    void interstitialAdDidLoad() override { hear("load"); }
    void interstitialAdDidFailed(const ZNTError &error) override
    {
        hear(QStringLiteral("failed %1 %2").arg(error.domain()).arg(error.code()));
    }
    void interstitialAdDidVisible() override { hear("visible"); }
    void interstitialAdDidClick() override { hear("click"); }
    void interstitialAdDidCloseOtherController() override { hear("other"); }
    void interstitialAdDidAutoClose(bool autoClose) override
    {
        hear(autoClose ? "auto-closed" : "closed");
    }
};

// A real window off screen, with a screen item of the same size.
class ScreenWindow : public QQuickWindow
{
public:
    explicit ScreenWindow(QSize size = {375, 812})
    {
        resize(size);
        screen = new QQuickItem(contentItem());
        screen->setSize(size);
        show();
        requestActivate();
        if (!QTest::qWaitForWindowActive(this))
            qFatal("no window");
    }

    // Of what is in the window now; null when it is not there.
    QQuickItem *subview(const char *name) const
    {
        return under(contentItem(), QLatin1String(name));
    }
    // In the window's coordinates.
    QPoint centre(const char *name) const
    {
        const QQuickItem *item = subview(name);
        return item->mapRectToScene(item->boundingRect()).center().toPoint();
    }
    void tap(const char *name) { QTest::mouseClick(this, Qt::LeftButton, {}, centre(name)); }

    QPointer<QQuickItem> screen;

private:
    static QQuickItem *under(QQuickItem *item, const QString &name)
    {
        QQuickItem *found = item->objectName() == name ? item : nullptr;
        for (QQuickItem *child : item->childItems())
            found = found ? found : under(child, name);
        return found;
    }
};

} // namespace znt::test
