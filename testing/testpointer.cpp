#include <ZNTAdsTesting/ZNTTestPointer.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QPointer>
#include <QPointingDevice>
#include <QQuickWindow>
#include <QTimer>

#include <algorithm>

namespace {

constexpr int step = 8; // milliseconds between two moves

} // namespace

class ZNTTestPointer::Private
{
public:
    explicit Private(QQuickWindow *window);

    bool begin(const QPointF &from, const QPointF &by, qint64 milliseconds);
    void moveUntil(qint64 elapsed);
    void end();
    void tap(const QPointF &point);

    QTimer timer; // of a pan that is under way

private:
    struct Pan
    {
        QPointF from;
        QPointF by;
        qint64 start = 0;
        qint64 milliseconds = 0;
    };

    qint64 now() const { return std::max(m_clock.elapsed(), m_sent); }
    bool reaches(const QPointF &point) const;
    void moveInTime();
    void moveTo(qint64 elapsed);
    void send(QEvent::Type type, const QPointF &point, qint64 at);

    const QPointer<QQuickWindow> m_window;
    // A device of its own: the real mouse's past would spoil the velocity.
    QPointingDevice m_device;
    QElapsedTimer m_clock;
    Pan m_pan;
    qint64 m_moved = 0; // milliseconds of the pan that were sent
    qint64 m_sent = 0;  // the time of the last event
};

ZNTTestPointer::Private::Private(QQuickWindow *window)
    : m_window(window)
    , m_device(QStringLiteral("hand"), 1, QInputDevice::DeviceType::Mouse,
          QPointingDevice::PointerType::Generic, QInputDevice::Capability::Position, 1, 1)
{
    m_clock.start();
    timer.setTimerType(Qt::PreciseTimer);
    timer.setInterval(step);
    QObject::connect(&timer, &QTimer::timeout, &timer, [this] { moveInTime(); });
}

bool ZNTTestPointer::Private::reaches(const QPointF &point) const
{
    return m_window && QRectF({0, 0}, m_window->size()).contains(point);
}

void ZNTTestPointer::Private::tap(const QPointF &point)
{
    if (!reaches(point))
        return;
    const qint64 at = now();
    send(QEvent::MouseButtonPress, point, at);
    send(QEvent::MouseButtonRelease, point, at + 1);
}

bool ZNTTestPointer::Private::begin(const QPointF &from, const QPointF &by, qint64 milliseconds)
{
    if (!reaches(from))
        return false;
    m_pan = {from, by, now(), std::max<qint64>(1, milliseconds)};
    m_moved = 0;
    send(QEvent::MouseButtonPress, from, m_pan.start);
    return true;
}

// Moves carry the times at which they were due, so a late timer does not change the speed.
void ZNTTestPointer::Private::moveInTime()
{
    const qint64 due = std::min(m_clock.elapsed() - m_pan.start, m_pan.milliseconds);
    moveUntil(due);
    if (due == m_pan.milliseconds)
        end();
}

void ZNTTestPointer::Private::moveUntil(qint64 elapsed)
{
    while (m_moved + step <= elapsed)
        moveTo(m_moved + step);
}

void ZNTTestPointer::Private::moveTo(qint64 elapsed)
{
    m_moved = elapsed;
    const double share = double(elapsed) / double(m_pan.milliseconds);
    send(QEvent::MouseMove, m_pan.from + m_pan.by * share, m_pan.start + elapsed);
}

void ZNTTestPointer::Private::end()
{
    timer.stop();
    if (m_moved < m_pan.milliseconds)
        moveTo(m_pan.milliseconds);
    send(QEvent::MouseButtonRelease, m_pan.from + m_pan.by, m_pan.start + m_pan.milliseconds);
}

void ZNTTestPointer::Private::send(QEvent::Type type, const QPointF &point, qint64 at)
{
    m_sent = at;
    if (!m_window)
        return;
    const bool moves = type == QEvent::MouseMove;
    const bool releases = type == QEvent::MouseButtonRelease;
    QMouseEvent event(type, point, m_window->mapToGlobal(point),
        moves ? Qt::NoButton : Qt::LeftButton, releases ? Qt::NoButton : Qt::LeftButton,
        Qt::NoModifier, &m_device);
    event.setTimestamp(quint64(at) + 1); // 0 means none
    QCoreApplication::sendEvent(m_window, &event);
}

ZNTTestPointer::ZNTTestPointer(QQuickWindow *window)
    : d(std::make_unique<Private>(window))
{
}

ZNTTestPointer::~ZNTTestPointer() = default;

void ZNTTestPointer::tap(const QPointF &point)
{
    if (d->timer.isActive())
        d->end();
    d->tap(point);
}

void ZNTTestPointer::pan(const QPointF &from, const QPointF &by, std::chrono::milliseconds time)
{
    if (d->timer.isActive())
        d->end();
    if (d->begin(from, by, time.count()))
        d->timer.start();
}

void ZNTTestPointer::panAtOnce(
    const QPointF &from, const QPointF &by, std::chrono::milliseconds time)
{
    if (d->timer.isActive())
        d->end();
    if (!d->begin(from, by, time.count()))
        return;
    d->moveUntil(time.count());
    d->end();
}
