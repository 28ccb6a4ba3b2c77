// Lenient reading of JSON values: a wrong type is absence, never an error.
#pragma once

#include <ZNTAds/ZNTError.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>

#include <optional>

namespace znt::json {

// A boolean is 0 or 1, a fraction is truncated, a string gives its leading integer; all else is 0.
ZNTADS_INTERNAL qint64 integer(const QJsonValue &value);
// The low 32 bits of integer().
ZNTADS_INTERNAL qint32 integer32(const QJsonValue &value);

// A null string where the value is no string. An empty string is never null.
ZNTADS_INTERNAL QString string(const QJsonValue &value);

std::optional<QJsonObject> object(const QJsonValue &value);
std::optional<QJsonArray> array(const QJsonValue &value);

// Writes the value only when it is not missing (a null string).
void insertIfSet(QJsonObject &object, const QString &key, const QString &value);

struct Parsed
{
    QJsonValue value;
    std::optional<ZNTError> error;
};
// Any JSON text, scalars included.
ZNTADS_INTERNAL Parsed parse(const QByteArray &text);

ZNTADS_INTERNAL QByteArray compact(const QJsonObject &object);
// Compact text of any value, for log lines.
ZNTADS_INTERNAL QString text(const QJsonValue &value);
// The same, but a string stands for itself and absence is a null text.
ZNTADS_INTERNAL QString display(const QJsonValue &value);

} // namespace znt::json
