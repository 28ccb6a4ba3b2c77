#pragma once

#include <QtGlobal>

/// Fails the test function, with the message, when an expectation of the kit is not met. Every
/// expectation gives an empty text when it is met, and else what was missing:
/// @code
/// ZNT_EXPECT(spy.once(ZNTAdSpy::Seen));
/// ZNT_EXPECT(hand.tap(ZNTTestHand::SplashAd));
/// @endcode
/// Needs QTest. In QML: `compare(spy.once(AdSpy.Seen), "")`.
#define ZNT_EXPECT(expectation)                                                                    \
    do {                                                                                           \
        const QString zntMissing = (expectation);                                                  \
        QVERIFY2(zntMissing.isEmpty(), qPrintable(zntMissing));                                    \
    } while (false)
