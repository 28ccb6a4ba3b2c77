// A record's fields are listed once, in a specialisation of Fields: a visit that hands each key
// with its member to a function. Reading and writing are two such functions.
#pragma once

#include "support/json.h"

#include <ZNTAds/ZNTProperty.h>

namespace znt {

template <class Record>
Record readRecord(const QJsonObject &dictionary);
template <class Record>
QJsonObject writeRecord(const Record &record);

inline void read(QString &member, const QJsonValue &value)
{
    member = json::string(value);
}
inline void read(qint32 &member, const QJsonValue &value)
{
    member = json::integer32(value);
}
inline void read(QJsonArray &member, const QJsonValue &value)
{
    member = value.toArray();
}
// A list that may be missing.
inline void read(QJsonValue &member, const QJsonValue &value)
{
    member = value.isArray() ? value : QJsonValue();
}
template <class Record>
void read(std::optional<Record> &member, const QJsonValue &value)
{
    if (value.isObject())
        member = readRecord<Record>(value.toObject());
}
template <class Record>
void read(QList<Record> &member, const QJsonValue &value)
{
    const QJsonArray elements = value.toArray();
    member.clear();
    member.reserve(elements.size());
    for (const auto &element : elements)
        member.append(readRecord<Record>(element.toObject()));
}
template <class Record>
void read(std::optional<QList<Record>> &member, const QJsonValue &value)
{
    if (value.isArray())
        read(member.emplace(), value);
}

// An undefined value is left out of the object that it is inserted into.
inline QJsonValue written(const QString &member)
{
    return member.isNull() ? QJsonValue(QJsonValue::Undefined) : QJsonValue(member);
}
inline QJsonValue written(qint32 member)
{
    return member;
}
inline QJsonValue written(const QJsonArray &member)
{
    return member;
}
inline QJsonValue written(const QJsonValue &member)
{
    return member.isArray() ? member : QJsonValue(QJsonValue::Undefined);
}
template <class Record>
QJsonValue written(const QList<Record> &member)
{
    QJsonArray elements;
    for (const Record &element : member)
        elements.append(writeRecord(element));
    return elements;
}
template <class Record>
QJsonValue written(const std::optional<QList<Record>> &member)
{
    return member ? written(*member) : QJsonValue(QJsonValue::Undefined);
}
template <class Record>
QJsonValue written(const std::optional<Record> &member)
{
    return member ? QJsonValue(writeRecord(*member)) : QJsonValue(QJsonValue::Undefined);
}

template <class Record>
void readInto(Record &record, const QJsonObject &dictionary)
{
    Fields<Record>::visit(record,
        [&](const char *key, auto &member) { read(member, dictionary.value(QLatin1String(key))); });
}

template <class Record>
Record readRecord(const QJsonObject &dictionary)
{
    Record record;
    readInto(record, dictionary);
    return record;
}

template <class Record>
QJsonObject writeRecord(const Record &record)
{
    QJsonObject object;
    Fields<Record>::visit(record, [&](const char *key, const auto &member) {
        object.insert(QLatin1String(key), written(member));
    });
    return object;
}

} // namespace znt
