// What a request to the exchange carries: who asks, from which device, and the signature.
#pragma once

#include <ZNTAds/ZNTError.h>

#include <QJsonObject>
#include <QMap>
#include <QString>

#include <optional>

namespace znt {

struct Identity
{
    QString appId;
    QString mediaId;
    QString secret;
};

ZNTADS_INTERNAL QString sha256Hex(const QString &text);

// The six headers of a signed request made at this moment, in seconds since 1970-01-01 UTC.
ZNTADS_INTERNAL QMap<QString, QString> signedHeaders(const Identity &identity, qint64 seconds);

// Why a request cannot be written down: a number that JSON has no form for (not a number,
// infinity); a method or a header's name that is no token of HTTP, or a control character in a
// header, any of which could end the line that it stands in.
std::optional<ZNTError> bodyError(const QJsonObject &body);
std::optional<ZNTError> headError(const QString &method, const QMap<QString, QString> &headers);

struct AdRequest
{
    QString positionId;
    double bidPrice = 0;
    bool test = false;
};
QJsonObject adRequestBody(
    const Identity &identity, const QString &networkType, const AdRequest &request);

struct Feedback
{
    qint64 type = 0;
    QString bizId;
    QJsonValue ext;
};
QJsonObject feedbackBody(
    const Identity &identity, const QString &networkType, const Feedback &feedback);

} // namespace znt
