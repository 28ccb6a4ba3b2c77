#include "support/httpclient.h"

#include "support/exchangetest.h"

using namespace znt;
using sandbox::Answer;

class TestHttpClient : public QObject
{
    Q_OBJECT

private:
    test::TrustedExchange exchange;

    QUrl at(const QString &path) const { return QUrl(exchange.httpsUrl().toString() + path); }

    HttpAnswer sent(const HttpRequest &request, const HttpLimits &limits = {})
    {
        HttpClient client(limits);
        std::optional<HttpAnswer> result;
        client.send(request, [&result](const HttpAnswer &answer) { result = answer; });
        if (!QTest::qWaitFor([&result] { return result.has_value(); }, 10'000))
            qFatal("the request was never answered");
        return *result;
    }

private slots:
    void init()
    {
        test::failOnWarnings();
        exchange.forgetRequests();
    }

    void onlyTheTransferCanFail()
    {
        exchange.setAnswerAt(QStringLiteral("/status"), {.body = "why", .status = 500});
        const HttpAnswer failed = sent({.url = at(QStringLiteral("/status"))});
        QVERIFY(!failed.error);
        QCOMPARE(failed.status, 500);
        QCOMPARE(failed.body, QByteArray("why"));

        exchange.setAnswerAt(QStringLiteral("/half"),
            {.body = "0123456789", .delivery = Answer::Delivery::Truncated});
        QVERIFY(sent({.url = at(QStringLiteral("/half"))}).error);
        QVERIFY(sent({.url = QUrl(QStringLiteral("http://127.0.0.1:1/"))}).error);
    }

    void nothingButHttpIsAskedFor()
    {
        for (const char *url :
            {"file:///etc/passwd", "data:text/plain,hello", "qrc:/qt-project.org/imports",
                "ftp://localhost/", "", "no url", "http://", "https:///path", "javascript:1"}) {
            const HttpAnswer answer = sent({.url = QUrl(QString::fromLatin1(url))});
            QVERIFY2(answer.error && answer.body.isEmpty(), url);
        }
    }

    void gzipIsUnderstoodAndBounded()
    {
        exchange.setAnswerAt(QStringLiteral("/packed"), {.body = "plain text", .gzip = true});
        exchange.setAnswerAt(
            QStringLiteral("/bomb"), {.body = QByteArray(40 * 1024 * 1024, ' '), .gzip = true});
        exchange.setAnswerAt(QStringLiteral("/broken"),
            {.body = "no gzip", .headers = {{"Content-Encoding", "gzip"}}});
        const QList<QPair<QByteArray, QByteArray>> headers{{"Accept-Encoding", "gzip"}};
        QCOMPARE(sent({.url = at(QStringLiteral("/packed")), .headers = headers}).body,
            QByteArray("plain text"));
        QVERIFY(sent({.url = at(QStringLiteral("/bomb")), .headers = headers}).error);
        QVERIFY(sent({.url = at(QStringLiteral("/broken")), .headers = headers}).error);
    }

    void sizeAndTimeAreBounded()
    {
        exchange.setAnswerAt(
            QStringLiteral("/endless"), {.body = "x", .delivery = Answer::Delivery::Endless});
        QVERIFY(sent({.url = at(QStringLiteral("/endless"))}, {.bytes = 100'000}).error);
        // A body that nobody reads is cut off without fault.
        QVERIFY(
            !sent({.url = at(QStringLiteral("/endless"))}, {.bytes = 100'000, .discardBody = true})
                 .error);

        using namespace std::chrono_literals;
        exchange.setAnswerAt(QStringLiteral("/drip"),
            {.body = QByteArray(100, 'x'), .delivery = Answer::Delivery::Dripping});
        QElapsedTimer timer;
        timer.start();
        const HttpAnswer late =
            sent({.url = at(QStringLiteral("/drip"))}, {.inactivity = 5s, .total = 1500ms});
        QVERIFY(late.error);
        QCOMPARE(late.error->code(), int(QNetworkReply::TimeoutError));
        QVERIFY(timer.elapsed() < 4000);
    }

    // A dropped connection would have Qt send again by itself.
    void oneCallIsOneRequestOnTheWire()
    {
        const QString dropped = QStringLiteral("/dropped");
        exchange.setAnswerAt(dropped, {.delivery = Answer::Delivery::Dropped});
        exchange.setAnswerAt(
            QStringLiteral("/moved"), {.status = 302, .headers = {{"Location", "/there"}}});
        exchange.setAnswerAt(QStringLiteral("/there"), {.body = "there"});
        HttpClient client({});
        int answered = 0;
        for (const char *method : {"GET", "POST", "GET", "POST", "GET", "POST"}) {
            for (const QString &path : {dropped, QStringLiteral("/moved")}) {
                client.send({.url = at(path), .method = method, .headers = {}, .body = "{}"},
                    [&answered](const HttpAnswer &) { ++answered; });
                const int before = answered;
                QTRY_VERIFY(answered > before);
            }
        }
        QCOMPARE(exchange.hits(dropped), 6);
        QCOMPARE(exchange.hits(QStringLiteral("/moved")), 6);
        QCOMPARE(exchange.hits(QStringLiteral("/there")), 6);
    }

    void redirectionsStayOnTheWeb()
    {
        const auto moved = [this](const QByteArray &target) {
            exchange.setAnswerAt(
                QStringLiteral("/from"), {.status = 307, .headers = {{"Location", target}}});
            return sent({.url = at(QStringLiteral("/from")), .method = "POST", .body = "body"});
        };
        exchange.setAnswerAt(QStringLiteral("/to"), {.body = "arrived"});
        QCOMPARE(moved("/to").body, QByteArray("arrived"));
        QCOMPARE(exchange.requests(QStringLiteral("/to")).first().body, QByteArray("body"));
        QVERIFY(moved("file:///etc/passwd").error);
        QVERIFY(moved(exchange.httpUrl().toEncoded() + "/to").error);
        QVERIFY(moved("/from").error); // for ever
    }

    // A server of another make that speaks HTTP/2 alone.
    void http2()
    {
        const QString program = QStandardPaths::findExecutable(QStringLiteral("nghttpd"));
        if (program.isEmpty())
            QSKIP("nghttpd is not installed");
        QTemporaryDir dir;
        sandbox::Exchange credentials;
        credentials.setStateDir(dir.path());
        QVERIFY(credentials.start());
        sandbox::trust(credentials.ca());
        QFile file(dir.filePath(QStringLiteral("req2.do")));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("{\"code\": 200}") > 0);
        file.close();

        QTcpServer port; // finds a free one
        QVERIFY(port.listen(QHostAddress::LocalHost));
        const QString number = QString::number(port.serverPort());
        port.close();
        QProcess server;
        server.start(program,
            {QStringLiteral("-v"), QStringLiteral("-a"), QStringLiteral("127.0.0.1"),
                QStringLiteral("-d"), dir.path(), number,
                dir.filePath(QStringLiteral("server.key")),
                dir.filePath(QStringLiteral("server.pem"))});
        QTRY_VERIFY(server.bytesAvailable() > 0 || server.state() == QProcess::NotRunning);

        const QUrl url(QStringLiteral("https://localhost:%1/req2.do").arg(number));
        const HttpAnswer posted = sent({.url = url,
            .method = "POST",
            .headers = {{"Accept-Encoding", "gzip"}, {"appId", "app"}},
            .body = "{\"id\": 1}"});
        QVERIFY2(!posted.error, qPrintable(posted.error.value_or(ZNTError()).toString()));
        QCOMPARE(posted.body, QByteArray("{\"code\": 200}"));
        QCOMPARE(sent({.url = url}).body, posted.body);
        server.terminate();
        QVERIFY(server.waitForFinished());
        const QByteArray log = server.readAllStandardOutput();
        QVERIFY2(log.contains(":method: POST") && log.contains("recv DATA frame"), log.constData());
    }

    void aClientThatDiesAnswersNobody()
    {
        auto client = std::make_unique<HttpClient>(HttpLimits{});
        bool answered = false;
        client->send({.url = at(QStringLiteral("/to"))},
            [&answered](const HttpAnswer &) { answered = true; });
        client.reset();
        QTest::qWait(50);
        QVERIFY(!answered);
    }
};

QTEST_GUILESS_MAIN(TestHttpClient)
#include "tst_httpclient.moc"
