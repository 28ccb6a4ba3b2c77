#include "net/httpclient.h"

#include <QNetworkReply>
#include <QThread>

#include <zlib.h>

#include <algorithm>
#include <array>
#include <memory>

namespace znt {

namespace {

constexpr int maxRedirects = 10;
constexpr int mostUnderWay = 16;

// An upload that cannot be rewound: without one, a request whose connection drops before the answer
// would silently be sent again.
class OneWayUpload : public QIODevice
{
public:
    OneWayUpload(const QByteArray &body, QObject *parent)
        : QIODevice(parent)
        , m_body(body)
    {
        open(ReadOnly);
    }

    bool isSequential() const override { return true; }
    bool reset() override { return false; }
    qint64 bytesAvailable() const override
    {
        return m_body.size() - m_read + QIODevice::bytesAvailable();
    }
    bool atEnd() const override { return bytesAvailable() == 0; }

protected:
    qint64 readData(char *data, qint64 size) override
    {
        const qint64 count = qMin(size, m_body.size() - m_read);
        if (count <= 0)
            return -1;
        memcpy(data, m_body.constData() + m_read, size_t(count));
        m_read += count;
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    const QByteArray m_body;
    qint64 m_read = 0;
};

std::optional<QByteArray> gunzipped(const QByteArray &packed, qint64 limit)
{
    z_stream stream{};
    if (inflateInit2(&stream, 15 + 16) != Z_OK) // 16: a gzip header is expected
        return {};
    const auto guard = qScopeGuard([&stream] { inflateEnd(&stream); });
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(packed.constData()));
    stream.avail_in = uInt(packed.size());

    QByteArray plain;
    std::array<char, 16 * 1024> chunk;
    int state = Z_OK;
    while (state == Z_OK) {
        stream.next_out = reinterpret_cast<Bytef *>(chunk.data());
        stream.avail_out = uInt(chunk.size());
        state = inflate(&stream, Z_NO_FLUSH);
        plain.append(chunk.data(), qsizetype(chunk.size() - stream.avail_out));
        if (plain.size() > limit)
            return {};
    }
    return state == Z_STREAM_END ? std::optional(plain) : std::nullopt;
}

ZNTError networkError(QNetworkReply::NetworkError code, const QString &text)
{
    return {QStringLiteral("QNetworkReply"), code, text};
}

bool isHttp(const QUrl &url)
{
    return url.isValid() && !url.host().isEmpty()
        && (url.scheme() == u"https" || url.scheme() == u"http");
}

// Qt counts an HTTP error status among the failures; here only the transfer itself can fail.
bool isTransferError(const QNetworkReply *reply)
{
    const auto error = reply->error();
    const bool isStatus =
        (error >= QNetworkReply::ContentAccessDenied && error <= QNetworkReply::UnknownContentError
            && error != QNetworkReply::ContentReSendError)
        || (error >= QNetworkReply::InternalServerError
            && error <= QNetworkReply::UnknownServerError)
        || error == QNetworkReply::ProtocolInvalidOperationError     // 400, 418
        || error == QNetworkReply::ProxyAuthenticationRequiredError; // 407
    const bool answered = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).isValid();
    return error != QNetworkReply::NoError && !(isStatus && answered);
}

// One request on its way: collects the body within the limits and answers once.
class Transfer : public QObject
{
public:
    Transfer(QNetworkReply *reply, const HttpLimits &limits, const QDeadlineTimer &deadline,
        HttpClient::Done done)
        : QObject(reply)
        , m_reply(reply)
        , m_limits(limits)
        , m_done(std::move(done))
    {
        connect(reply, &QNetworkReply::readyRead, this, &Transfer::read);
        connect(reply, &QNetworkReply::finished, this, &Transfer::finish);
        QTimer::singleShot(int(deadline.remainingTime()), Qt::PreciseTimer, this, [this] {
            abort(networkError(
                QNetworkReply::TimeoutError, QStringLiteral("The request timed out.")));
        });
    }

    // Sends the request on to another place and answers later; false when that is not allowed.
    std::function<bool(const QUrl &target, int status, const HttpClient::Done &done)> follow;

private:
    void read()
    {
        const QByteArray bytes = m_reply->readAll();
        m_received += bytes.size();
        if (!m_limits.discardBody)
            m_answer.body += bytes;
        if (m_received <= m_limits.bytes)
            return;
        if (m_limits.discardBody)
            abort({});
        else
            abort(networkError(
                QNetworkReply::UnknownContentError, QStringLiteral("The answer is too large.")));
    }

    void abort(const std::optional<ZNTError> &error)
    {
        m_decided = true;
        m_answer.error = error;
        m_reply->abort();
    }

    void finish()
    {
        m_reply->deleteLater();
        m_answer.status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        const std::optional<QUrl> target = m_decided ? std::nullopt : redirection();
        if (target) {
            if (follow(*target, m_answer.status, m_done))
                return;
            m_answer.error = networkError(QNetworkReply::InsecureRedirectError,
                QStringLiteral("The redirection was refused."));
        } else if (!m_decided) {
            complete();
        }
        std::exchange(m_done, {})(m_answer);
    }

    // Qt gives up a 307 and a 308 by itself when the upload cannot be rewound.
    std::optional<QUrl> redirection() const
    {
        static constexpr std::array statuses{301, 302, 303, 307, 308};
        const QByteArray location = m_reply->rawHeader("Location");
        if (location.isEmpty() || !std::ranges::count(statuses, m_answer.status)
            || (isTransferError(m_reply) && m_reply->error() != QNetworkReply::ContentReSendError))
            return {};
        return QUrl::fromEncoded(location);
    }

    void complete()
    {
        if (isTransferError(m_reply)) {
            m_answer.error = networkError(m_reply->error(), m_reply->errorString());
            return;
        }
        const QByteArray encoding = m_reply->rawHeader("Content-Encoding").trimmed().toLower();
        if (m_limits.discardBody || (encoding != "gzip" && encoding != "x-gzip"))
            return;
        if (auto plain = gunzipped(m_answer.body, m_limits.bytes))
            m_answer.body = *plain;
        else
            m_answer.error = networkError(QNetworkReply::UnknownContentError,
                QStringLiteral("The answer's encoding is broken."));
    }

    QNetworkReply *const m_reply;
    const HttpLimits m_limits;
    HttpClient::Done m_done;
    HttpAnswer m_answer;
    qint64 m_received = 0;
    bool m_decided = false;
};

} // namespace

HttpClient::HttpClient(const HttpLimits &limits, QObject *parent)
    : QObject(parent)
    , m_limits(limits)
    , m_network(this)
    , m_turn(this)
{
    m_turn.setSingleShot(true);
    m_turn.setInterval(0);
    connect(&m_turn, &QTimer::timeout, this, &HttpClient::startNext);
}

void HttpClient::send(const HttpRequest &request, Done done)
{
    Call call{request, std::move(done)};
    if (QThread::currentThread() == thread()) {
        enqueue(std::move(call));
        return;
    }
    QMetaObject::invokeMethod(
        this, [this, call = std::move(call)] { enqueue(call); }, Qt::QueuedConnection);
}

void HttpClient::enqueue(Call call)
{
    m_waiting.push_back(std::move(call));
    if (!m_turn.isActive())
        m_turn.start();
}

void HttpClient::startNext()
{
    if (m_waiting.empty() || m_underWay == mostUnderWay)
        return;
    const Call call = std::move(m_waiting.front());
    m_waiting.pop_front();
    ++m_underWay;
    m_turn.start();
    const auto finish = [this, done = call.done](const HttpAnswer &answer) {
        --m_underWay;
        m_turn.start();
        if (done)
            done(answer);
    };
    start(call.request, finish, {QDeadlineTimer(m_limits.total)});
}

void HttpClient::start(const HttpRequest &request, const Done &done, const Journey &journey)
{
    if (!isHttp(request.url)) {
        done({networkError(QNetworkReply::ProtocolUnknownError, QStringLiteral("unsupported URL")),
            0, {}});
        return;
    }
    QNetworkReply *reply = this->request(request);
    auto *transfer = new Transfer(reply, m_limits, journey.deadline, done);
    transfer->follow = [this, request, journey](
                           const QUrl &target, int status, const Done &pending) {
        const QUrl url = request.url.resolved(target);
        if (journey.redirects == maxRedirects || !isHttp(url)
            || (request.url.scheme() == u"https" && url.scheme() == u"http"))
            return false;
        HttpRequest next = request;
        next.url = url;
        if (status != 307 && status != 308) {
            next.method = "GET";
            next.body.clear();
        }
        start(next, pending, {journey.deadline, journey.redirects + 1});
        return true;
    };
}

// Redirections are followed here: Qt, when it follows one of a request that it may not send again,
// sometimes does send it again.
QNetworkReply *HttpClient::request(const HttpRequest &request)
{
    QNetworkRequest wire(request.url);
    wire.setAttribute(
        QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    if (m_limits.inactivity < m_limits.total) // Qt's timer may fire half a second too soon
        wire.setTransferTimeout(int(m_limits.inactivity.count()));
    wire.setRawHeader("Accept-Encoding", "gzip"); // else Qt unpacks by itself, and without a bound
    for (const auto &[name, value] : request.headers)
        wire.setRawHeader(name, value);
    if (m_limits.mayResend && request.method == "GET")
        return m_network.get(wire);

    wire.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    wire.setHeader(QNetworkRequest::ContentLengthHeader, request.body.size());
    auto *upload = new OneWayUpload(request.body, nullptr);
    QNetworkReply *reply = m_network.sendCustomRequest(wire, request.method, upload);
    upload->setParent(reply);
    return reply;
}

} // namespace znt
