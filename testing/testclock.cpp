#include <ZNTAdsTesting/ZNTTestClock.h>

#include "support/clock.h"

#include <QAbstractEventDispatcher>
#include <QAnimationDriver>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <cmath>

using namespace std::chrono_literals;

namespace {

constexpr qint64 frame = 16; // milliseconds, as all times here

// Animations go by it in place of the system's clock.
class HeldAnimations : public QAnimationDriver
{
public:
    qint64 elapsed() const override { return isRunning() ? ZNTHeldClock::now() - m_start : 0; }

protected:
    void start() override
    {
        m_start = ZNTHeldClock::now();
        QAnimationDriver::start();
    }

private:
    qint64 m_start = 0;
};

// What happens may set off more, which belongs to the same moment; what never ends is left.
void processEvents()
{
    QAbstractEventDispatcher *loop = QAbstractEventDispatcher::instance();
    constexpr int passes = 10;
    bool goesOn = true;
    for (int pass = 0; pass < passes && goesOn; ++pass) {
        QCoreApplication::sendPostedEvents();
        goesOn = loop->processEvents(QEventLoop::AllEvents);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

} // namespace

struct ZNTTestClock::Private
{
    // The next moment at which something happens, at most `end`.
    qint64 nextMoment(qint64 end) const
    {
        const qint64 now = ZNTHeldClock::now();
        qint64 next = std::min(end, ZNTHeldClock::nextTimer().value_or(end));
        if (animations.isRunning())
            next = std::min(next, now + frame);
        return std::max(next, now);
    }

    void advance(qint64 time);
    void pass();

    HeldAnimations animations;
    QTimer pulse; // of the time that goes on by itself
    QElapsedTimer sincePulse;
    double speed = 0;
    double rest = 0; // of a millisecond, that has not passed yet
    qint64 start = 0;
    bool isAdvancing = false;
};

ZNTTestClock::ZNTTestClock()
    : d(std::make_unique<Private>())
{
    if (ZNTHeldClock::isHeld())
        qFatal("ZNTTestClock: the clock is held already, by another ZNTTestClock of this process");
    ZNTHeldClock::hold();
    d->start = ZNTHeldClock::now();
    d->animations.install();
    QObject::connect(&d->pulse, &QTimer::timeout, &d->pulse, [this] {
        if (!d->isAdvancing)
            d->pass();
    });
}

ZNTTestClock::~ZNTTestClock()
{
    d->animations.uninstall();
    ZNTHeldClock::release();
}

void ZNTTestClock::advance(std::chrono::milliseconds time)
{
    if (d->isAdvancing) {
        qWarning("ZNTTestClock: time is advancing already; advance() does nothing in a callback");
        return;
    }
    d->advance(std::max(time, 0ms).count());
}

void ZNTTestClock::Private::advance(qint64 time)
{
    isAdvancing = true;
    const qint64 end = ZNTHeldClock::now() + time;
    processEvents();
    do {
        ZNTHeldClock::moveTo(nextMoment(end));
        if (animations.isRunning())
            animations.advance();
        processEvents();
    } while (ZNTHeldClock::now() < end);
    isAdvancing = false;
}

// By itself, as far as whole milliseconds go.
void ZNTTestClock::Private::pass()
{
    rest += double(sincePulse.restart()) * speed;
    const double whole = std::floor(rest);
    rest -= whole;
    if (whole > 0)
        advance(qint64(whole));
}

void ZNTTestClock::setSpeed(double speed)
{
    d->speed = std::max(speed, 0.0);
    if (d->speed == 0)
        d->pulse.stop();
    else
        d->pulse.start(2);
    d->sincePulse.start();
}

std::chrono::milliseconds ZNTTestClock::elapsed() const
{
    return std::chrono::milliseconds(ZNTHeldClock::now() - d->start);
}
