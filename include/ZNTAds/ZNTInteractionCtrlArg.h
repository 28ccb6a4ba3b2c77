#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTShakeSlopArg.h>

#include <QtCore/QList>

#include <optional>

/// How an ad may be skipped, closed and clicked, and when its gestures are active. The library
/// carries the values, whose meaning is the exchange's, and does not check them.
class ZNTADS_EXPORT ZNTInteractionCtrlArg
{
    /// The kind of ad that the record is for.
    ZNT_PROPERTY(qint32, adType, setAdType);
    /// Whether the host may draw the ad itself.
    ZNT_PROPERTY(qint32, supportSelfRender, setSupportSelfRender);
    /// Whether the ad can be skipped.
    ZNT_PROPERTY(qint32, canSkip, setCanSkip);
    /// How it is skipped.
    ZNT_PROPERTY(qint32, skipType, setSkipType);
    /// Whether the ad can be closed.
    ZNT_PROPERTY(qint32, canClose, setCanClose);
    /// How it is closed.
    ZNT_PROPERTY(qint32, closeType, setCloseType);
    /// Where the close button is.
    ZNT_PROPERTY(qint32, closeBtnPos, setCloseBtnPos);
    /// Whether a video starts by itself.
    ZNT_PROPERTY(qint32, autoPlay, setAutoPlay);
    /// What triggers a click.
    ZNT_PROPERTY(qint32, clickTriggerType, setClickTriggerType);
    /// The part of the ad that can be clicked.
    ZNT_PROPERTY(qint32, clickArea, setClickArea);
    /// The windows of the shake gesture. A new record has one of 0 to 0 hours with sensitivity 0.
    ZNT_PROPERTY(QList<ZNTShakeSlopArg>, shakeArgs, setShakeArgs);
    /// The windows of the slope gesture.
    ZNT_PROPERTY(QList<ZNTShakeSlopArg>, slopArgs, setSlopArgs);

public:
    /// A record of zeros; logged.
    ZNTInteractionCtrlArg();
    /// Reads a record, a missing value as 0. "shakeArgs" that is missing, no list or empty becomes
    /// the one window of a new record; "slopArgs" then is an empty list. Each step is logged.
    /// Anything but an object is logged as an error and yields nothing.
    static std::optional<ZNTInteractionCtrlArg> initWithDictionary(const QJsonValue &dictionary);
    /// All twelve values under their names; logged.
    QJsonObject toDictionary() const;

    /// The first shake window's start hour; 0 and a warning in the log when there is none.
    qint64 shakeStartHour() const;
    /// The first shake window's end hour; 0 and a warning in the log when there is none.
    qint64 shakeEndHour() const;
    /// The first shake window's sensitivity; 0 and a warning in the log when there is none.
    qint64 shakeSensitivity() const;
    /// Sets the first shake window's start hour to the low 32 bits of @p hour; when there is no
    /// window, only a warning is logged.
    void setShakeStartHour(qint64 hour);
    /// Sets the first shake window's end hour, likewise.
    void setShakeEndHour(qint64 hour);
    /// Sets the first shake window's sensitivity, likewise.
    void setShakeSensitivity(qint64 sensitivity);

    friend bool operator==(const ZNTInteractionCtrlArg &, const ZNTInteractionCtrlArg &) = default;

private:
    friend struct znt::Fields<ZNTInteractionCtrlArg>;
    explicit ZNTInteractionCtrlArg(Qt::Initialization) { }
};
