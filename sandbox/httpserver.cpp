#include "httpserver.h"

#include <QHttpServerRequest>
#include <QJsonDocument>
#include <QMetaEnum>
#include <QTcpSocket>
#include <QTimer>

#include <zlib.h>

using namespace std::chrono_literals;

namespace sandbox {
namespace {

Request received(const QHttpServerRequest &raw, bool secure)
{
    const auto methods = QMetaEnum::fromType<QHttpServerRequest::Method>();
    Request request;
    request.secure = secure;
    request.method = QByteArray(methods.valueToKey(int(raw.method()))).toUpper();
    request.path = raw.url().path(QUrl::FullyEncoded);
    request.target = request.path;
    if (raw.url().hasQuery())
        request.target += u'?' + raw.url().query(QUrl::FullyEncoded);
    request.headers = raw.headers();
    request.body = raw.body();
    return request;
}

QByteArray reason(int status)
{
    switch (status) {
    case 200:
        return "OK";
    case 206:
        return "Partial Content";
    case 404:
        return "Not Found";
    case 405:
        return "Method Not Allowed";
    case 416:
        return "Range Not Satisfiable";
    default:
        return "Status";
    }
}

QByteArray head(const Answer &answer)
{
    QByteArray head = "HTTP/1.1 " + QByteArray::number(answer.status) + ' ' + reason(answer.status)
        + "\r\nContent-Type: " + answer.contentType + "\r\n";
    // Without a length the body lasts as long as the connection.
    head += answer.delivery == Answer::Delivery::Endless
        ? QByteArray("Connection: close\r\n")
        : "Content-Length: " + QByteArray::number(answer.body.size()) + "\r\n";
    for (const auto &[name, value] : answer.headers)
        head += name + ": " + value + "\r\n";
    return head + "\r\n";
}

void drip(QTcpSocket *socket, const QByteArray &body)
{
    auto *timer = new QTimer(socket);
    QObject::connect(timer, &QTimer::timeout, socket, [socket, timer, body, sent = 0]() mutable {
        socket->write(body.mid(sent++, 1));
        if (sent >= body.size()) {
            timer->stop();
            timer->deleteLater();
        }
    });
    timer->start(1s);
}

void writeEndlessly(QTcpSocket *socket)
{
    // From the event loop, one piece a turn, so that everybody else is served meanwhile.
    auto *timer = new QTimer(socket);
    QObject::connect(timer, &QTimer::timeout, socket, [socket] {
        constexpr qint64 piece = 256 * 1024;
        if (socket->bytesToWrite() < piece)
            socket->write(QByteArray(piece, '\x5a'));
    });
    timer->start(1ms);
}

void write(QTcpSocket *socket, const Answer &answer, bool headOnly, bool close)
{
    using Delivery = Answer::Delivery;
    if (answer.delivery == Delivery::Dropped)
        return socket->abort();
    socket->write(head(answer));
    if (!headOnly) {
        switch (answer.delivery) {
        case Delivery::Dripping:
            return drip(socket, answer.body);
        case Delivery::Truncated:
            socket->write(answer.body.left(answer.body.size() / 2));
            break;
        case Delivery::Endless:
            socket->write(answer.body);
            return writeEndlessly(socket);
        default:
            socket->write(answer.body);
        }
    }
    if (close || answer.delivery != Delivery::Whole)
        socket->disconnectFromHost();
}

} // namespace

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

QByteArray gzipped(const QByteArray &data)
{
    z_stream stream{};
    constexpr int gzipFormat = 15 + 16;
    deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, gzipFormat, 8, Z_DEFAULT_STRATEGY);
    QByteArray compressed(qsizetype(deflateBound(&stream, data.size())), Qt::Uninitialized);
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(data.constData()));
    stream.avail_in = uInt(data.size());
    stream.next_out = reinterpret_cast<Bytef *>(compressed.data());
    stream.avail_out = uInt(compressed.size());
    deflate(&stream, Z_FINISH);
    compressed.truncate(qsizetype(stream.total_out));
    deflateEnd(&stream);
    return compressed;
}

Answer jsonAnswer(const QJsonObject &object)
{
    return {.body = QJsonDocument(object).toJson(QJsonDocument::Compact)};
}

HttpServer::HttpServer(bool secure, Handler handler, QObject *parent)
    : QAbstractHttpServer(parent)
    , m_secure(secure)
    , m_handler(std::move(handler))
{
}

bool HttpServer::handleRequest(const QHttpServerRequest &raw, QTcpSocket *socket)
{
    const Request request = received(raw, m_secure);
    Answer answer = m_handler(request);
    if (answer.gzip) {
        answer.body = gzipped(answer.body);
        answer.headers.emplaceBack("Content-Encoding", "gzip");
    }
    const bool headOnly = request.method == "HEAD";
    const bool close = request.header("Connection").compare("close", Qt::CaseInsensitive) == 0;
    // Never from within this call: the base class still uses what a closed socket takes with it.
    QTimer::singleShot(answer.delay, socket, [=] { write(socket, answer, headOnly, close); });
    return true;
}

void HttpServer::missingHandler(const QHttpServerRequest &, QTcpSocket *)
{
}

} // namespace sandbox
