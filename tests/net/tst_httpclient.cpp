#include "net/httpclient.h"

#include "support/exchangetest.h"

#include <ZNTAds/ZNTAdsSDK.h>

using namespace znt;
using namespace znt::test;
using sandbox::Answer;

class TestHttpClient : public QObject
{
    Q_OBJECT

private:
    TrustedExchange exchange;

    QUrl at(const QString &path) const { return exchange.url(path); }

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
        failOnWarnings();
        exchange.forgetRequests();
    }

    void onlyTheTransferCanFail()
    {
        for (const int status : {302, 400, 401, 404, 407, 418, 500}) {
            exchange.setAnswerAt("/status", {.body = "why", .status = status});
            const HttpAnswer failed = sent({.url = at("/status")});
            QVERIFY(!failed.error);
            QCOMPARE(failed.status, status);
            QCOMPARE(failed.body, QByteArray("why"));
        }

        exchange.setAnswerAt(
            "/half", {.body = "0123456789", .delivery = Answer::Delivery::Truncated});
        QVERIFY(sent({.url = at("/half")}).error);
        QVERIFY(sent({.url = QUrl("http://127.0.0.1:1/")}).error);
    }

    void nothingButHttpIsAskedFor()
    {
        for (const char *url :
            {"file:///etc/passwd", "data:text/plain,hello", "qrc:/qt-project.org/imports",
                "ftp://localhost/", "", "no url", "http://", "https:///path", "javascript:1"}) {
            const HttpAnswer answer = sent({.url = QUrl(url)});
            QVERIFY2(answer.error && answer.body.isEmpty(), url);
        }
    }

    void gzipIsUnderstoodAndBounded()
    {
        exchange.setAnswerAt("/packed", {.body = "plain text", .gzip = true});
        exchange.setAnswerAt("/bomb", {.body = QByteArray(40 * 1024 * 1024, ' '), .gzip = true});
        exchange.setAnswerAt(
            "/broken", {.body = "no gzip", .headers = {{"Content-Encoding", "gzip"}}});
        for (const bool mayResend : {false, true})
            QCOMPARE(sent({.url = at("/packed")}, {.mayResend = mayResend}).body, "plain text");
        QVERIFY(sent({.url = at("/bomb")}).error);
        QVERIFY(sent({.url = at("/broken")}).error);
    }

    void manyRequestsTakeTurnsWithOthers()
    {
        HttpClient client({});
        QTimer other;
        int turns = 0;
        connect(&other, &QTimer::timeout, this, [&turns] { ++turns; });
        other.start(0);
        int answered = 0;
        for (int i = 0; i < 1000; ++i)
            client.send({.url = i % 50 ? QUrl("ftp://localhost/") : at("/packed")},
                [&answered](const HttpAnswer &) { ++answered; });
        QTRY_COMPARE(answered, 1000);
        QVERIFY2(turns > 500, qPrintable(QString::number(turns)));
    }

    void sizeAndTimeAreBounded()
    {
        exchange.setAnswerAt("/endless", {.body = "x", .delivery = Answer::Delivery::Endless});
        QVERIFY(sent({.url = at("/endless")}, {.bytes = 100'000}).error);
        // A body that nobody reads is cut off without fault.
        QVERIFY(!sent({.url = at("/endless")}, {.bytes = 100'000, .discardBody = true}).error);

        using namespace std::chrono_literals;
        exchange.setAnswerAt(
            "/drip", {.body = QByteArray(100, 'x'), .delivery = Answer::Delivery::Dripping});
        QElapsedTimer timer;
        timer.start();
        const HttpAnswer late = sent({.url = at("/drip")}, {.inactivity = 5s, .total = 1500ms});
        QVERIFY(late.error);
        QCOMPARE(late.error->code(), int(QNetworkReply::TimeoutError));
        QVERIFY(timer.elapsed() < 4000);
    }

    // A dropped connection would have Qt send again by itself.
    void oneCallIsOneRequestOnTheWire()
    {
        const QString dropped = "/dropped";
        exchange.setAnswerAt(dropped, {.delivery = Answer::Delivery::Dropped});
        exchange.setAnswerAt("/moved", {.status = 302, .headers = {{"Location", "/there"}}});
        exchange.setAnswerAt("/there", {.body = "there"});
        HttpClient client({});
        int answered = 0;
        for (const char *method : {"GET", "POST", "GET", "POST", "GET", "POST"}) {
            for (const QString &path : {dropped, QString("/moved")}) {
                client.send({.url = at(path), .method = method, .headers = {}, .body = "{}"},
                    [&answered](const HttpAnswer &) { ++answered; });
                const int before = answered;
                QTRY_VERIFY(answered > before);
            }
        }
        QCOMPARE(exchange.hits(dropped), 6);
        QCOMPARE(exchange.hits("/moved"), 6);
        QCOMPARE(exchange.hits("/there"), 6);
    }

    void redirectionsStayOnTheWeb()
    {
        const auto moved = [this](const QByteArray &target) {
            exchange.setAnswerAt("/from", {.status = 307, .headers = {{"Location", target}}});
            return sent({.url = at("/from"), .method = "POST", .body = "body"});
        };
        exchange.setAnswerAt("/to", {.body = "arrived"});
        QCOMPARE(moved("/to").body, QByteArray("arrived"));
        QCOMPARE(exchange.requests("/to").first().body, QByteArray("body"));
        QVERIFY(moved("file:///etc/passwd").error);
        QVERIFY(moved(exchange.httpUrl().toEncoded() + "/to").error);
        QVERIFY(moved("/from").error); // for ever
    }

    // A server of another make that speaks HTTP/2 alone.
    void http2()
    {
        const QString program = QStandardPaths::findExecutable("nghttpd");
        if (program.isEmpty())
            QSKIP("nghttpd is not installed");
        QTemporaryDir dir;
        sandbox::Exchange credentials;
        credentials.setStateDir(dir.path());
        QVERIFY(credentials.start());
        sandbox::trust(credentials.ca());
        saved(dir.filePath("req2.do"), "{\"code\": 200}");
        QTcpServer port; // finds a free one
        QVERIFY(port.listen(QHostAddress::LocalHost));
        const QString number = QString::number(port.serverPort());
        port.close();
        QProcess server;
        server.start(program,
            {"-v", "-a", "127.0.0.1", "-d", dir.path(), number, dir.filePath("server.key"),
                dir.filePath("server.pem")});
        QTRY_VERIFY(server.bytesAvailable() > 0 || server.state() == QProcess::NotRunning);

        const QUrl url(QString("https://localhost:%1/req2.do").arg(number));
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

    void aProcessWithoutWindowsRegisters()
    {
        ZNTAdsSDK::registerWithAppId("app", "media", "secret");
        QVERIFY(exchange.waitForRequests("/conf.do", 1));
        QThreadPool::globalInstance()->waitForDone();
    }

    void aClientThatDiesAnswersNobody()
    {
        auto client = std::make_unique<HttpClient>(HttpLimits{});
        bool answered = false;
        client->send({.url = at("/to")}, [&answered](const HttpAnswer &) { answered = true; });
        client.reset();
        QTest::qWait(50);
        QVERIFY(!answered);
    }
};

QTEST_GUILESS_MAIN(TestHttpClient)
#include "tst_httpclient.moc"
