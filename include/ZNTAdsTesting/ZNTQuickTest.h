#pragma once

#include <QObject>

/// What a Qt Quick Test program begins with, so that its QML has the kit:
/// @code
/// #include <ZNTAdsTesting/ZNTQuickTest.h>
/// #include <QtQuickTest>
/// QUICK_TEST_MAIN_WITH_SETUP(my_application, ZNTQuickTest)
/// @endcode
/// `import ZNTAds.Testing` then has TestExchange, TestClock, TestHand and AdSpy, which are
/// ZNTTestExchange, ZNTTestClock, ZNTTestHand and ZNTAdSpy. TestClock has `held`, true unless set,
/// `speed`, `elapsed` and `advance()`, in milliseconds. A program with a setup of its own calls
/// registerTypes() there.
class ZNTQuickTest : public QObject
{
    Q_OBJECT

public:
    /// Registers the types of the QML module ZNTAds.Testing, once. After the application object was
    /// made, before QML is loaded. Main thread.
    static void registerTypes();

public Q_SLOTS:
    /// Called by Qt Quick Test.
    void applicationAvailable() { registerTypes(); }
};
