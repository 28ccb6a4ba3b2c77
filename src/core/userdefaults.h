// What the library keeps between runs, in the application's QSettings.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QJsonValue>
#include <QMap>
#include <QString>

namespace znt::userdefaults {

// Undefined when nothing is stored under the key. What is still on its way there counts as stored.
// Waits for the disk for 40 ms at most, then gives what is known.
ZNTADS_INTERNAL QJsonValue read(const QString &key);

// Main thread. Writes the values and brings them to disk in the background, in the order of the
// calls; an undefined or null value removes its key.
ZNTADS_INTERNAL void store(const QMap<QString, QJsonValue> &values);
// Returns when everything stored is on disk, or after a second.
ZNTADS_INTERNAL void waitForStored();

} // namespace znt::userdefaults
