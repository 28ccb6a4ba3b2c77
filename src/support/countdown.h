// Counts whole seconds down to zero.
#pragma once

#include "support/clock.h"

namespace znt {

class ZNTADS_INTERNAL Countdown : public QObject
{
    Q_OBJECT

public:
    explicit Countdown(QObject *parent = nullptr);

    void start(qint64 seconds);
    // Stops; what remains stays readable.
    void stop();
    qint64 remaining() const { return m_remaining; }
    void setRemaining(qint64 seconds);

Q_SIGNALS:
    // Whoever hears of it must not destroy the countdown.
    void remainingChanged();
    // A second has passed. At 0 the countdown has stopped already.
    void ticked(qint64 remaining);

private:
    Timer m_timer;
    qint64 m_remaining = 0;
};

} // namespace znt
