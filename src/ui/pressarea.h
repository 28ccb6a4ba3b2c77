// The item that the user presses.
#pragma once

#include "ui/press.h"

#include <QElapsedTimer>
#include <QQuickItem>

namespace znt {

// Reports taps and pans of the left button or of one finger while it is interactive; Return, Enter
// and Space are taps. It takes a press as an item, not as a handler: what lies beneath hears
// nothing of it, though a list may take it over when it becomes a drag. A press that is taken away,
// that a second finger joins, or that stops a list in motion, is neither tap nor pan.
class ZNTADS_INTERNAL PressArea : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    // Whether it takes presses; off at the beginning.
    Q_PROPERTY(bool interactive READ isInteractive WRITE setInteractive NOTIFY interactiveChanged)
    // Whether a press that ends within the area is a tap however far it has gone.
    Q_PROPERTY(bool tapsAfterPan MEMBER m_tapsAfterPan)

public:
    explicit PressArea(QQuickItem *parent = nullptr);

    bool isInteractive() const { return acceptTouchEvents(); }
    void setInteractive(bool interactive);

Q_SIGNALS:
    void interactiveChanged();
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
    void begin(QPointF at, qint64 ms);
    void end(QPointF at, qint64 ms);
    qint64 timeOf(const QPointerEvent *event) const;

    bool m_tapsAfterPan = false;
    Press m_press;
    QElapsedTimer m_clock;
};

} // namespace znt
