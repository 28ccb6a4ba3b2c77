// A request as it came over the wire, and how it is answered.
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QMetaType>
#include <QPair>
#include <QString>

#include <chrono>
#include <optional>

namespace sandbox {

using Headers = QList<QPair<QByteArray, QByteArray>>;

struct Request
{
    bool secure = false; // came over https
    QByteArray method;
    QString path;    // without the query
    QString target;  // path and query as they were sent
    Headers headers; // in the order and the spelling that were sent
    QByteArray body;
    // Of a request to a signed endpoint: whether its signature is right.
    std::optional<bool> signatureOk;
    // Of an ad request: the position that it asks for.
    QString position;

    // By name, whatever its case; empty when there is none.
    QByteArray header(const QByteArray &name) const;
    // The body as a JSON object, empty when it is none.
    QJsonObject json() const;
};

struct Answer
{
    enum class Delivery {
        Whole,
        Dropped,   // the connection is closed without an answer
        Truncated, // half of the promised body, then the connection is closed
        Dripping,  // one byte a second
        Endless,   // the body, then noise until the client has had enough
    };

    // What a server says that is none: `begin`, then `repeated` without end or, where that is
    // empty, nothing more. The connection is closed then, or left open.
    struct Wire
    {
        QByteArray begin;
        QByteArray repeated = {};
        bool closes = true;
    };

    QByteArray body = {};
    QByteArray contentType = "application/json; charset=UTF-8";
    int status = 200;
    Headers headers = {}; // besides the content's type and length
    std::chrono::milliseconds delay{0};
    Delivery delivery = Delivery::Whole;
    bool gzip = false;             // the body goes out gzip encoded
    std::optional<Wire> wire = {}; // goes out in place of all of it
};

QByteArray gzipped(const QByteArray &data);
Answer jsonAnswer(const QJsonObject &object);

} // namespace sandbox

Q_DECLARE_METATYPE(sandbox::Request)
