#pragma once

#include <QtCore/QtGlobal>

// The test kit is a static library: what it holds goes into the test alone.
#define ZNTADSTESTING_EXPORT
