#include "core/requestbody.h"

#include "support/devicefacts.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QJsonArray>
#include <QRegularExpression>
#include <QUuid>

#include <algorithm>

namespace znt {

namespace {

using namespace Qt::StringLiterals;

// A missing text is sent as an empty one.
QJsonValue text(const QString &value)
{
    return value.isNull() ? QJsonValue(QLatin1String("")) : QJsonValue(value);
}

QJsonObject appObject(const Identity &identity)
{
    return {
        {QStringLiteral("appId"), text(identity.appId)},
        {QStringLiteral("mediaId"), text(identity.mediaId)},
        {QStringLiteral("appName"), text(QCoreApplication::applicationName())},
        {QStringLiteral("packageName"), text(QCoreApplication::organizationDomain())},
        {QStringLiteral("version"), text(QCoreApplication::applicationVersion())},
    };
}

QJsonObject deviceObject(const QString &networkType)
{
    const QSize screen = device::screenPoints();
    return {
        {QStringLiteral("os"), QStringLiteral("2")},
        {QStringLiteral("osv"), text(device::systemVersion())},
        {QStringLiteral("make"), QStringLiteral("Apple")},
        {QStringLiteral("model"), text(device::formFactor())},
        {QStringLiteral("screenWidth"), screen.width()},
        {QStringLiteral("screenHeight"), screen.height()},
        {QStringLiteral("idfa"), text(device::advertisingId())},
        {QStringLiteral("idfv"), text(device::vendorId())},
        {QStringLiteral("connType"), text(networkType)},
    };
}

QJsonObject signedBody(const Identity &identity, const QString &networkType)
{
    return {
        {QStringLiteral("id"), QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper()},
        {QStringLiteral("apiVersion"), QStringLiteral("1.0.0")},
        {QStringLiteral("app"), appObject(identity)},
        {QStringLiteral("device"), deviceObject(networkType)},
    };
}

bool fitsJson(const QJsonValue &value)
{
    if (value.isArray())
        return std::ranges::all_of(value.toArray(), fitsJson);
    if (value.isObject())
        return std::ranges::all_of(value.toObject(), fitsJson);
    return !value.isDouble() || qIsFinite(value.toDouble());
}

// A token of HTTP, as methods and the names of headers are.
bool isToken(const QString &text)
{
    static const QRegularExpression token(u"\\A[!#$%&'*+.^_`|~0-9A-Za-z-]+\\z"_s);
    return token.match(text).hasMatch();
}

bool fitsHeader(const QString &text)
{
    return std::ranges::none_of(text, [](QChar c) { return c < u' ' || c == u'\x7f'; });
}

} // namespace

std::optional<ZNTError> bodyError(const QJsonObject &body)
{
    if (fitsJson(body))
        return {};
    return ZNTError(QStringLiteral("QJsonDocument"), 0,
        QStringLiteral("The body holds a number that is not finite."));
}

std::optional<ZNTError> headError(const QString &method, const QMap<QString, QString> &headers)
{
    const auto error = [](const QString &why) { return ZNTError(u"QNetworkRequest"_s, 0, why); };
    if (!isToken(method))
        return error(u"The method is no token."_s);
    if (!std::ranges::all_of(headers.keys(), isToken))
        return error(u"The name of a header is no token."_s);
    if (!std::ranges::all_of(headers, fitsHeader))
        return error(u"A header holds a control character."_s);
    return {};
}

QString sha256Hex(const QString &string)
{
    // Only up to a zero, as the exchange's own end reads the text.
    const QByteArray utf8 = string.toUtf8();
    const QByteArray digest = QCryptographicHash::hash(
        QByteArrayView(utf8.constData(), qsizetype(qstrlen(utf8.constData()))),
        QCryptographicHash::Sha256);
    return QString::fromLatin1(digest.toHex());
}

QMap<QString, QString> signedHeaders(const Identity &identity, qint64 seconds)
{
    const QString ts = QString::number(seconds);
    return {
        {QStringLiteral("Accept-Encoding"), QStringLiteral("gzip")},
        {QStringLiteral("Content-Type"), QStringLiteral("application/json; charset=UTF-8")},
        {QStringLiteral("appId"), identity.appId},
        {QStringLiteral("mediaId"), identity.mediaId},
        {QStringLiteral("ts"), ts},
        {QStringLiteral("sign"),
            sha256Hex(identity.appId + identity.mediaId + identity.secret + ts)},
    };
}

QJsonObject adRequestBody(
    const Identity &identity, const QString &networkType, const AdRequest &request)
{
    QJsonObject body = signedBody(identity, networkType);
    body.insert(u"imps",
        QJsonArray{QJsonObject{
            {QStringLiteral("positionId"), text(request.positionId)},
            {QStringLiteral("bidPrice"), request.bidPrice},
        }});
    body.insert(u"test", request.test ? 1 : 0);
    return body;
}

QJsonObject feedbackBody(
    const Identity &identity, const QString &networkType, const Feedback &feedback)
{
    QJsonObject body = signedBody(identity, networkType);
    body.insert(u"negTye", feedback.type); // the exchange's own spelling
    body.insert(u"bizId", text(feedback.bizId));
    if (!feedback.ext.isUndefined())
        body.insert(u"ext", feedback.ext);
    return body;
}

} // namespace znt
