#include "exchange.h"

#include "builtinanswers.h"
#include "creatives.h"
#include "httpserver.h"

#include <QCryptographicHash>
#include <QEventLoop>
#include <QHostAddress>
#include <QJsonArray>
#include <QJsonDocument>
#include <QSslConfiguration>
#include <QSslServer>
#include <QTemporaryDir>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace sandbox {
namespace {

constexpr auto adPath = "/s/req2.do"_L1;
constexpr auto configurationPath = "/conf.do"_L1;
constexpr auto feedbackPath = "/s/negfb.do"_L1;
constexpr auto logPath = "/logs.do"_L1;
constexpr auto creativesPath = "/creatives/"_L1;
constexpr auto trackingPath = "/t/"_L1;
constexpr auto landingPath = "/landing/"_L1;

const QString defaultSecret = u"demo-secret"_s;

bool isSigned(const QString &path)
{
    return path == adPath || path == configurationPath || path == feedbackPath;
}

QString positionOf(const Request &request)
{
    return request.json()["imps"_L1][0]["positionId"_L1].toString();
}

Answer page(int status, const QByteArray &text)
{
    return {.body = "<!doctype html><meta charset=utf-8><h1>" + text + "</h1>\n",
        .contentType = "text/html; charset=UTF-8",
        .status = status};
}

Answer refusal(int code, const QString &message)
{
    return jsonAnswer({{u"code"_s, code}, {u"message"_s, message}});
}

} // namespace

Exchange::Exchange(QObject *parent)
    : QObject(parent)
    , m_secret(defaultSecret)
{
}

Exchange::~Exchange() = default;

void Exchange::setSecret(const QString &secret)
{
    m_secret = secret;
}

void Exchange::setStateDir(const QString &dir)
{
    m_stateDir = dir;
}

void Exchange::setCreativesDir(const QString &dir)
{
    m_creativesDir = dir;
}

bool Exchange::start(quint16 httpsPort, quint16 httpPort)
{
    if (m_stateDir.isEmpty()) {
        m_temporaryState = std::make_unique<QTemporaryDir>();
        m_stateDir = m_temporaryState->path();
    }
    const auto made = credentials(m_stateDir, &m_error);
    if (!made)
        return false;
    m_credentials = *made;

    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setLocalCertificateChain({made->server, made->ca});
    tls.setPrivateKey(made->serverKey);
    tls.setPeerVerifyMode(QSslSocket::VerifyNone);
    auto *tlsServer = new QSslServer(this);
    tlsServer->setSslConfiguration(tls);
    return listen(tlsServer, httpsPort, &m_httpsUrl)
        && listen(new QTcpServer(this), httpPort, &m_httpUrl);
}

bool Exchange::listen(QTcpServer *server, quint16 port, QUrl *url)
{
    const bool secure = qobject_cast<QSslServer *>(server);
    if (!server->listen(QHostAddress::LocalHost, port)) {
        m_error = u"cannot listen on port %1: %2"_s.arg(port).arg(server->errorString());
        return false;
    }
    serve(server, [this](const Request &request) { return handle(request); });
    *url =
        QUrl(u"%1://localhost:%2"_s.arg(secure ? u"https"_s : u"http"_s).arg(server->serverPort()));
    return true;
}

void Exchange::setAnswer(const QString &position, const QByteArray &body)
{
    setAnswer(position, Answer{.body = body});
}

void Exchange::setAnswer(const QString &position, const QJsonObject &object)
{
    setAnswer(position, QJsonDocument(object).toJson(QJsonDocument::Compact));
}

void Exchange::setAnswer(const QString &position, const Answer &answer)
{
    m_answers.insert(position, answer);
}

bool Exchange::answerLike(const QString &position, const QString &builtIn)
{
    const auto answer = builtInAnswer(builtIn);
    if (answer)
        setAnswer(position, *answer);
    return answer.has_value();
}

void Exchange::setAnswerAt(const QString &path, const Answer &answer)
{
    m_pathAnswers.insert(path, answer);
}

QJsonObject Exchange::answer(const QString &position) const
{
    return QJsonDocument::fromJson(positionAnswer(position).body).object();
}

QList<Request> Exchange::requests(const QString &path) const
{
    if (path.isEmpty())
        return m_requests;
    QList<Request> found;
    std::copy_if(m_requests.begin(), m_requests.end(), std::back_inserter(found),
        [&](const Request &request) { return request.path == path; });
    return found;
}

bool Exchange::waitForRequests(const QString &path, int count, int milliseconds)
{
    QEventLoop loop;
    const auto enough = [&] { return hits(path) >= count; };
    connect(this, &Exchange::requestReceived, &loop, [&] {
        if (enough()) // clazy:exclude=lambda-in-connect
            loop.quit();
    });
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    if (!enough())
        loop.exec();
    return enough();
}

void Exchange::forgetRequests(bool keepHits)
{
    m_requests.clear();
    if (!keepHits)
        m_hits.clear();
}

void Exchange::reset()
{
    forgetRequests();
    m_answers.clear();
    m_pathAnswers.clear();
    m_secret = defaultSecret;
    m_creativesDir.clear();
}

Answer Exchange::handle(Request request)
{
    if (request.secure && isSigned(request.path))
        request.signatureOk = isSignedRight(request);
    if (request.path == adPath)
        request.position = positionOf(request);
    m_requests.append(request);
    ++m_hits[request.path];
    Q_EMIT requestReceived(request);
    return route(request);
}

Answer Exchange::route(const Request &request) const
{
    const QString &path = request.path;
    if (m_pathAnswers.contains(path))
        return m_pathAnswers.value(path);
    if (isSigned(path) || path == logPath)
        return endpoint(request);
    if (path.startsWith(creativesPath))
        return file(request);
    if (path.startsWith(trackingPath))
        return {.contentType = "text/plain"};
    if (path.startsWith(landingPath))
        return page(200, path.mid(landingPath.size()).toHtmlEscaped().toUtf8());
    return page(404, "Not found");
}

Answer Exchange::endpoint(const Request &request) const
{
    if (request.secure == (request.path == logPath))
        return page(404, "Not found");
    if (request.method != "POST")
        return page(405, "Only POST");
    if (request.path == logPath)
        return {.contentType = "text/plain"};
    if (!*request.signatureOk)
        return refusal(401, u"wrong signature"_s);
    if (request.path == configurationPath)
        return jsonAnswer(configuration());
    if (request.path == feedbackPath)
        return jsonAnswer({{u"code"_s, 200}, {u"id"_s, request.json()["id"_L1]}});
    return positionAnswer(request.position);
}

Answer Exchange::positionAnswer(const QString &position) const
{
    Answer answer = refusal(404, u"unknown position %1"_s.arg(position));
    if (m_answers.contains(position))
        answer = m_answers.value(position);
    else if (const auto own = fileIn(m_creativesDir, position + ".json"_L1))
        answer = {.body = *own};
    else if (const auto builtIn = builtInAnswer(position))
        answer = *builtIn;
    answer.body.replace("${BASE}", m_httpsUrl.toString().toUtf8());
    return answer;
}

Answer Exchange::file(const Request &request) const
{
    const QString name = QUrl::fromPercentEncoding(request.path.mid(creativesPath.size()).toUtf8());
    if (const auto own = fileIn(m_creativesDir, name))
        return ranged(request, creative(name, *own));
    const auto builtIn = builtInCreative(name);
    return builtIn ? ranged(request, *builtIn) : page(404, "Not found");
}

bool Exchange::isSignedRight(const Request &request) const
{
    const QByteArray text = request.header("appId") + request.header("mediaId") + m_secret.toUtf8()
        + request.header("ts");
    return request.header("sign")
        == QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex();
}

void trust(const QSslCertificate &ca)
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.addCaCertificate(ca);
    QSslConfiguration::setDefaultConfiguration(configuration);
}

} // namespace sandbox
