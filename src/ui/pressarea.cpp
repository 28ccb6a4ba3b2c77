#include "ui/pressarea.h"

namespace znt {

namespace {

// A list that the press is about to stop still says that it moves.
bool isInMotion(const QQuickItem *item)
{
    for (; item; item = item->parentItem()) {
        if (item->inherits("QQuickFlickable") && item->property("moving").toBool())
            return true;
    }
    return false;
}

} // namespace

PressArea::PressArea(QQuickItem *parent)
    : QQuickItem(parent)
{
    m_clock.start();
}

void PressArea::setInteractive(bool interactive)
{
    if (interactive == isInteractive())
        return;
    setAcceptedMouseButtons(interactive ? Qt::LeftButton : Qt::NoButton);
    setAcceptTouchEvents(interactive);
    Q_EMIT interactiveChanged();
}

void PressArea::mousePressEvent(QMouseEvent *event)
{
    event->accept();
    if (event->button() == Qt::LeftButton)
        begin(event->position(), timeOf(event));
}

void PressArea::mouseMoveEvent(QMouseEvent *event)
{
    event->accept();
    m_press.move(event->position(), timeOf(event));
}

void PressArea::mouseReleaseEvent(QMouseEvent *event)
{
    event->accept();
    if (event->button() == Qt::LeftButton)
        end(event->position(), timeOf(event));
}

void PressArea::mouseDoubleClickEvent(QMouseEvent *event)
{
    event->accept(); // its press and release come as well
}

void PressArea::mouseUngrabEvent()
{
    m_press.cancel();
}

void PressArea::touchEvent(QTouchEvent *event)
{
    event->accept();
    if (event->type() == QEvent::TouchCancel || event->points().size() != 1) {
        m_press.cancel();
        return;
    }
    const QEventPoint &finger = event->points().constFirst();
    if (finger.state() == QEventPoint::Pressed)
        begin(finger.position(), timeOf(event));
    else if (finger.state() == QEventPoint::Released)
        end(finger.position(), timeOf(event));
    else
        m_press.move(finger.position(), timeOf(event));
}

void PressArea::touchUngrabEvent()
{
    m_press.cancel();
}

void PressArea::keyPressEvent(QKeyEvent *event)
{
    const int key = event->key();
    const bool presses = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
    event->setAccepted(presses);
    if (presses && !event->isAutoRepeat())
        Q_EMIT tapped();
}

void PressArea::begin(QPointF at, qint64 ms)
{
    if (!isInMotion(parentItem()))
        m_press.begin(at, ms);
}

void PressArea::end(QPointF at, qint64 ms)
{
    if (!m_press.isActive())
        return;
    m_press.move(at, ms);
    const QPointF translation = m_press.translation();
    const QPointF velocity = m_press.velocity();
    m_press.cancel();
    if (m_press.isPan() && !m_tapsAfterPan)
        Q_EMIT panned(translation, velocity);
    else if (contains(at))
        Q_EMIT tapped();
}

// Events made by hand may lack a time.
qint64 PressArea::timeOf(const QPointerEvent *event) const
{
    return event->timestamp() ? qint64(event->timestamp()) : m_clock.elapsed();
}

} // namespace znt
