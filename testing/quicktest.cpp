#include <ZNTAdsTesting/ZNTAdSpy.h>
#include <ZNTAdsTesting/ZNTQuickTest.h>
#include <ZNTAdsTesting/ZNTTestExchange.h>
#include <ZNTAdsTesting/ZNTTestHand.h>

#include "quickclock.h"

#include <QtQml>

#include <cmath>

namespace znt::testing {

void QuickClock::setHeld(bool held)
{
    if (held == isHeld())
        return;
    if (held)
        m_clock.emplace().setSpeed(m_speed);
    else
        m_clock.reset();
    Q_EMIT heldChanged();
}

void QuickClock::setSpeed(double speed)
{
    if (std::exchange(m_speed, speed) == speed)
        return;
    if (m_clock)
        m_clock->setSpeed(speed);
    Q_EMIT speedChanged();
}

void QuickClock::advance(double milliseconds)
{
    if (m_clock && milliseconds > 0)
        m_clock->advance(std::chrono::milliseconds(std::llround(milliseconds)));
}

} // namespace znt::testing

void ZNTQuickTest::registerTypes()
{
    constexpr char uri[] = "ZNTAds.Testing";
    qmlRegisterType<ZNTTestExchange>(uri, 1, 0, "TestExchange");
    qmlRegisterType<znt::testing::QuickClock>(uri, 1, 0, "TestClock");
    qmlRegisterType<ZNTTestHand>(uri, 1, 0, "TestHand");
    qmlRegisterType<ZNTAdSpy>(uri, 1, 0, "AdSpy");
}
