// A person's hand: mouse and fingers on a window.
#pragma once

#include "support/test.h"

namespace znt::test {

inline QPointingDevice *touchScreen()
{
    static QPointingDevice *const screen = QTest::createTouchDevice();
    return screen;
}

inline auto touch(QWindow *window)
{
    return QTest::touchEvent(window, touchScreen());
}

inline void tapFinger(QWindow *window, QPoint at)
{
    touch(window).press(1, at);
    touch(window).release(1, at);
}

// Press, move evenly, rest that many milliseconds, and release.
inline void dragMouse(QWindow *window, QPoint from, QPoint way, int rest = 0)
{
    QTest::mousePress(window, Qt::LeftButton, {}, from);
    for (int i = 1; i <= 20; ++i)
        QTest::mouseMove(window, from + way * i / 20);
    QTest::mouseRelease(window, Qt::LeftButton, {}, from + way, rest);
}

inline void dragFinger(QWindow *window, QPoint from, QPoint way, int rest = 0)
{
    touch(window).press(1, from);
    for (int i = 1; i <= 20; ++i)
        touch(window).move(1, from + way * i / 20);
    QTest::qWait(rest);
    touch(window).release(1, from + way);
}

} // namespace znt::test
