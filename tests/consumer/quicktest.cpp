// A host's tests that are written in QML: tst_*.qml beside it.
//! [main]
#include <QtQuickTest>
#include <ZNTAdsTesting/ZNTQuickTest.h>

QUICK_TEST_MAIN_WITH_SETUP(host, ZNTQuickTest)
//! [main]
