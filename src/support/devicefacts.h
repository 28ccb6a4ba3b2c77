// What the library tells of the device and of the host application. A null string is a missing
// fact.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QSize>
#include <QString>

namespace znt::device {

QString hardwareModel(); // hardware identifier
QString kernelVersion();
QString systemVersion();
QString formFactor(); // "Phone" or "Desktop"
QString advertisingId();
QString vendorId();
QString preferredLanguage();
QString timeZone();

// Of the main screen, kept current from the main thread, readable from any; 0 x 0 without one, and
// until the screen was looked at for the first time.
ZNTADS_INTERNAL QSize screenPoints(); // truncated
ZNTADS_INTERNAL QSize screenPixels();
bool isScreenKnown();
ZNTADS_INTERNAL void watchScreen(); // on the main thread; again does nothing

} // namespace znt::device
