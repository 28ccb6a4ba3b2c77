#include "requestreader.h"

#include <QIODevice>
#include <QJsonDocument>

namespace sandbox {
namespace {

// Without its end; nothing as long as that has not come.
std::optional<QByteArray> readLine(QIODevice *connection)
{
    if (!connection->canReadLine())
        return {};
    QByteArray line = connection->readLine();
    line.chop(line.endsWith("\r\n") ? 2 : 1);
    return line;
}

Reading readTarget(QIODevice *connection, Request *request)
{
    const auto line = readLine(connection);
    if (!line)
        return Reading::Partial;
    const QByteArrayList words = line->split(' ');
    if (words.size() != 3 || !words[2].startsWith("HTTP/1."))
        return Reading::Malformed;
    request->method = words[0];
    request->target = QString::fromUtf8(words[1]);
    request->path = request->target.section(u'?', 0, 0);
    return Reading::Whole;
}

Reading readHeaders(QIODevice *connection, Headers *headers)
{
    while (const auto line = readLine(connection)) {
        if (line->isEmpty())
            return Reading::Whole;
        const qsizetype colon = line->indexOf(':');
        if (colon < 1)
            return Reading::Malformed;
        headers->emplaceBack(line->first(colon), line->sliced(colon + 1).trimmed());
    }
    return Reading::Partial;
}

Reading readBytes(QIODevice *connection, qint64 length, QByteArray *bytes)
{
    if (connection->bytesAvailable() < length)
        return Reading::Partial;
    bytes->append(connection->read(length));
    return Reading::Whole;
}

Reading readChunks(QIODevice *connection, QByteArray *body)
{
    while (const auto line = readLine(connection)) {
        bool ok = false;
        const qint64 length = line->split(';').first().trimmed().toLongLong(&ok, 16);
        if (!ok || length < 0)
            return Reading::Malformed;
        Headers trailers;
        if (length == 0)
            return readHeaders(connection, &trailers);
        if (readBytes(connection, length, body) == Reading::Partial)
            return Reading::Partial;
        if (!readLine(connection)) // the end of the chunk
            return Reading::Partial;
    }
    return Reading::Partial;
}

Reading readBody(QIODevice *connection, Request *request)
{
    if (request->header("Transfer-Encoding").compare("chunked", Qt::CaseInsensitive) == 0)
        return readChunks(connection, &request->body);
    const QByteArray length = request->header("Content-Length");
    bool ok = length.isEmpty();
    const qint64 bytes = ok ? 0 : length.toLongLong(&ok);
    return ok && bytes >= 0 ? readBytes(connection, bytes, &request->body) : Reading::Malformed;
}

Reading readParts(QIODevice *connection, Request *request)
{
    Reading reading = readTarget(connection, request);
    if (reading == Reading::Whole)
        reading = readHeaders(connection, &request->headers);
    if (reading == Reading::Whole)
        reading = readBody(connection, request);
    return reading;
}

} // namespace

Reading readRequest(QIODevice *connection, Request *request)
{
    connection->startTransaction();
    const Reading reading = readParts(connection, request);
    if (reading == Reading::Partial)
        connection->rollbackTransaction();
    else
        connection->commitTransaction();
    return reading;
}

QByteArray Request::header(const QByteArray &name) const
{
    for (const auto &[key, value] : headers) {
        if (key.compare(name, Qt::CaseInsensitive) == 0)
            return value;
    }
    return {};
}

QJsonObject Request::json() const
{
    return QJsonDocument::fromJson(body).object();
}

} // namespace sandbox
