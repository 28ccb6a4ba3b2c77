#include "support/cover.h"

#include <QCursor>

namespace znt {

Cover::Cover(QQuickItem *parent)
    : PressArea(parent)
{
    setAcceptedMouseButtons(Qt::AllButtons);
    setAcceptTouchEvents(true);
    setAcceptHoverEvents(true);
    setKeepMouseGrab(true); // no handler beneath takes a press over when it becomes a drag
    setKeepTouchGrab(true);
    setCursor(Qt::ArrowCursor); // else the cursor of what lies beneath would show
}

void Cover::wheelEvent(QWheelEvent *event)
{
    event->accept();
}

void Cover::hoverEnterEvent(QHoverEvent *event)
{
    event->accept();
}

void Cover::hoverMoveEvent(QHoverEvent *event)
{
    event->accept();
}

} // namespace znt
