#include "sandbox/builtinanswers.h"
#include "sandbox/exchange.h"
#include "support/test.h"

using namespace znt::test;

class TestExchange : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<sandbox::Exchange> exchange;
    std::unique_ptr<QNetworkAccessManager> client;

    static QNetworkReply *done(QNetworkReply *reply)
    {
        if (!reply->isFinished())
            QSignalSpy(reply, &QNetworkReply::finished).wait();
        return reply;
    }
    QNetworkRequest request(const QUrl &url) const
    {
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        tls.setCaCertificates({exchange->ca()});
        QNetworkRequest request(url);
        request.setSslConfiguration(tls);
        return request;
    }
    QNetworkReply *get(const QUrl &url) { return done(client->get(request(url))); }
    QByteArray ask(const QString &position, const QByteArray &secret = "demo-secret")
    {
        QNetworkRequest signedRequest = request(exchange->url("/s/req2.do"));
        const auto sign =
            QCryptographicHash::hash("am" + secret + "17", QCryptographicHash::Sha256);
        for (const auto &[name, value] : {std::pair("appId", QByteArray("a")), {"mediaId", "m"},
                 {"ts", "17"}, {"sign", sign.toHex()}, {"Content-Type", "application/json"}})
            signedRequest.setRawHeader(name, value);
        const QJsonObject body{{"imps", QJsonArray{QJsonObject{{"positionId", position}}}}};
        return done(client->post(signedRequest, QJsonDocument(body).toJson()))->readAll();
    }

private slots:
    void init()
    {
        client = std::make_unique<QNetworkAccessManager>();
        exchange = std::make_unique<sandbox::Exchange>();
        QVERIFY2(exchange->start(), qPrintable(exchange->errorString()));
    }

    void verifiesAgainstItsOwnAuthorityOnly()
    {
        for (const char *host : {"localhost", "127.0.0.1"}) {
            QUrl url = exchange->url("/t/view/1");
            url.setHost(host);
            QCOMPARE(get(url)->error(), QNetworkReply::NoError);
            QNetworkAccessManager stranger;
            QCOMPARE(done(stranger.get(QNetworkRequest(url)))->error(),
                QNetworkReply::SslHandshakeFailedError);
        }
        sandbox::Exchange other;
        QVERIFY(other.start());
        QCOMPARE(get(other.url("/t/view/1"))->error(), QNetworkReply::SslHandshakeFailedError);
        QCOMPARE(exchange->hits("/t/view/1"), 2);
    }

    void keepsWhatIsSoundInItsStateFolder()
    {
        QTemporaryDir dir;
        QString error;
        const auto certificates = [&] { return sandbox::credentials(dir.path(), &error).value(); };
        const auto first = certificates();
        for (const char *key : {"ca.key", "server.key"})
            QCOMPARE(QFile::permissions(dir.filePath(key)) & QFile::Permissions(0x0077), 0);
        QCOMPARE(certificates().server, first.server);

        saved(dir.filePath("server.key"), "not a key");
        const auto second = certificates();
        QCOMPARE(second.ca, first.ca);
        QVERIFY(second.server != first.server);
    }

    void checksSignatures()
    {
        QCOMPARE(json(ask("splash"))[u"code"], 200);
        QCOMPARE(json(ask("splash", "wrong"))[u"code"], 401);
        QVERIFY(exchange->waitForRequests("/s/req2.do", 2));
        const auto requests = exchange->requests("/s/req2.do");
        QVERIFY(*requests[0].signatureOk && !*requests[1].signatureOk);
        QCOMPARE(requests[0].position, "splash");
    }

    void readsRequestsAsTheyComeOverTheWire()
    {
        const QByteArray first = "POST /logs.do?x=%2F HTTP/1.1\r\nhost: a\r\nappId: 1\r\nX-aB: \r\n"
                                 "content-length: 2\r\n\r\n{}";
        const QByteArray chunked = "POST /logs.do HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n"
                                   "1\r\n{\r\n01;x\r\n}\r\n0\r\nTrailer: x\r\n\r\n";
        const auto connectedTo = [&](QTcpSocket &socket) {
            socket.connectToHost(QHostAddress::LocalHost, quint16(exchange->httpUrl().port()));
            return socket.waitForConnected();
        };
        QTcpSocket socket;
        QVERIFY(connectedTo(socket));
        socket.write(first + chunked);
        QVERIFY(exchange->waitForRequests("/logs.do", 2));
        for (const char byte : first + chunked) {
            socket.write(&byte, 1);
            socket.flush();
            QCoreApplication::processEvents();
        }
        QVERIFY(exchange->waitForRequests("/logs.do", 4));
        const auto requests = exchange->requests("/logs.do");
        for (const auto &request : requests)
            QCOMPARE(request.body, "{}");
        for (int i : {0, 2}) {
            QCOMPARE(requests[i].headers,
                (sandbox::Headers{
                    {"host", "a"}, {"appId", "1"}, {"X-aB", ""}, {"content-length", "2"}}));
            QCOMPARE(requests[i].target, "/logs.do?x=%2F");
        }
        QByteArray answers;
        QTRY_COMPARE((answers += socket.readAll()).count("HTTP/1.1 200 OK\r\n"), 4);

        for (const QByteArray malformed : {"nonsense\r\n", "GET / HTTP/1.1\r\nno colon\r\n",
                 "POST / HTTP/1.1\r\nContent-Length: -1\r\n\r\n",
                 "POST / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\nx\r\n"}) {
            QTcpSocket refused;
            QVERIFY(connectedTo(refused));
            refused.write(malformed);
            QTRY_COMPARE(refused.state(), QAbstractSocket::UnconnectedState);
            QVERIFY(refused.readAll().isEmpty());
        }
        QCOMPARE(exchange->hits("/"), 0);
    }

    void answersWhatItDoesNotServe()
    {
        using Error = QNetworkReply::NetworkError;
        const QList<QPair<QUrl, Error>> refused{
            {exchange->url("/s/req2.do"), Error::ContentOperationNotPermittedError},
            {exchange->url("/logs.do"), Error::ContentNotFoundError},
            {QUrl(exchange->httpUrl().toString() + "/conf.do"), Error::ContentNotFoundError},
            {exchange->url("/creatives/none.png"), Error::ContentNotFoundError},
            {exchange->url("/"), Error::ContentNotFoundError}};
        for (const auto &[url, error] : refused)
            QCOMPARE(get(url)->error(), error);
    }

    void breaksAnswersOnTheWire()
    {
        const QByteArray whole = ask("gzip"); // the client decodes it
        QCOMPARE(json(whole)[u"data"][0][u"adId"], "splash-1");
        QVERIFY(ask("dropped").isEmpty());
        const QByteArray half = ask("truncated");
        QVERIFY(!half.isEmpty() && half.size() < whole.size());
    }

    void outlivesClientsThatLeave()
    {
        exchange->setAnswerAt("/t/late", {.delay = std::chrono::milliseconds(100)});
        for (const char *path : {"/t/late", "/creatives/endless.png", "/creatives/video.mp4"}) {
            const std::unique_ptr<QNetworkReply> reply(client->get(request(exchange->url(path))));
            QVERIFY(exchange->waitForRequests(path, 1));
            reply->abort();
        }
        QTest::qWait(150);
        QCOMPARE(get(exchange->url("/t/view/1"))->error(), QNetworkReply::NoError);
    }

    void servesRanges()
    {
        const QUrl url = exchange->url("/creatives/logo-tea.png");
        const QByteArray whole = get(url)->readAll();
        const QByteArray end = QByteArray::number(whole.size());
        const QList<std::tuple<QByteArray, int, QByteArray>> ranges{
            {"bytes=2-5", 206, whole.mid(2, 4)}, {"bytes=-3", 206, whole.right(3)},
            {"bytes=9-", 206, whole.mid(9)}, {"bytes=0-99999999", 206, whole},
            {"lines=1-2", 200, whole}, {"bytes=5-2", 416, {}}, {"bytes=" + end + "-", 416, {}}};
        for (const auto &[range, status, part] : ranges) {
            QNetworkRequest ranged = request(url);
            ranged.setRawHeader("Range", range);
            QNetworkReply *reply = done(client->get(ranged));
            QCOMPARE(reply->attribute(QNetworkRequest::HttpStatusCodeAttribute), status);
            QCOMPARE(reply->readAll(), part);
        }
    }

    void carriesPicturesThatDecode()
    {
        QSet<QString> pictures;
        for (const char *position : {"splash", "interstitial", "feed"}) {
            const QString answer = QJsonDocument(exchange->answer(position)).toJson();
            auto found = QRegularExpression("https://[^\"]*/creatives/[^\"]*").globalMatch(answer);
            while (found.hasNext())
                pictures.insert(found.next().captured());
        }
        QCOMPARE(pictures.size(), 10);
        for (const QString &picture : pictures)
            QVERIFY2(
                !QImage::fromData(get(QUrl(picture))->readAll()).isNull(), qPrintable(picture));
    }

    void servesAFolderAndNothingOutsideIt()
    {
        QTemporaryDir dir;
        QVERIFY(QDir(dir.path()).mkdir("in"));
        saved(dir.filePath("out.json"), "secret");
        saved(dir.filePath("in/own.json"), R"({"at":"${BASE}/x"})");
        saved(dir.filePath("in/splash.jpg"), "mine");
        QFile::link(dir.filePath("out.json"), dir.filePath("in/link.json"));
        exchange->setCreativesDir(dir.filePath("in"));

        QCOMPARE(json(ask("own"))[u"at"], exchange->url("/x").toString());
        QCOMPARE(get(exchange->url("/creatives/splash.jpg"))->readAll(), "mine");
        for (const QString &escape : {QString("../out"), QString("link"), dir.filePath("out")}) {
            QVERIFY(!ask(escape).contains("secret"));
            const QByteArray encoded = QUrl::toPercentEncoding(escape + ".json");
            QCOMPARE(get(exchange->url("/creatives/" + QString(encoded)))->error(),
                QNetworkReply::ContentNotFoundError);
        }
    }

    void runsAsAProgram()
    {
        QTemporaryDir dir;
        QProcess program;
        program.start(ZNTADS_EXCHANGE,
            {"--state-dir", dir.path(), "--log", dir.filePath("log"), "--secret", "demo-secret"});
        QTRY_VERIFY(program.canReadLine());
        const QByteArray first = program.readLine();
        const QString http = json(first)[u"http"].toString();
        QCOMPARE(first,
            QString(R"({"event": "listening", "https": "%1", "http": "%2", "ca": "%3"})"
                    "\n")
                .arg(json(first)[u"https"].toString(), http, dir.filePath("ca.pem"))
                .toUtf8());
        QNetworkRequest report(QUrl(http + "/logs.do"));
        report.setRawHeader("Content-Type", "application/json");
        done(client->post(report, "{\"a\":1}"));
        QTRY_VERIFY(program.canReadLine());
        const QByteArray second = program.readLine();
        const QJsonObject line = json(second);
        QCOMPARE(line[u"path"], "/logs.do");
        QCOMPARE(line[u"body"], "{\"a\":1}");
        QCOMPARE(line[u"count"], 1);
        program.kill();
        program.waitForFinished();
        QCOMPARE(contents(dir.filePath("log")), first + second);
    }

    void refusesToStart()
    {
        const QString taken = QString::number(exchange->httpsUrl().port());
        const std::pair<QString, int> rows[] = {{"--nonsense", 2}, {"extra", 2},
            {"--https-port x", 2}, {"--http-port 70000", 2}, {"--creatives /nowhere", 2},
            {"--log /nowhere/log", 2}, {"--state-dir /dev/null/x", 1},
            {"--https-port " + taken, 1}};
        for (const auto &[arguments, status] : rows) {
            QTemporaryDir dir;
            QProcess program;
            program.start(
                ZNTADS_EXCHANGE, QStringList{"--state-dir", dir.path()} + arguments.split(u' '));
            QVERIFY(program.waitForFinished());
            QVERIFY2(program.exitCode() == status, qPrintable(arguments));
            QVERIFY(program.readAllStandardOutput().isEmpty());
            QCOMPARE(program.readAllStandardError().count('\n'), 1);
        }
    }
};

QTEST_GUILESS_MAIN(TestExchange)
#include "tst_exchange.moc"
