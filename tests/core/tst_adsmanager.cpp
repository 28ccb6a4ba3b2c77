#include "core/userdefaults.h"
#include "support/exchangetest.h"
#include "support/loglines.h"

#include <ZNTAds/ZNTAdsManager.h>
#include <ZNTAds/ZNTAdsSDK.h>

using namespace znt;
using namespace znt::test;

class TestAdsManager : public QObject
{
    Q_OBJECT

private:
    TrustedExchange exchange;
    ZNTAdsManager *manager = nullptr;

    // None when the request succeeds.
    std::optional<ZNTError> failure(const QString &position, int patience = 5000)
    {
        bool isAnswered = false;
        std::optional<ZNTError> failure;
        manager->requestAdWithPositionId(
            position, 0.5, [&](const QJsonObject &) { isAnswered = true; },
            [&](const ZNTError &error) {
                isAnswered = true;
                failure = error;
            });
        if (!QTest::qWaitFor([&] { return isAnswered; }, patience))
            qFatal("the request was never answered");
        return failure;
    }

    sandbox::Request last(const char *path) const { return exchange.requests(path).constLast(); }

    // What holds before the host has registered.
    void unregistered()
    {
        QVERIFY(ZNTAdsSDK::isTestMode() && !manager->isTestMode());
        QCOMPARE(manager->currentExposureRatio(), 70.0);
        QCOMPARE(manager->baseUrl(), "https://kept.example");
        QVERIFY(!manager->interactionCtrlArg()); // what was stored is no record
        QVERIFY(manager->freqCtrlArg());

        exchange.setSecret("");
        QVERIFY(!failure("splash"));
        QVERIFY(*last("/s/req2.do").signatureOk);
        QCOMPARE(last("/s/req2.do").json()[u"test"], 0);
        QCOMPARE(last("/s/req2.do").json()[u"app"][u"appId"], "");
        exchange.setSecret("s3cret");
    }

    void registration()
    {
        exchange.setAnswerAt("/conf.do",
            {.body = R"({"code": 200, "releaseDateTime": "2026", "version": 7, "enableAdLog": "1",
                "ixCtrlArgs": [{"canSkip": "3", "adType": 4294967298, "slopArgs": [{"startHour": 1}],
                "shakeArgs": [{"startHour": 8}, {"endHour": 9}]}, {"canSkip": 9}]})"});
        LogLines log;
        ZNTAdsSDK::registerWithAppId("app", QString(), "s3cret");
        QVERIFY(!ZNTAdsSDK::isInitialized());
        ZNTAdsSDK::registerWithAppId("app", "media", "s3cret");
        QVERIFY(ZNTAdsSDK::isInitialized());
        ZNTAdsSDK::registerWithAppId("other", "other", {});
        QCOMPARE(manager->appId(), "app");
        QVERIFY(manager->isTestMode());
        QVERIFY(!ZNTAdsSDK::setEndpoints(exchange.httpsUrl(), exchange.httpUrl()));
        ZNTLogManager::sharedInstance()->setLogEnabled(false);

        QVERIFY(exchange.waitForRequests("/conf.do", 1));
        const sandbox::Request sent = exchange.requests("/conf.do").constFirst();
        QCOMPARE(sent.body, QByteArray(R"({"releaseDateTime":"","version":""})"));
        QTRY_VERIFY(manager->interactionCtrlArg());
        const ZNTInteractionCtrlArg arg = *manager->interactionCtrlArg();
        QCOMPARE(arg.canSkip(), 3);
        QCOMPARE(arg.adType(), 2); // the low 32 bits
        QCOMPARE(arg.shakeArgs(), QList{ZNTShakeSlopArg::initWithDictionary({{"startHour", 8}})});
        QVERIFY(arg.slopArgs().isEmpty());

        const auto stored = [](const char *key) { return userdefaults::read(key); };
        QTRY_COMPARE(stored("ZNTAds_ReleaseDateTime"), QJsonValue("2026"));
        QVERIFY(stored("ZNTAds_EnableAdLog").toVariant().toBool());
        QVERIFY(!ZNTLogManager::sharedInstance()->isEnabled()); // stored, and switches nothing

        exchange.setAnswerAt("/conf.do", {.body = R"({"enableAdLog": 2, "ixCtrlArgs": {}})"});
        manager->initializeWithAppId("app", "media", "s3cret");
        QTRY_VERIFY(stored("ZNTAds_ReleaseDateTime").isUndefined());
        QVERIFY(!stored("ZNTAds_EnableAdLog").toVariant().toBool());
        QVERIFY(stored("ZNTAds_InteractionCtrlArg").isObject());
        QCOMPARE(manager->interactionCtrlArg(), arg);
        manager->updateInteractionCtrlArg(ZNTInteractionCtrlArg());
        manager->loadInteractionCtrlArgFromLocal(); // what is still on its way to the disk
        QCOMPARE(manager->interactionCtrlArg(), ZNTInteractionCtrlArg());

        const QString lines = log.take().join(u'\n');
        QVERIFY(lines.contains("WARNING ZNTAdsSDK has already been initialized!"));
        QVERIFY(lines.contains(
            "ERROR ZNTAdsSDK initialization failed: appId and mediaId cannot be empty!"));
        QVERIFY(!lines.contains("s3cret"));
    }

private slots:
    void initTestCase()
    {
        QCoreApplication::setOrganizationDomain("tests.example");
        QCoreApplication::setApplicationVersion("3.2.1");
        QSettings stored;
        stored.clear();
        stored.setValue("ZNTAds_BaseUrl", "https://kept.example");
        stored.setValue("ZNTAds_InteractionCtrlArg", "text");
        manager = ZNTAdsManager::sharedInstance();
        failOnWarnings();
        unregistered();
        registration();
    }

    void init()
    {
        failOnWarnings();
        exchange.forgetRequests();
    }

    void onTheWire()
    {
        QVERIFY(!failure("splash"));
        const sandbox::Request sent = last("/s/req2.do");
        QCOMPARE(sent.method, QByteArray("POST"));
        QVERIFY(*sent.signatureOk);
        QByteArrayList names;
        for (const auto &[name, value] : sent.headers)
            names.append(name.toLower()); // as Qt 6.8 sends them
        for (const char *name :
            {"accept-encoding", "content-type", "appid", "mediaid", "ts", "sign"})
            QCOMPARE(names.count(name), 1);
        QCOMPARE(sent.header("Accept-Encoding"), QByteArray("gzip"));
        QCOMPARE(sent.header("Content-Type"), QByteArray("application/json; charset=UTF-8"));

        const QJsonObject body = sent.json();
        QCOMPARE(body.keys(), QStringList({"apiVersion", "app", "device", "id", "imps", "test"}));
        QCOMPARE(body[u"app"].toObject().size(), 5);
        QCOMPARE(body[u"app"][u"version"], "3.2.1");
        QCOMPARE(body[u"device"].toObject().size(), 9);
        QCOMPARE(body[u"device"][u"os"], "2");
        QVERIFY(body[u"device"][u"screenWidth"].toInt() > 0);
        QCOMPARE(body[u"imps"].toArray(),
            QJsonArray({QJsonObject{{"positionId", "splash"}, {"bidPrice", 0.5}}}));
        QCOMPARE(body[u"test"], 1);
        static const QRegularExpression uuid("^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$");
        for (const QString &id : {body[u"id"].toString(), body[u"device"][u"idfa"].toString(),
                 body[u"device"][u"idfv"].toString()})
            QVERIFY2(uuid.match(id).hasMatch(), qPrintable(id));
        // printf ams1700000000 | sha256sum
        QCOMPARE(manager->sha256("ams1700000000"),
            "d0c8b0269cebc5943865fa3a6c6e704b6943b9905aac28a2b914f37f3db4602a");
    }

    void answersOfEveryShape()
    {
        const auto errorOf = [this](const QByteArray &body) {
            exchange.setAnswer("shape", body);
            return failure("shape").value_or(ZNTError());
        };
        for (const char *success : {R"({"code": 200})", R"({"code": "200 ok"})"})
            QCOMPARE(errorOf(success), ZNTError());
        const auto own = [](const char *description) {
            return ZNTError("ZNTAdsManager", 500, description);
        };
        for (const char *refused : {R"({"code": true})", R"({"code": 404, "message": "x"})"})
            QCOMPARE(errorOf(refused), own("Invalid ad data"));
        for (const char *other : {"[1]", "200", "null"})
            QCOMPARE(errorOf(other), own("Invalid response format"));
        for (const QByteArray &broken : {QByteArray("<html>"), QByteArray(), QByteArray("{},{}"),
                 QByteArray("{\"code\": \"\xff\xfe\"}"),
                 QByteArray(10'000, '[') + QByteArray(10'000, ']')})
            QCOMPARE(errorOf(broken).domain(), "QJsonParseError");
    }

    void faultsOfTheWire()
    {
        for (const char *position :
            {"dropped", "dropped-in-head", "dropped-after-head", "truncated", "not-http",
                "redirect-downgrade", "redirect-file", "redirect-loop", "gzip-bomb", "gzip-broken",
                "gzip-truncated", "gzip-wrong-checksum", "gzip-wrong-length", "gigantic"}) {
            exchange.forgetRequests();
            const std::optional<ZNTError> error = failure(position);
            QVERIFY2(error && error->domain() == "QNetworkReply", position);
            const bool isFollowed = qstrcmp(position, "redirect-loop") == 0;
            QVERIFY2(exchange.requests("/s/req2.do").size() == (isFollowed ? 11 : 1), position);
            QVERIFY2(!failure("splash"), position); // the next one is served
        }
        QVERIFY(!failure("gzip"));
        QVERIFY(!failure("wrong-types"));

        // The status is not looked at.
        sandbox::Answer unhappy = sandbox::jsonAnswer({{"code", 200}});
        unhappy.status = 500;
        exchange.setAnswer("unhappy", unhappy);
        QVERIFY(!failure("unhappy"));

        exchange.setSecret("another");
        QCOMPARE(failure("splash")->domain(), "ZNTAdsManager");
        exchange.setSecret("s3cret");
    }

    void aSilentExchangeIsGivenFifteenSeconds_data()
    {
        QTest::addColumn<QString>("position");
        for (const char *position :
            {"slow", "dripping", "silent-after-head", "endless-head", "endless-100"})
            QTest::newRow(position) << position;
    }
    void aSilentExchangeIsGivenFifteenSeconds()
    {
        QFETCH(const QString, position);
        ZNTTestClock clock;
        std::optional<ZNTError> error;
        manager->requestAdWithPositionId(
            position, 0, {}, [&error](const ZNTError &failure) { error = failure; });
        QVERIFY(exchange.waitForRequests("/s/req2.do", 1));
        clock.advance(14'999ms);
        QTest::qWait(20); // an answer would come from another thread
        QVERIFY(!error);
        clock.advance(1ms);
        QTRY_VERIFY(error);
        QCOMPARE(error->code(), QNetworkReply::TimeoutError);
    }

    void fromAnotherThread()
    {
        std::atomic<QThread *> answeredOn{nullptr};
        QThreadPool::globalInstance()->start([this, &answeredOn] {
            manager->requestAdWithPositionId("splash", 0,
                [&answeredOn](const QJsonObject &) { answeredOn = QThread::currentThread(); }, {});
        });
        QTRY_COMPARE(answeredOn.load(), qApp->thread());
    }

    void feedback()
    {
        std::optional<bool> accepted;
        const auto send = [&](const QJsonValue &ext) {
            accepted.reset();
            manager->sendNegativeFeedbackWithType(
                1, "ad-1", ext, [&accepted](bool success, const auto &) { accepted = success; });
            return QTest::qWaitFor([&accepted] { return accepted.has_value(); });
        };
        QVERIFY(send(QJsonValue::Undefined));
        QVERIFY(*accepted);
        QCOMPARE(last("/s/negfb.do").json().keys(),
            QStringList({"apiVersion", "app", "bizId", "device", "id", "negTye"}));
        QVERIFY(send(QJsonObject{{"why", 1}}));
        QCOMPARE(last("/s/negfb.do").json()[u"ext"][u"why"], 1);
        exchange.setSecret("another");
        QVERIFY(send({}));
        QVERIFY(!*accepted);
        exchange.setSecret("s3cret");
    }

    // As long as another process has the settings, what is on its way there is known.
    void settingsThatOthersHoldHoldUpNothing()
    {
        const QString path = QSettings().fileName();
        QLockFile held(path + ".lock");
        const QByteArray before = contents(path);
        QVERIFY(held.tryLock(5000));
        QElapsedTimer timer;
        timer.start();
        manager->updateInteractionCtrlArg(
            ZNTInteractionCtrlArg::initWithDictionary(QJsonObject{{"adType", 77}}).value());
        QTest::qWait(20); // the writer waits for the lock by now
        manager->setInteractionCtrlArg({});
        manager->loadInteractionCtrlArgFromLocal();
        manager->loadFreqCtrlArgFromLocal();
        QVERIFY(!QSettings().contains("of the host")); // which reads its own, too
        QVERIFY2(timer.elapsed() < 1000, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(manager->interactionCtrlArg()->adType(), 77);
        held.unlock();
        QTRY_VERIFY_WITH_TIMEOUT(contents(path) != before, 15'000);
    }

    // Nothing is sent, and the failure comes before the call returns.
    void whatCannotBeWrittenDown()
    {
        int failures = 0;
        const auto count = [&failures](const auto &...) { ++failures; };
        for (const double price : {qQNaN(), qInf(), -qInf()})
            manager->requestAdWithPositionId("splash", price, {}, count);
        manager->sendNegativeFeedbackWithType(
            1, "ad", QJsonArray{QJsonObject{{"x", qInf()}}}, count);
        manager->sendRequestWithURL(exchange.at("/x"), "POST", {}, {{"a", "b\r\nc: d"}}, count);
        for (const char *name : {"a\n", "a b", "a:", ""})
            manager->sendRequestWithURL(exchange.at("/x"), "GET", {}, {{name, "b"}}, count);
        for (const char *method : {"", "GE T", "GET / HTTP/1.1\r\nx: y"})
            manager->sendRequestWithURL(exchange.at("/x"), method, {}, {}, count);
        manager->setAppId("app\n");
        manager->requestAdWithPositionId("splash", 0, {}, count);
        manager->setAppId("app");
        QCOMPARE(failures, 13);

        // Params go out with a POST alone.
        bool answered = false;
        manager->sendRequestWithURL(exchange.at("/x"), "GET", QJsonObject{{"x", qInf()}}, {},
            [&answered](const auto &...) { answered = true; });
        QVERIFY(!answered);
        QTRY_VERIFY(answered);
        QCOMPARE(exchange.hits("/x"), 1);
        QCOMPARE(exchange.hits("/s/req2.do") + exchange.hits("/s/negfb.do"), 0);
    }

    void exposureRatio()
    {
        for (const auto &[given, expected] :
            {std::pair(150.0, 100.0), {-5.0, 0.0}, {qQNaN(), 0.0}, {33.3, 33.3}}) {
            manager->setExposureRatio(given);
            QCOMPARE(manager->currentExposureRatio(), expected);
        }
    }
};

QTEST_MAIN(TestAdsManager)
#include "tst_adsmanager.moc"
