// The item that a person presses.
#pragma once

#include "ui/press.h"

#include <QElapsedTimer>
#include <QQuickItem>

namespace znt {

// Tells taps and pans of the left button or of one finger, as far as it accepts mouse buttons and
// touches, which is up to its user; Return, Enter and Space are taps. It takes a press as an item,
// not as a handler: what lies beneath hears nothing of it, though a list may take it over when it
// becomes a drag. A press that is taken away, or that a second finger joins, is neither tap nor
// pan.
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
    void keyPressEvent(QKeyEvent *event) override;

private:
    void end(QPointF at, qint64 ms);
    qint64 timeOf(const QPointerEvent *event) const;

    Press m_press;
    QElapsedTimer m_clock;
};

} // namespace znt
