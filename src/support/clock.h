// The time that the library goes by: the system's, unless a test holds it.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QObject>
#include <QTimer>

#include <chrono>
#include <optional>

class ZNTHeldClock;

namespace znt {

// Milliseconds of a clock that only goes forward. From any thread.
ZNTADS_INTERNAL qint64 now();

// A precise timer that goes by now().
class ZNTADS_INTERNAL Timer : public QObject
{
    Q_OBJECT

public:
    enum class Kind { Single, Repeated };

    explicit Timer(Kind kind, QObject *parent = nullptr);
    ~Timer() override;

    // Starts over. A negative time counts as none.
    void start(std::chrono::milliseconds interval);
    void stop();
    bool isActive() const { return m_isActive; }

    // For the held clock: whether this is still the start that it knows.
    bool isRun(quint64 run) const { return m_run == run; }

Q_SIGNALS:
    void timeout();

private:
    friend class ::ZNTHeldClock;
    void fire();
    void run(std::chrono::milliseconds interval);

    const Kind m_kind;
    QTimer m_timer;
    std::chrono::milliseconds m_interval{0};
    bool m_isActive = false;
    quint64 m_run = 0; // of the held clock
};

} // namespace znt

// For the test kit: time that stands still until it is told to go on. A timer that runs when the
// clock is held goes on in real time, once. Main thread.
class ZNTADS_EXPORT ZNTHeldClock
{
public:
    ZNTHeldClock() = delete;

    static void hold();
    // Time goes on by itself, from where it stands.
    static void release();
    static bool isHeld();
    static qint64 now();
    // When the next timer is due; nothing when none waits.
    static std::optional<qint64> nextTimer();
    // Sets the time, which never goes back, and fires what is due by then and was waiting before,
    // in order, in the threads of the timers; returns when all have run.
    static void moveTo(qint64 time);
};
