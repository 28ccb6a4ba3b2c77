#include "httpserver.h"

#include "requestreader.h"

#include <QJsonDocument>
#include <QSslServer>
#include <QTcpSocket>
#include <QTimer>

#include <zlib.h>

using namespace std::chrono_literals;

namespace sandbox {
namespace {

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

Answer encoded(Answer answer)
{
    if (answer.gzip) {
        answer.body = gzipped(answer.body);
        answer.headers.emplaceBack("Content-Encoding", "gzip");
    }
    return answer;
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

void writeEndlessly(QTcpSocket *socket, const QByteArray &repeated)
{
    constexpr qint64 piece = 256 * 1024;
    const QByteArray noise = repeated.repeated(piece / repeated.size());
    // From the event loop, one piece a turn, so that everybody else is served meanwhile.
    auto *timer = new QTimer(socket);
    QObject::connect(timer, &QTimer::timeout, socket, [socket, noise] {
        if (socket->bytesToWrite() < noise.size())
            socket->write(noise);
    });
    timer->start(1ms);
}

void write(QTcpSocket *socket, const Answer::Wire &wire)
{
    socket->write(wire.begin);
    if (!wire.repeated.isEmpty())
        writeEndlessly(socket, wire.repeated);
    else if (wire.closes)
        socket->disconnectFromHost();
}

void write(QTcpSocket *socket, const Answer &answer, bool headOnly, bool close)
{
    using Delivery = Answer::Delivery;
    if (answer.wire)
        return write(socket, *answer.wire);
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
            return writeEndlessly(socket, "\x5a");
        default:
            socket->write(answer.body);
        }
    }
    if (close || answer.delivery != Delivery::Whole)
        socket->disconnectFromHost();
}

// Reads the rest of what has come when the answer has been written.
void answerNext(QTcpSocket *socket, bool secure, const Handler &handler)
{
    Request request;
    request.secure = secure;
    const Reading reading = readRequest(socket, &request);
    if (reading == Reading::Malformed)
        socket->disconnectFromHost();
    if (reading != Reading::Whole)
        return;
    const Answer answer = encoded(handler(request));
    const bool headOnly = request.method == "HEAD";
    const bool close = request.header("Connection").compare("close", Qt::CaseInsensitive) == 0;
    QTimer::singleShot(answer.delay, socket, [=] {
        write(socket, answer, headOnly, close);
        if (socket->isOpen())
            answerNext(socket, secure, handler);
    });
}

} // namespace

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

void serve(QTcpServer *server, const Handler &handler)
{
    const bool secure = qobject_cast<QSslServer *>(server);
    QObject::connect(server, &QTcpServer::pendingConnectionAvailable, server, [=] {
        while (QTcpSocket *socket = server->nextPendingConnection()) {
            const auto answerRequest = [=] { answerNext(socket, secure, handler); };
            QObject::connect(socket, &QTcpSocket::readyRead, socket, answerRequest);
            QObject::connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            answerRequest();
        }
    });
}

} // namespace sandbox
