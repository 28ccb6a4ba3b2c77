#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTProperty.h>

#include <QtCore/QJsonObject>

/// A window of the day in which a shake or slope gesture is active. The values are the exchange's
/// and are not checked.
class ZNTADS_EXPORT ZNTShakeSlopArg
{
    /// First hour of the window.
    ZNT_PROPERTY(qint32, startHour, setStartHour);
    /// Last hour of the window. A new record says 24; one that is read starts from 0.
    ZNT_PROPERTY(qint32, endHour, setEndHour, 24);
    /// How readily the gesture triggers. A new record says 2; one that is read starts from 0.
    ZNT_PROPERTY(qint32, sensitivity, setSensitivity, 2);

public:
    /// Reads a record; a value that is missing is 0.
    static ZNTShakeSlopArg initWithDictionary(const QJsonObject &dictionary);
    /// All three values under their names.
    QJsonObject toDictionary() const;

    friend bool operator==(const ZNTShakeSlopArg &, const ZNTShakeSlopArg &) = default;

private:
    friend struct znt::Fields<ZNTShakeSlopArg>;
};
