#include "diagnostics/log.h"
#include "model/fields.h"

#include <ZNTAds/ZNTFreqCtrlArg.h>
#include <ZNTAds/ZNTInteractionCtrlArg.h>

namespace znt {

template <>
struct Fields<ZNTShakeSlopArg>
{
    static void visit(auto &record, auto &&field)
    {
        field("startHour", record.m_startHour);
        field("endHour", record.m_endHour);
        field("sensitivity", record.m_sensitivity);
    }
};

template <>
struct Fields<ZNTFreqCtrlArg>
{
    static void visit(auto &record, auto &&field)
    {
        field("reqDaily", record.m_reqDaily);
        field("expDaily", record.m_expDaily);
        field("clkDaily", record.m_clkDaily);
        field("reqHouly", record.m_reqHouly);
        field("expHouly", record.m_expHouly);
        field("clkHouly", record.m_clkHouly);
        field("expInterval", record.m_expInterval);
    }
};

// The two lists have rules of their own and are not of the table.
template <>
struct Fields<ZNTInteractionCtrlArg>
{
    static void visit(auto &record, auto &&field)
    {
        field("adType", record.m_adType);
        field("supportSelfRender", record.m_supportSelfRender);
        field("canSkip", record.m_canSkip);
        field("skipType", record.m_skipType);
        field("canClose", record.m_canClose);
        field("closeType", record.m_closeType);
        field("closeBtnPos", record.m_closeBtnPos);
        field("autoPlay", record.m_autoPlay);
        field("clickTriggerType", record.m_clickTriggerType);
        field("clickArea", record.m_clickArea);
    }
};

namespace {

// A record in a log line: "startHour: 8, endHour: 22, sensitivity: 1".
template <class Record>
struct Listed
{
    const Record &record;
};
template <class Record>
Listed(const Record &) -> Listed<Record>;

template <class Record>
QString logText(const Listed<Record> &listed)
{
    QStringList texts;
    Fields<Record>::visit(listed.record, [&](const char *key, qint32 member) {
        texts.append(QStringLiteral("%1: %2").arg(QLatin1String(key)).arg(member));
    });
    return texts.join(u", ");
}

QList<ZNTShakeSlopArg> readArgs(const QJsonArray &elements, const char *name)
{
    logInfo("Processing %1 %2 arguments", elements.size(), name);
    QList<ZNTShakeSlopArg> args;
    args.reserve(elements.size());
    for (const auto &element : elements) {
        args.append(readRecord<ZNTShakeSlopArg>(element.toObject()));
        logInfo("Added %1 argument - %2", name, Listed{args.constLast()});
    }
    return args;
}

QList<ZNTShakeSlopArg> defaultShakeArgs()
{
    return {ZNTShakeSlopArg::initWithDictionary({})};
}

qint64 firstShake(
    const QList<ZNTShakeSlopArg> &args, qint32 (ZNTShakeSlopArg::*get)() const, const char *name)
{
    if (args.isEmpty()) {
        logWarning("No shake arguments available, returning default %1: 0", name);
        return 0;
    }
    return (args.first().*get)();
}

void setFirstShake(QList<ZNTShakeSlopArg> &args, void (ZNTShakeSlopArg::*set)(qint32),
    const char *name, qint64 value)
{
    if (args.isEmpty()) {
        logWarning("Cannot set shake %1: no shake arguments available", name);
        return;
    }
    (args.first().*set)(qint32(value));
    logInfo("Set shake %1 to: %2", name, value);
}

} // namespace

} // namespace znt

using namespace znt;

ZNTShakeSlopArg ZNTShakeSlopArg::initWithDictionary(const QJsonObject &dictionary)
{
    return readRecord<ZNTShakeSlopArg>(dictionary);
}

QJsonObject ZNTShakeSlopArg::toDictionary() const
{
    return writeRecord(*this);
}

ZNTFreqCtrlArg::ZNTFreqCtrlArg()
{
    logInfo("Initialized ZNTFreqCtrlArg with default values");
}

std::optional<ZNTFreqCtrlArg> ZNTFreqCtrlArg::initWithDictionary(const QJsonValue &dictionary)
{
    if (!dictionary.isObject()) {
        logError("Failed to initialize ZNTFreqCtrlArg: invalid dictionary");
        return std::nullopt;
    }
    ZNTFreqCtrlArg arg(Qt::Uninitialized);
    readInto(arg, dictionary.toObject());
    logInfo("Initialized ZNTFreqCtrlArg with values - %1", Listed{arg});
    return arg;
}

QJsonObject ZNTFreqCtrlArg::toDictionary() const
{
    logInfo("Converted ZNTFreqCtrlArg to dictionary");
    return writeRecord(*this);
}

ZNTInteractionCtrlArg::ZNTInteractionCtrlArg()
    : m_shakeArgs(defaultShakeArgs())
{
    logInfo("Initialized ZNTInteractionCtrlArg with default values");
}

std::optional<ZNTInteractionCtrlArg> ZNTInteractionCtrlArg::initWithDictionary(
    const QJsonValue &dictionary)
{
    if (!dictionary.isObject()) {
        logError("Failed to initialize ZNTInteractionCtrlArg: invalid dictionary");
        return std::nullopt;
    }
    const QJsonObject object = dictionary.toObject();
    ZNTInteractionCtrlArg arg(Qt::Uninitialized);
    readInto(arg, object);
    logInfo("Initializing ZNTInteractionCtrlArg with values - %1", Listed{arg});

    const QJsonArray shakes = object.value(QLatin1String("shakeArgs")).toArray();
    if (shakes.isEmpty()) {
        logInfo("No shake arguments found, creating default shake argument");
        arg.m_shakeArgs = defaultShakeArgs();
    } else {
        arg.m_shakeArgs = readArgs(shakes, "shake");
    }

    const QJsonValue slops = object.value(QLatin1String("slopArgs"));
    if (slops.isArray())
        arg.m_slopArgs = readArgs(slops.toArray(), "slop");
    else
        logInfo("No slop arguments found, using empty array");
    return arg;
}

QJsonObject ZNTInteractionCtrlArg::toDictionary() const
{
    QJsonObject object = writeRecord(*this);
    object.insert(QLatin1String("shakeArgs"), written(m_shakeArgs));
    object.insert(QLatin1String("slopArgs"), written(m_slopArgs));
    logInfo("Converted ZNTInteractionCtrlArg to dictionary");
    return object;
}

qint64 ZNTInteractionCtrlArg::shakeStartHour() const
{
    return firstShake(m_shakeArgs, &ZNTShakeSlopArg::startHour, "start hour");
}

qint64 ZNTInteractionCtrlArg::shakeEndHour() const
{
    return firstShake(m_shakeArgs, &ZNTShakeSlopArg::endHour, "end hour");
}

qint64 ZNTInteractionCtrlArg::shakeSensitivity() const
{
    return firstShake(m_shakeArgs, &ZNTShakeSlopArg::sensitivity, "sensitivity");
}

void ZNTInteractionCtrlArg::setShakeStartHour(qint64 hour)
{
    setFirstShake(m_shakeArgs, &ZNTShakeSlopArg::setStartHour, "start hour", hour);
}

void ZNTInteractionCtrlArg::setShakeEndHour(qint64 hour)
{
    setFirstShake(m_shakeArgs, &ZNTShakeSlopArg::setEndHour, "end hour", hour);
}

void ZNTInteractionCtrlArg::setShakeSensitivity(qint64 sensitivity)
{
    setFirstShake(m_shakeArgs, &ZNTShakeSlopArg::setSensitivity, "sensitivity", sensitivity);
}
