#include "net/httpclient.h"

#include "net/networkmanager.h"
#include "support/clock.h"

#include <QNetworkReply>
#include <QThread>

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <limits>
#include <memory>

namespace znt {

namespace {

constexpr int maxRedirects = 10;
constexpr qsizetype maxUrlLength = 65'536;
constexpr int maxInFlight = 6;  // as many connections as Qt opens to an origin
constexpr int maxManagers = 32; // each has a thread; more origins than that share them

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

// Unpacks the members of a gzip stream as they arrive.
class Gunzip
{
public:
    Gunzip() { inflateInit2(&m_stream, 15 + 16); } // 16: a gzip header is expected
    ~Gunzip() { inflateEnd(&m_stream); }
    Q_DISABLE_COPY_MOVE(Gunzip)

    // Appends what the bytes expand to, until that is longer than the limit.
    void unpack(const QByteArray &packed, QByteArray &plain, qint64 limit)
    {
        m_stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(packed.constData()));
        m_stream.avail_in = uInt(packed.size());
        while (plain.size() <= limit && hasMore())
            inflateOnce(plain);
    }

    bool isComplete() const { return m_state == Z_STREAM_END; }

private:
    bool hasMore()
    {
        if (m_state == Z_STREAM_END && m_stream.avail_in > 0 && *m_stream.next_in == 0x1f)
            m_state = inflateReset(&m_stream); // another member; anything else is passed over
        return m_state == Z_OK && (m_stream.avail_in > 0 || m_stream.avail_out == 0);
    }

    void inflateOnce(QByteArray &plain)
    {
        std::array<char, 16 * 1024> chunk;
        m_stream.next_out = reinterpret_cast<Bytef *>(chunk.data());
        m_stream.avail_out = uInt(chunk.size());
        m_state = inflate(&m_stream, Z_NO_FLUSH);
        if (m_state == Z_BUF_ERROR)
            m_state = Z_OK; // more is to come
        plain.append(chunk.data(), qsizetype(chunk.size() - m_stream.avail_out));
    }

    z_stream m_stream{};
    int m_state = Z_OK;
};

ZNTError networkError(QNetworkReply::NetworkError code, const QString &text)
{
    return {QStringLiteral("QNetworkReply"), code, text};
}

bool isHexDigit(QChar c)
{
    return c.unicode() < 0x80 && std::isxdigit(c.unicode());
}

// QUrl escapes every % of a text in which one begins no escape, so that one is escaped here.
QUrl parsedUrl(const QString &text)
{
    QString escaped = text;
    for (qsizetype at = text.lastIndexOf(u'%'); at >= 0;
         at = at ? text.lastIndexOf(u'%', at - 1) : -1) {
        const bool isEscape =
            at + 2 < text.size() && isHexDigit(text[at + 1]) && isHexDigit(text[at + 2]);
        if (!isEscape)
            escaped.insert(at + 1, u"25");
    }
    return QUrl(escaped);
}

// Scheme, host and port.
QUrl originUrl(const QUrl &url)
{
    QUrl origin = url.adjusted(
        QUrl::RemoveUserInfo | QUrl::RemovePath | QUrl::RemoveQuery | QUrl::RemoveFragment);
    origin.setPort(url.port(url.scheme() == u"https" ? 443 : 80));
    return origin;
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

// One request on its way: collects the body within the limits, and finishes once.
class Transfer : public QObject
{
public:
    // Gets the answer, or the redirection that is to be followed for it.
    using Finished =
        std::function<void(const HttpAnswer &answer, const std::optional<QUrl> &redirection)>;

    Transfer(QNetworkReply *reply, const HttpLimits &limits, qint64 deadline, Finished finished)
        : QObject(reply)
        , m_reply(reply)
        , m_limits(limits)
        , m_finished(std::move(finished))
    {
        connect(reply, &QNetworkReply::readyRead, this, &Transfer::read);
        connect(reply, &QNetworkReply::finished, this, &Transfer::finish);
        connect(&m_timeOut, &Timer::timeout, this, [this] {
            abort(networkError(
                QNetworkReply::TimeoutError, QStringLiteral("The request timed out.")));
        });
        m_timeOut.start(std::chrono::milliseconds(deadline - now()));
    }

private:
    void read()
    {
        const QByteArray bytes = m_reply->readAll();
        m_received += bytes.size();
        if (!m_limits.discardBody)
            take(bytes);
        if (qMax(m_received, qint64(m_answer.body.size())) <= m_limits.bytes)
            return;
        if (m_limits.discardBody)
            abort({});
        else
            abort(networkError(
                QNetworkReply::UnknownContentError, QStringLiteral("The answer is too large.")));
    }

    void take(const QByteArray &bytes)
    {
        const QByteArray encoding = m_reply->rawHeader("Content-Encoding").trimmed().toLower();
        if (encoding != "gzip" && encoding != "x-gzip") {
            m_answer.body += bytes;
            return;
        }
        if (!m_gunzip)
            m_gunzip.emplace();
        m_gunzip->unpack(bytes, m_answer.body, m_limits.bytes);
    }

    void abort(const std::optional<ZNTError> &error)
    {
        m_decided = true;
        m_answer.error = error;
        m_reply->abort();
    }

    void finish()
    {
        m_timeOut.stop();
        m_reply->deleteLater();
        m_answer.status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
        const std::optional<QUrl> target = m_decided ? std::nullopt : redirection();
        if (!target && !m_decided)
            complete();
        std::exchange(m_finished, {})(m_answer, target);
    }

    // Qt gives up a 307 and a 308 by itself when the upload cannot be rewound.
    std::optional<QUrl> redirection() const
    {
        static constexpr std::array statuses{301, 302, 303, 307, 308};
        const QByteArray location = m_reply->rawHeader("Location");
        if (location.isEmpty() || !std::ranges::count(statuses, m_answer.status)
            || (isTransferError(m_reply) && m_reply->error() != QNetworkReply::ContentReSendError))
            return {};
        return location.size() > maxUrlLength ? QUrl() : parsedUrl(QString::fromUtf8(location));
    }

    void complete()
    {
        if (isTransferError(m_reply))
            m_answer.error = networkError(m_reply->error(), m_reply->errorString());
        else if (m_gunzip && !m_gunzip->isComplete())
            m_answer.error = networkError(QNetworkReply::UnknownContentError,
                QStringLiteral("The answer's encoding is broken."));
    }

    QNetworkReply *const m_reply;
    const HttpLimits m_limits;
    Finished m_finished;
    Timer m_timeOut{Timer::Kind::Single};
    HttpAnswer m_answer;
    std::optional<Gunzip> m_gunzip;
    qint64 m_received = 0;
    bool m_decided = false;
};

} // namespace

HttpClient::HttpClient(const HttpLimits &limits, QObject *parent)
    : QObject(parent)
    , m_limits(limits)
    , m_cookies(this)
    , m_nextStart(this)
{
    m_nextStart.setSingleShot(true);
    m_nextStart.setInterval(0);
    connect(&m_nextStart, &QTimer::timeout, this, &HttpClient::startNext);
}

HttpClient::~HttpClient() = default;

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
    m_pending.push_back(std::move(call));
    if (!m_nextStart.isActive())
        m_nextStart.start();
}

void HttpClient::startNext()
{
    if (m_pending.empty()) {
        m_origins.remove_if([](const Origin &o) { return o.inFlight == 0 && o.pending.empty(); });
        return;
    }
    Call call = std::move(m_pending.front());
    m_pending.pop_front();
    m_nextStart.start();
    const bool isTooLong = call.request.url.size() > maxUrlLength;
    const QUrl url = isTooLong ? QUrl() : parsedUrl(call.request.url);
    if (!isHttp(url)) {
        if (call.done)
            call.done({networkError(
                           QNetworkReply::ProtocolUnknownError, QStringLiteral("unsupported URL")),
                0, {}});
        return;
    }
    Origin &origin = originOf(url);
    if (origin.inFlight == maxInFlight)
        origin.pending.push_back(std::move(call));
    else
        start(call, {url, now() + m_limits.total.count()});
}

void HttpClient::start(const Call &call, const RedirectState &state)
{
    Origin &origin = originOf(state.url);
    ++origin.inFlight;
    QNetworkReply *reply = request(*origin.manager, state.url, call.request);
    new Transfer(reply, m_limits, state.deadline,
        [this, call, state, &origin, reply](
            const HttpAnswer &answer, const std::optional<QUrl> &redirection) {
            // A connection that was given up, or has left HTTP, may hold up all others of its
            // manager.
            finish(origin,
                m_limits.onFreshConnection || answer.status == 101
                    || reply->error() == QNetworkReply::OperationCanceledError);
            if (redirection && follow(call, state, *redirection, answer.status))
                return;
            HttpAnswer result = answer;
            if (redirection)
                result.error = networkError(QNetworkReply::InsecureRedirectError,
                    QStringLiteral("The redirection was refused."));
            if (call.done)
                call.done(result);
        });
}

void HttpClient::finish(Origin &origin, bool closes)
{
    --origin.inFlight;
    origin.isClosed |= closes;
    // What waited for it goes next: one for the place that is free, all when it takes none.
    const auto begin = origin.pending.begin();
    const auto end = origin.isClosed || origin.pending.empty() ? origin.pending.end() : begin + 1;
    m_pending.insert(m_pending.begin(), std::move_iterator(begin), std::move_iterator(end));
    origin.pending.erase(begin, end);
    m_nextStart.start();
}

bool HttpClient::follow(
    const Call &call, const RedirectState &state, const QUrl &target, int status)
{
    const QUrl url = state.url.resolved(target);
    if (state.count == maxRedirects || !isHttp(url)
        || (state.url.scheme() == u"https" && url.scheme() == u"http"))
        return false;
    Call next = call;
    if (status != 307 && status != 308) {
        if (next.request.method != "HEAD")
            next.request.method = "GET";
        next.request.body.clear();
    }
    if (originUrl(url) != originUrl(state.url)) {
        if (!next.request.body.isEmpty())
            return false;
        next.request.headers.clear();
    }
    start(next, {url, state.deadline, state.count + 1});
    return true;
}

HttpClient::Origin &HttpClient::originOf(const QUrl &url)
{
    const QUrl wanted = originUrl(url);
    const auto found = std::ranges::find_if(m_origins,
        [&wanted](const Origin &origin) { return !origin.isClosed && origin.url == wanted; });
    if (found != m_origins.end())
        return *found;
    return m_origins.emplace_back(Origin{.url = wanted, .manager = managerFor(wanted)});
}

// One of its own, so that an origin which holds its manager's thread holds up no other.
std::shared_ptr<QNetworkAccessManager> HttpClient::managerFor(const QUrl &origin)
{
    const auto users = [](const Origin &other) {
        return other.isClosed ? std::numeric_limits<long>::max() : other.manager.use_count();
    };
    if (std::ranges::count(m_origins, false, &Origin::isClosed) >= maxManagers)
        return std::ranges::min_element(m_origins, {}, users)->manager;
    auto manager = makeNetworkManager(origin);
    manager->setCookieJar(&m_cookies);
    m_cookies.setParent(this); // the manager has just made it its own
    return manager;
}

// Redirections are followed here: Qt, when it follows one of a request that it may not send again,
// sometimes does send it again.
QNetworkReply *HttpClient::request(
    QNetworkAccessManager &manager, const QUrl &url, const HttpRequest &request) const
{
    QNetworkRequest wire(url);
    wire.setAttribute(
        QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    if (m_limits.inactivity < m_limits.total) // Qt's timer may fire half a second too soon
        wire.setTransferTimeout(int(m_limits.inactivity.count()));
    wire.setRawHeader("Accept-Encoding", "gzip"); // else Qt unpacks by itself, and without a bound
    for (const auto &[name, value] : request.headers)
        wire.setRawHeader(name, value);
    if (request.method == "HEAD")
        return manager.head(wire); // Qt would wait for the body of any other method
    if (m_limits.mayResend && request.method == "GET")
        return manager.get(wire);

    wire.setAttribute(QNetworkRequest::DoNotBufferUploadDataAttribute, true);
    wire.setHeader(QNetworkRequest::ContentLengthHeader, request.body.size());
    auto *upload = new OneWayUpload(request.body, nullptr);
    QNetworkReply *reply = manager.sendCustomRequest(wire, request.method, upload);
    upload->setParent(reply);
    return reply;
}

} // namespace znt
