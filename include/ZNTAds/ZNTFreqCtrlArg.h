#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTProperty.h>

#include <QtCore/QJsonObject>

#include <optional>

/// The exchange's frequency caps. The library carries them and does not apply them.
class ZNTADS_EXPORT ZNTFreqCtrlArg
{
    /// Requests a day.
    ZNT_PROPERTY(qint32, reqDaily, setReqDaily);
    /// Exposures a day.
    ZNT_PROPERTY(qint32, expDaily, setExpDaily);
    /// Clicks a day.
    ZNT_PROPERTY(qint32, clkDaily, setClkDaily);
    /// Requests an hour; the exchange spells it so.
    ZNT_PROPERTY(qint32, reqHouly, setReqHouly);
    /// Exposures an hour; the exchange spells it so.
    ZNT_PROPERTY(qint32, expHouly, setExpHouly);
    /// Clicks an hour; the exchange spells it so.
    ZNT_PROPERTY(qint32, clkHouly, setClkHouly);
    /// Least time between two exposures, in the exchange's unit.
    ZNT_PROPERTY(qint32, expInterval, setExpInterval);

public:
    /// A record of zeros; logged.
    ZNTFreqCtrlArg();
    /// Reads a record, a missing value as 0. Anything but an object is logged as an error and
    /// yields nothing.
    static std::optional<ZNTFreqCtrlArg> initWithDictionary(const QJsonValue &dictionary);
    /// All seven values under their names; logged.
    QJsonObject toDictionary() const;

    friend bool operator==(const ZNTFreqCtrlArg &, const ZNTFreqCtrlArg &) = default;

private:
    friend struct znt::Fields<ZNTFreqCtrlArg>;
    explicit ZNTFreqCtrlArg(Qt::Initialization) { }
};
