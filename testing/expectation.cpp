#include "expectation.h"

#include "support/clock.h"

#include <QtCore/qtestsupport_core.h>

namespace znt::testing {

bool waitFor(const std::function<bool()> &holds, int milliseconds)
{
    return QTest::qWaitFor(holds, milliseconds);
}

void settle()
{
    QTest::qWait(30);
}

QString clockNote()
{
    return ZNTHeldClock::isHeld()
        ? QStringLiteral(" (a ZNTTestClock holds the time; advance() lets it pass)")
        : QString();
}

} // namespace znt::testing
