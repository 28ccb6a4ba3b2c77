// A real window off screen, with a screen of the host's in it.
#pragma once

#include "support/host.h"

namespace znt::test {

class ScreenWindow : public ShownWindow
{
public:
    explicit ScreenWindow(QSize size = {375, 812})
        : ShownWindow(size)
        , screen(new QQuickItem(contentItem()))
    {
        screen->setSize(size);
        requestActivate();
        if (!QTest::qWaitForWindowActive(this))
            qFatal("no window");
    }

    // Of what is in the window now; null when it is not there.
    QQuickItem *subview(const QString &name) const { return under(contentItem(), name); }
    // In the window's coordinates.
    QPoint centre(const QString &name) const
    {
        const QQuickItem *item = subview(name);
        return item->mapRectToScene(item->boundingRect()).center().toPoint();
    }
    void tap(const QString &name) { QTest::mouseClick(this, Qt::LeftButton, {}, centre(name)); }

    const QPointer<QQuickItem> screen;

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
