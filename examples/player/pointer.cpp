#include "pointer.h"

#include <QCoreApplication>
#include <QMouseEvent>

namespace player {

using namespace Qt::StringLiterals;

namespace {

constexpr int step = 8; // milliseconds between two moves

} // namespace

Pointer::Pointer(QQuickWindow &window)
    : m_window(window)
    , m_device(u"player"_s, 1, QInputDevice::DeviceType::Mouse,
          QPointingDevice::PointerType::Generic, QInputDevice::Capability::Position, 1, 1)
{
    m_clock.start();
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(step);
    QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { movePan(); });
}

bool Pointer::reaches(const QPointF &point) const
{
    return QRectF({0, 0}, m_window.size()).contains(point);
}

void Pointer::tap(const QPointF &point)
{
    endPan();
    if (!reaches(point))
        return;
    const qint64 now = m_clock.elapsed();
    send(QEvent::MouseButtonPress, point, now);
    send(QEvent::MouseButtonRelease, point, now + 1);
}

void Pointer::pan(const QPointF &from, const QPointF &by, int milliseconds)
{
    endPan();
    if (!reaches(from))
        return;
    m_pan = {from, by, m_clock.elapsed(), qMax(1, milliseconds)};
    m_moved = 0;
    send(QEvent::MouseButtonPress, from, m_pan.start);
    m_timer.start();
}

// Moves carry the times at which they were due, so a late timer does not change the speed.
void Pointer::movePan()
{
    const qint64 due = qMin<qint64>(m_clock.elapsed() - m_pan.start, m_pan.milliseconds);
    while (m_moved + step <= due)
        moveTo(m_moved + step);
    if (due == m_pan.milliseconds)
        endPan();
}

void Pointer::moveTo(qint64 elapsed)
{
    m_moved = elapsed;
    const double share = double(elapsed) / m_pan.milliseconds;
    send(QEvent::MouseMove, m_pan.from + m_pan.by * share, m_pan.start + elapsed);
}

void Pointer::endPan()
{
    if (!m_timer.isActive())
        return;
    m_timer.stop();
    if (m_moved < m_pan.milliseconds)
        moveTo(m_pan.milliseconds);
    send(QEvent::MouseButtonRelease, m_pan.from + m_pan.by, m_pan.start + m_pan.milliseconds);
}

void Pointer::send(QEvent::Type type, const QPointF &point, qint64 at)
{
    const bool moves = type == QEvent::MouseMove;
    const bool releases = type == QEvent::MouseButtonRelease;
    QMouseEvent event(type, point, m_window.mapToGlobal(point),
        moves ? Qt::NoButton : Qt::LeftButton, releases ? Qt::NoButton : Qt::LeftButton,
        Qt::NoModifier, &m_device);
    event.setTimestamp(quint64(at) + 1); // 0 means none
    QCoreApplication::sendEvent(&m_window, &event);
}

} // namespace player
