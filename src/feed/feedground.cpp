#include "feed/feedground.h"

namespace znt {

void FeedGround::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Escape)
        PressArea::keyPressEvent(event);
    else if (!event->isAutoRepeat())
        Q_EMIT closeRequested();
}

} // namespace znt
