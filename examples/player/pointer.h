// A person's pointer: real press, move and release events, delivered through the window.
#pragma once

#include <QElapsedTimer>
#include <QPointingDevice>
#include <QQuickWindow>
#include <QTimer>

namespace player {

class Pointer
{
public:
    explicit Pointer(QQuickWindow &window);

    // A point outside of the window gets nothing, as with a person.
    void tap(const QPointF &point);
    // Returns at once; a pan that is still under way ends first.
    void pan(const QPointF &from, const QPointF &by, int milliseconds);

private:
    struct Pan
    {
        QPointF from;
        QPointF by;
        qint64 start = 0;
        int milliseconds = 0;
    };

    bool reaches(const QPointF &point) const;
    void movePan();
    void moveTo(qint64 elapsed);
    void endPan();
    void send(QEvent::Type type, const QPointF &point, qint64 at);

    QQuickWindow &m_window;
    // A device of its own: the real mouse's past would spoil the velocity.
    QPointingDevice m_device;
    QElapsedTimer m_clock;
    QTimer m_timer;
    Pan m_pan;
    qint64 m_moved = 0; // milliseconds of the pan that were sent
};

} // namespace player
