#include "net/httpclient.h"

#include "support/exchangetest.h"

#include <ZNTAds/ZNTAdsSDK.h>

using namespace znt;
using namespace znt::test;
using sandbox::Answer;

namespace {

// A plain server of which each request's bytes go to `answer`.
class RawServer : public QTcpServer
{
public:
    using Answer = std::function<void(QTcpSocket *, const QByteArray &request)>;

    explicit RawServer(Answer answer)
    {
        if (!listen(QHostAddress::LocalHost))
            qFatal("%s", qPrintable(errorString()));
        connect(this, &QTcpServer::newConnection, this, [this, answer = std::move(answer)] {
            QTcpSocket *socket = nextPendingConnection();
            ++connections;
            connect(socket, &QTcpSocket::readyRead, this, [this, answer, socket] {
                requests.append(socket->readAll());
                answer(socket, requests.constLast());
            });
        });
    }
    QString at(const QString &path) const
    {
        return QString("http://127.0.0.1:%1").arg(serverPort()) + path;
    }

    QByteArrayList requests;
    int connections = 0;
};

void answerOk(QTcpSocket *socket, const QByteArray &)
{
    socket->write("HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok");
}

// Sends the beginning, then the piece again and again for as long as the other end takes it.
RawServer::Answer flood(const QByteArray &beginning, const QByteArray &piece, int *flooding)
{
    return [beginning, piece, flooding](QTcpSocket *socket, const QByteArray &) {
        ++*flooding;
        socket->write(beginning);
        QObject::connect(socket, &QTcpSocket::disconnected, socket, [flooding] { --*flooding; });
        auto *timer = new QTimer(socket);
        QObject::connect(timer, &QTimer::timeout, socket, [socket, many = piece.repeated(50'000)] {
            if (socket->bytesToWrite() < many.size())
                socket->write(many);
        });
        timer->start(1);
    };
}

} // namespace

class TestHttpClient : public QObject
{
    Q_OBJECT

private:
    TrustedExchange exchange;

    QString at(const QString &path) const { return exchange.at(path); }

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
        QVERIFY(sent({.url = "http://127.0.0.1:1/"}).error);
    }

    void nothingButHttpIsAskedFor()
    {
        for (const char *url :
            {"file:///etc/passwd", "data:text/plain,hello", "qrc:/qt-project.org/imports",
                "ftp://localhost/", "", "no url", "http://", "https:///path", "javascript:1"}) {
            const HttpAnswer answer = sent({.url = url});
            QVERIFY2(answer.error && answer.body.isEmpty(), url);
        }
        QVERIFY(sent({.url = at('/' + QString(70'000, 'x'))}).error);
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

        const auto arrived = [this](const QByteArray &body) {
            exchange.setAnswerAt(
                "/members", {.body = body, .headers = {{"Content-Encoding", "gzip"}}});
            return sent({.url = at("/members")});
        };
        const QByteArray member = sandbox::gzipped("one ");
        QCOMPARE(arrived(member + member + QByteArray(8, '\0')).body, "one one ");
        QVERIFY(arrived(member + member.chopped(2)).error);
        QVERIFY(!arrived("").error);
        QVERIFY(!sent({.url = at("/packed"), .method = "HEAD"}).error);
    }

    void aUrlGoesOutAsItCame()
    {
        RawServer server(answerOk);
        const std::pair<QString, QByteArray> targets[] = {
            {"/a?discount=50%&u=https%3A%2F%2Fx&b=%zz%2&c=%",
                "/a?discount=50%25&u=https%3A%2F%2Fx&b=%25zz%252&c=%25"},
            {"/a//b?%0D%0A%00%FF+&=;:@!$'()*,/?[]", "/a//b?%0D%0A%00%FF+&=;:@!$'()*,/?[]"},
            {"?x", "/?x"},
            {"/a b\r\n?\u4e2d", "/a%20b%0D%0A?%E4%B8%AD"},
            // What QUrl does not carry.
            {"/%7e%41%2f/b/.././c?{|}#f", "/~A%2F/c?%7B%7C%7D"},
        };
        for (const auto &[target, expected] : targets) {
            QCOMPARE(sent({.url = server.at(target)}).body, "ok");
            QCOMPARE(server.requests.constLast().split(' ').at(1), expected);
        }
    }

    // What a server sends endlessly before an answer's end holds Qt's thread.
    void aFloodHoldsUpNothingElse()
    {
        using namespace std::chrono_literals;
        int flooding = 0;
        RawServer headers(flood("HTTP/1.1 200 OK\r\n", "X: 1\r\n", &flooding));
        RawServer continues(flood("", "HTTP/1.1 100 Continue\r\n\r\n", &flooding));
        RawServer healthy(answerOk);
        auto client = std::make_unique<HttpClient>(HttpLimits{.total = 1500ms});
        QList<int> codes;
        const auto keepCode = [&codes](const HttpAnswer &answer) {
            codes.append(answer.error ? answer.error->code() : 0);
        };
        for (const RawServer *server : {&headers, &continues})
            client->send({.url = server->at("/")}, keepCode);
        QTRY_COMPARE(flooding, 2);
        client->send({.url = healthy.at("/")}, keepCode);
        QTRY_COMPARE(codes, QList<int>{0});
        const int timedOut = QNetworkReply::TimeoutError;
        QTRY_COMPARE(codes, QList<int>({0, timedOut, timedOut}));

        client->send({.url = headers.at("/")}, keepCode);
        QTRY_COMPARE(flooding, 3);
        QElapsedTimer timer;
        timer.start();
        client.reset();
        QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
        QTRY_COMPARE_WITH_TIMEOUT(flooding, 0, 15'000);
    }

    void onlyRequestsToOneOriginWaitForEachOther()
    {
        RawServer silent([](QTcpSocket *, const QByteArray &) {});
        RawServer healthy(answerOk);
        HttpClient client({});
        QList<int> answered;
        for (int i = 0; i < 50; ++i)
            client.send({.url = silent.at("/")}, {});
        for (int i = 0; i < 20; ++i)
            client.send(
                {.url = healthy.at("/")}, [&answered, i](const HttpAnswer &) { answered += i; });
        QTRY_COMPARE(answered.size(), 20);
        QVERIFY(answered.indexOf(0) < answered.indexOf(19)); // nearly as they were sent
        QCOMPARE(silent.connections, 6);
        QVERIFY(healthy.connections <= 6);
    }

    // A server may stop listening on a connection that it has answered on.
    void aConnectionThatWasLeftCostsNothing()
    {
        for (const QByteArray &status : {QByteArray("200 OK"), QByteArray("101 Switching")}) {
            RawServer server([&](QTcpSocket *socket, const QByteArray &request) {
                if (!request.startsWith("GET /held") && !socket->property("left").toBool())
                    socket->write("HTTP/1.1 " + status + "\r\nContent-Length: 0\r\n\r\n");
                socket->setProperty("left", true);
            });
            using namespace std::chrono_literals;
            HttpClient client({.total = 3s, .onFreshConnection = true});
            client.send({.url = server.at("/held")}, {});
            for (int i = 0; i < 3; ++i) {
                std::optional<HttpAnswer> result;
                client.send({.url = server.at("/")},
                    [&result](const HttpAnswer &answer) { result = answer; });
                QTRY_VERIFY(result);
                QVERIFY(!result->error);
            }
        }
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
            client.send({.url = i % 50 ? QString("ftp://localhost/") : at("/packed")},
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

    void headersAndBodyStayWithTheirOrigin()
    {
        RawServer elsewhere(answerOk);
        const auto moved = [&](const QByteArray &status, const QByteArray &body) {
            RawServer here([&](QTcpSocket *socket, const QByteArray &) {
                socket->write("HTTP/1.1 " + status + " Moved\r\nContent-Length: 0\r\nLocation: "
                    + elsewhere.at("/").toLatin1() + "\r\n\r\n");
            });
            return sent({.url = here.at("/"),
                .method = "POST",
                .headers = {{"sign", "secret"}},
                .body = body});
        };
        QVERIFY(moved("307", "body").error);
        QVERIFY(elsewhere.requests.isEmpty());
        QCOMPARE(moved("302", "body").body, "ok");
        QCOMPARE(moved("307", "").body, "ok");
        for (const QByteArray &request : std::as_const(elsewhere.requests))
            QVERIFY2(!request.contains("secret"), request.constData());
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

        const QString url = QString("https://localhost:%1/req2.do").arg(number);
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
