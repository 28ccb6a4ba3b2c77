#include "support/countdown.h"

#include <chrono>
#include <utility>

namespace znt {

Countdown::Countdown(QObject *parent)
    : QObject(parent)
    , m_timer(Timer::Kind::Repeated)
{
    connect(&m_timer, &Timer::timeout, this, [this] {
        if (m_remaining <= 1)
            stop();
        setRemaining(m_remaining - 1);
        Q_EMIT ticked(m_remaining);
    });
}

void Countdown::start(qint64 seconds)
{
    m_timer.start(std::chrono::seconds(1));
    setRemaining(seconds);
}

void Countdown::setRemaining(qint64 seconds)
{
    if (std::exchange(m_remaining, seconds) != seconds)
        Q_EMIT remainingChanged();
}

void Countdown::stop()
{
    m_timer.stop();
}

} // namespace znt
