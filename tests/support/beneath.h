// What lies beneath an ad that covers it.
#pragma once

#include "support/hand.h"

namespace znt::test {

// Something of the host's that fills the window and hears of every kind of input.
class Beneath
{
public:
    explicit Beneath(QQuickItem *parent)
    {
        m_object = created(&m_engine, R"(import QtQuick
            Flickable {
                property var hits: new Set()
                z: -1
                contentHeight: 5000
                contentWidth: width
                onMovementStarted: hits.add("flick")
                Shortcut { sequence: "a"; onActivated: hits.add("shortcut") }
                Keys.onPressed: hits.add("key")
                function taken(): string { cancelFlick(); const all = [...hits].sort().join(" "); hits.clear(); return all }
                Item {
                    objectName: "screen"
                    width: 375; height: 812
                    HoverHandler { acceptedDevices: PointerDevice.Mouse
                        onHoveredChanged: hits.add("hover") }
                    Item { // as a host that has raised something would have it
                        anchors.fill: parent; z: 100
                        TapHandler { onTapped: hits.add("tap") }
                        PointHandler { onActiveChanged: hits.add("point") }
                        DragHandler { target: null; yAxis.enabled: false
                            onActiveChanged: hits.add("drag") }
                        WheelHandler { onWheel: hits.add("wheel") }
                    }
                }
            })");
        m_item = qobject_cast<QQuickItem *>(m_object.get());
        m_item->setParentItem(parent);
        m_item->setSize(parent->window()->size());
        m_item->forceActiveFocus();
    }

    // Lies in what can be flicked.
    QQuickItem *screen() const { return m_item->findChild<QQuickItem *>("screen"); }

    // Points, clicks, turns the wheel, types and drags there. What was heard of it, by name.
    QString hearsOf(QPoint at)
    {
        QQuickWindow *window = m_item->window();
        m_item->setProperty("contentY", 0);
        QTest::mouseMove(window, {1, 1});
        taken(); // up to now
        QTest::mouseMove(window, at);
        QTest::mouseClick(window, Qt::LeftButton, {}, at);
        QWheelEvent wheel(at, at, {}, {0, 120}, {}, {}, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(window, &wheel);
        QTest::keyClick(window, Qt::Key_A);
        QTest::keyClick(window, Qt::Key_B);
        for (const QPoint way : {QPoint(80, 0), QPoint(0, -80)}) {
            dragMouse(window, at, way);
            dragFinger(window, at, way);
        }
        return taken();
    }

private:
    QString taken()
    {
        QString taken;
        QMetaObject::invokeMethod(m_item, "taken", Q_RETURN_ARG(QString, taken));
        return taken;
    }

    QQmlEngine m_engine;
    std::unique_ptr<QObject> m_object;
    QQuickItem *m_item = nullptr;
};

} // namespace znt::test
