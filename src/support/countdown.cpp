#include "support/countdown.h"

#include <chrono>

namespace znt {

Countdown::Countdown(QObject *parent)
    : QObject(parent)
{
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(std::chrono::seconds(1));
    connect(&m_timer, &QTimer::timeout, this, [this] {
        --m_remaining;
        if (m_remaining < 1)
            stop();
        Q_EMIT ticked(m_remaining);
    });
}

void Countdown::start(qint64 seconds)
{
    m_remaining = seconds;
    m_timer.start();
}

void Countdown::stop()
{
    m_timer.stop();
}

} // namespace znt
