#include "feed/feedroot.h"

namespace znt {

void FeedRoot::keyPressEvent(QKeyEvent *event)
{
    if (event->key() != Qt::Key_Escape)
        PressArea::keyPressEvent(event);
    else if (!event->isAutoRepeat())
        Q_EMIT closeRequested();
}

} // namespace znt
