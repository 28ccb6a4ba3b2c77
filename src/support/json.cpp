#include "support/json.h"

#include <QJsonDocument>

#include <limits>

namespace znt::json {

namespace {

qint64 truncated(double number)
{
    constexpr double limit = 9223372036854775808.0;
    if (number >= limit)
        return std::numeric_limits<qint64>::max();
    if (number < -limit)
        return std::numeric_limits<qint64>::min();
    return number == number ? qint64(number) : 0;
}

qint64 leadingInteger(QStringView text)
{
    text = text.trimmed();
    const bool negative = text.startsWith(u'-');
    if (negative || text.startsWith(u'+'))
        text = text.sliced(1);
    constexpr qint64 max = std::numeric_limits<qint64>::max();
    qint64 result = 0;
    for (const QChar c : text) {
        if (c < u'0' || c > u'9')
            break;
        const int digit = c.unicode() - u'0';
        if (result > (max - digit) / 10)
            return negative ? std::numeric_limits<qint64>::min() : max;
        result = result * 10 + digit;
    }
    return negative ? -result : result;
}

} // namespace

qint64 integer(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Bool:
        return value.toBool() ? 1 : 0;
    case QJsonValue::Double: {
        const QVariant number = value.toVariant();
        return number.typeId() == QMetaType::LongLong ? number.toLongLong()
                                                      : truncated(number.toDouble());
    }
    case QJsonValue::String:
        return leadingInteger(value.toString());
    default:
        return 0;
    }
}

qint32 integer32(const QJsonValue &value)
{
    return qint32(quint32(quint64(integer(value))));
}

QString string(const QJsonValue &value)
{
    if (!value.isString())
        return {};
    const QString text = value.toString();
    return text.isNull() ? QLatin1String("") : text;
}

std::optional<QJsonObject> object(const QJsonValue &value)
{
    return value.isObject() ? std::optional(value.toObject()) : std::nullopt;
}

std::optional<QJsonArray> array(const QJsonValue &value)
{
    return value.isArray() ? std::optional(value.toArray()) : std::nullopt;
}

void insertIfSet(QJsonObject &object, const QString &key, const QString &value)
{
    if (!value.isNull())
        object.insert(key, value);
}

Parsed parse(const QByteArray &text)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (document.isObject())
        return {document.object(), {}};
    if (document.isArray())
        return {document.array(), {}};
    // QJsonDocument knows no scalar at the top; inside a list it does.
    const QJsonArray wrapped = QJsonDocument::fromJson('[' + text + ']').array();
    if (wrapped.size() == 1)
        return {wrapped.first(), {}};
    return {{}, ZNTError(QStringLiteral("QJsonParseError"), error.error, error.errorString())};
}

QByteArray compact(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QString text(const QJsonValue &value)
{
    if (value.isObject())
        return QString::fromUtf8(compact(value.toObject()));
    const QByteArray list = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(list.mid(1, list.size() - 2));
}

QString display(const QJsonValue &value)
{
    if (value.isUndefined() || value.isNull())
        return {};
    return value.isString() ? string(value) : text(value);
}

} // namespace znt::json
