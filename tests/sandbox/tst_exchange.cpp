#include "sandbox/builtinanswers.h"
#include "sandbox/exchange.h"

#include <QCryptographicHash>
#include <QFile>
#include <QJsonDocument>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QProcess>
#include <QSignalSpy>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

void write(const QString &fileName, const QByteArray &data)
{
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write(data) == data.size());
}

} // namespace

class TestExchange : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void verifiesAgainstItsOwnAuthorityOnly();
    void keepsWhatIsSoundInItsStateFolder();
    void checksSignaturesAndKeepsHeadersAsSent();
    void breaksAnswersOnTheWire();
    void servesAFolderAndNothingOutsideIt();
    void runsAsAProgram();

private:
    QNetworkReply *done(QNetworkReply *reply);
    QNetworkReply *get(const QUrl &url) { return done(m_client->get(request(url))); }
    QNetworkRequest request(const QUrl &url) const;
    QByteArray ask(const QString &position, const QByteArray &secret = "demo-secret");

    std::unique_ptr<sandbox::Exchange> m_exchange;
    std::unique_ptr<QNetworkAccessManager> m_client;
};

void TestExchange::init()
{
    m_client = std::make_unique<QNetworkAccessManager>();
    m_exchange = std::make_unique<sandbox::Exchange>();
    QVERIFY2(m_exchange->start(), qPrintable(m_exchange->errorString()));
}

QNetworkReply *TestExchange::done(QNetworkReply *reply)
{
    if (!reply->isFinished())
        QSignalSpy(reply, &QNetworkReply::finished).wait();
    return reply;
}

QNetworkRequest TestExchange::request(const QUrl &url) const
{
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setCaCertificates({m_exchange->ca()});
    QNetworkRequest request(url);
    request.setSslConfiguration(tls);
    return request;
}

QByteArray TestExchange::ask(const QString &position, const QByteArray &secret)
{
    QNetworkRequest signedRequest = request(m_exchange->url(u"/s/req2.do"_s));
    const auto sign = QCryptographicHash::hash("am" + secret + "17", QCryptographicHash::Sha256);
    signedRequest.setRawHeader("appId", "a");
    signedRequest.setRawHeader("mediaId", "m");
    signedRequest.setRawHeader("ts", "17");
    signedRequest.setRawHeader("sign", sign.toHex());
    signedRequest.setRawHeader("Content-Type", "application/json");
    const QByteArray body = R"({"imps":[{"positionId":")" + position.toUtf8() + R"("}]})";
    return done(m_client->post(signedRequest, body))->readAll();
}

void TestExchange::verifiesAgainstItsOwnAuthorityOnly()
{
    for (const QString &host : {u"localhost"_s, u"127.0.0.1"_s}) {
        QUrl url = m_exchange->url(u"/t/view/1"_s);
        url.setHost(host);
        QCOMPARE(get(url)->error(), QNetworkReply::NoError);
        QNetworkAccessManager stranger;
        QCOMPARE(done(stranger.get(QNetworkRequest(url)))->error(),
            QNetworkReply::SslHandshakeFailedError);
    }
    sandbox::Exchange other;
    QVERIFY(other.start());
    QCOMPARE(get(other.url(u"/t/view/1"_s))->error(), QNetworkReply::SslHandshakeFailedError);
    QCOMPARE(m_exchange->hits(u"/t/view/1"_s), 2);
}

void TestExchange::keepsWhatIsSoundInItsStateFolder()
{
    QTemporaryDir dir;
    QString error;
    const auto certificates = [&] { return sandbox::credentials(dir.path(), &error).value(); };
    const auto first = certificates();
    for (const QString &key : {u"ca.key"_s, u"server.key"_s}) {
        QCOMPARE(QFile::permissions(dir.filePath(key)) & QFile::Permissions(0x0077), 0);
    }
    QCOMPARE(certificates().server, first.server);

    write(dir.filePath(u"server.key"_s), "not a key");
    const auto second = certificates();
    QCOMPARE(second.ca, first.ca);
    QVERIFY(second.server != first.server);
}

void TestExchange::checksSignaturesAndKeepsHeadersAsSent()
{
    QCOMPARE(QJsonDocument::fromJson(ask(u"splash"_s))["code"_L1], 200);
    QCOMPARE(QJsonDocument::fromJson(ask(u"splash"_s, "wrong"))["code"_L1], 401);
    QVERIFY(m_exchange->waitForRequests(u"/s/req2.do"_s, 2));
    const auto requests = m_exchange->requests(u"/s/req2.do"_s);
    QVERIFY(*requests[0].signatureOk);
    QVERIFY(!*requests[1].signatureOk);
    QCOMPARE(requests[0].position, u"splash"_s);

    // Two requests over one connection, byte by byte as a client wrote them.
    QTcpSocket socket;
    socket.connectToHost(QHostAddress::LocalHost, quint16(m_exchange->httpUrl().port()));
    for (int i = 1; i <= 2; ++i) {
        socket.write("POST /logs.do?x=%2F HTTP/1.1\r\nhost: a\r\nappId: 1\r\nX-aB: \r\n"
                     "content-length: 2\r\n\r\n{}");
        QVERIFY(m_exchange->waitForRequests(u"/logs.do"_s, i));
        QTRY_VERIFY(socket.bytesAvailable() > 0);
        QVERIFY(socket.readAll().startsWith("HTTP/1.1 200 OK\r\n"));
    }
    const auto request = m_exchange->requests(u"/logs.do"_s).last();
    QCOMPARE(request.headers,
        (sandbox::Headers{{"host", "a"}, {"appId", "1"}, {"X-aB", ""}, {"content-length", "2"}}));
    QCOMPARE(request.target, u"/logs.do?x=%2F"_s);
    QCOMPARE(request.body, "{}");
}

void TestExchange::breaksAnswersOnTheWire()
{
    const QByteArray whole = ask(u"gzip"_s); // the client decodes it
    QCOMPARE(QJsonDocument::fromJson(whole)["data"_L1][0]["adId"_L1], u"splash-1"_s);
    QVERIFY(ask(u"dropped"_s).isEmpty());
    const QByteArray half = ask(u"truncated"_s);
    QVERIFY(!half.isEmpty() && half.size() < whole.size());
}

void TestExchange::servesAFolderAndNothingOutsideIt()
{
    QTemporaryDir dir;
    QVERIFY(QDir(dir.path()).mkdir(u"in"_s));
    write(dir.filePath(u"out.json"_s), "secret");
    write(dir.filePath(u"in/own.json"_s), R"({"at":"${BASE}/x"})");
    write(dir.filePath(u"in/splash.jpg"_s), "mine");
    QFile::link(dir.filePath(u"out.json"_s), dir.filePath(u"in/link.json"_s));
    m_exchange->setCreativesDir(dir.filePath(u"in"_s));

    QCOMPARE(ask(u"own"_s), R"({"at":")" + m_exchange->url(u"/x"_s).toEncoded() + R"("})");
    QCOMPARE(get(m_exchange->url(u"/creatives/splash.jpg"_s))->readAll(), "mine");
    for (const QString &escape : {u"../out"_s, u"link"_s, dir.filePath(u"out"_s)}) {
        QVERIFY(!ask(escape).contains("secret"));
        const QByteArray encoded = QUrl::toPercentEncoding(escape + ".json"_L1);
        const auto url = m_exchange->url("/creatives/"_L1 + QString::fromLatin1(encoded));
        QCOMPARE(get(url)->error(), QNetworkReply::ContentNotFoundError);
    }
}

void TestExchange::runsAsAProgram()
{
    QTemporaryDir dir;
    QProcess program;
    program.setProgram(QStringLiteral(ZNTADS_EXCHANGE));
    program.setArguments({u"--state-dir"_s, dir.path(), u"--log"_s, dir.filePath(u"log"_s)});
    program.start();
    QTRY_VERIFY(program.canReadLine());
    const QByteArray first = program.readLine();
    const QJsonDocument listening = QJsonDocument::fromJson(first);
    const QString http = listening["http"_L1].toString();
    QCOMPARE(first,
        R"({"event": "listening", "https": ")" + listening["https"_L1].toString().toUtf8()
            + R"(", "http": ")" + http.toUtf8() + R"(", "ca": ")"
            + dir.filePath(u"ca.pem"_s).toUtf8() + "\"}\n");
    QNetworkRequest report(QUrl(http + "/logs.do"_L1));
    report.setRawHeader("Content-Type", "application/json");
    done(m_client->post(report, "{\"a\":1}"));
    QTRY_VERIFY(program.canReadLine());
    const QByteArray second = program.readLine();
    const QJsonDocument line = QJsonDocument::fromJson(second);
    QCOMPARE(line["path"_L1], u"/logs.do"_s);
    QCOMPARE(line["body"_L1], u"{\"a\":1}"_s);
    QCOMPARE(line["count"_L1], 1);
    QVERIFY(line["signatureOk"_L1].isUndefined());
    program.kill();
    program.waitForFinished();
    QFile log(dir.filePath(u"log"_s));
    QVERIFY(log.open(QIODevice::ReadOnly));
    QCOMPARE(log.readAll(), first + second);
}

QTEST_GUILESS_MAIN(TestExchange)
#include "tst_exchange.moc"
