// The ground of a view that covers what lies beneath it.
#pragma once

#include "support/press.h"

#include <QElapsedTimer>
#include <QQuickItem>

namespace znt {

// Takes every mouse, touch, wheel and hover event that reaches it and tells taps and pans of the
// left button or of one finger. A press that the system takes away, or that a second finger joins,
// is neither.
class ZNTADS_INTERNAL PressArea : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT

public:
    explicit PressArea(QQuickItem *parent = nullptr);

Q_SIGNALS:
    void tapped();
    // A press that had become a pan has ended; in the area's coordinates, points and points a
    // second.
    void panned(QPointF translation, QPointF velocity);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseUngrabEvent() override;
    void touchEvent(QTouchEvent *event) override;
    void touchUngrabEvent() override;
    void wheelEvent(QWheelEvent *event) override;
    void hoverEnterEvent(QHoverEvent *event) override;
    void hoverMoveEvent(QHoverEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void end(QPointF at, qint64 ms);
    qint64 timeOf(const QPointerEvent *event) const;

    Press m_press;
    QElapsedTimer m_clock;
};

} // namespace znt
