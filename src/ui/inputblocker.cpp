#include "ui/inputblocker.h"

#include <QCursor>

namespace znt {

InputBlocker::InputBlocker(QQuickItem *parent)
    : PressArea(parent)
{
    setInteractive(true);
    setAcceptedMouseButtons(Qt::AllButtons);
    setAcceptHoverEvents(true);
    setKeepMouseGrab(true); // no handler beneath takes a press over when it becomes a drag
    setKeepTouchGrab(true);
    setCursor(Qt::ArrowCursor); // else the cursor of what lies beneath would show
}

void InputBlocker::wheelEvent(QWheelEvent *event)
{
    event->accept();
}

void InputBlocker::hoverEnterEvent(QHoverEvent *event)
{
    event->accept();
}

void InputBlocker::hoverMoveEvent(QHoverEvent *event)
{
    event->accept();
}

} // namespace znt
