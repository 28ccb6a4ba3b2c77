#include "core/userdefaults.h"
#include "support/exchangetest.h"
#include "support/loglines.h"

#include <ZNTAds/ZNTAdsManager.h>
#include <ZNTAds/ZNTAdsSDK.h>

#include <QSettings>

using namespace znt;

class TestAdsManager : public QObject
{
    Q_OBJECT

private:
    test::TrustedExchange exchange;
    ZNTAdsManager *manager = nullptr;

    struct Outcome
    {
        std::optional<QJsonObject> response;
        std::optional<ZNTError> error;
        QThread *thread = nullptr;
    };

    Outcome request(const char *position, int patience = 5000)
    {
        Outcome outcome;
        manager->requestAdWithPositionId(
            QString::fromLatin1(position), 0.5,
            [&outcome](const QJsonObject &response) {
                outcome.response = response;
                outcome.thread = QThread::currentThread();
            },
            [&outcome](const ZNTError &error) { outcome.error = error; });
        if (!QTest::qWaitFor([&] { return outcome.response || outcome.error; }, patience))
            qFatal("the request was never answered");
        return outcome;
    }

    QString failedDomain(const char *position)
    {
        return request(position, 20'000).error.value_or(ZNTError()).domain();
    }

    sandbox::Request lastAdRequest() const
    {
        return exchange.requests(QStringLiteral("/s/req2.do")).constLast();
    }

private slots:
    void initTestCase()
    {
        QCoreApplication::setOrganizationName(QStringLiteral("ZNTAds tests"));
        QCoreApplication::setOrganizationDomain(QStringLiteral("tests.example"));
        QCoreApplication::setApplicationVersion(QStringLiteral("3.2.1"));
        QSettings stored;
        stored.clear();
        stored.setValue(QStringLiteral("ZNTAds_BaseUrl"), QStringLiteral("https://kept.example"));
        stored.setValue(QStringLiteral("ZNTAds_InteractionCtrlArg"), QStringLiteral("text"));
        manager = ZNTAdsManager::sharedInstance();
    }

    void init()
    {
        test::failOnWarnings();
        exchange.forgetRequests();
    }

    // Runs first: what holds before the host has registered.
    void unregistered()
    {
        QVERIFY(ZNTAdsSDK::isTestMode());
        QVERIFY(!manager->isTestMode());
        QCOMPARE(manager->currentExposureRatio(), 70.0);
        QCOMPARE(manager->baseUrl(), QStringLiteral("https://kept.example"));
        QVERIFY(!manager->interactionCtrlArg()); // what was stored is no record
        QVERIFY(manager->freqCtrlArg());

        exchange.setSecret(QLatin1String(""));
        QVERIFY(request("splash").response);
        QVERIFY(*lastAdRequest().signatureOk);
        QCOMPARE(lastAdRequest().json()[u"test"], 0);
        QCOMPARE(lastAdRequest().json()[u"app"][u"appId"], QLatin1String(""));
        exchange.setSecret(QStringLiteral("s3cret"));
    }

    void registration()
    {
        exchange.setAnswerAt(QStringLiteral("/conf.do"),
            {.body = R"({"code": 200, "releaseDateTime": "2026", "version": 7, "enableAdLog": "1",
                "ixCtrlArgs": [{"canSkip": "3", "adType": 4294967298, "slopArgs": [{"startHour": 1}],
                "shakeArgs": [{"startHour": 8}, {"endHour": 9}]}, {"canSkip": 9}]})"});
        test::LogLines log;
        ZNTAdsSDK::registerWithAppId(QStringLiteral("app"), QString(), QStringLiteral("s3cret"));
        QVERIFY(!ZNTAdsSDK::isInitialized());
        ZNTAdsSDK::registerWithAppId(
            QStringLiteral("app"), QStringLiteral("media"), QStringLiteral("s3cret"));
        QVERIFY(ZNTAdsSDK::isInitialized());
        ZNTAdsSDK::registerWithAppId(QStringLiteral("other"), QStringLiteral("other"), {});
        QCOMPARE(manager->appId(), QStringLiteral("app"));
        QVERIFY(manager->isTestMode());
        QVERIFY(!ZNTAdsSDK::setEndpoints(exchange.httpsUrl(), exchange.httpUrl()));

        QVERIFY(exchange.waitForRequests(QStringLiteral("/conf.do"), 1));
        const sandbox::Request sent = exchange.requests(QStringLiteral("/conf.do")).constFirst();
        QCOMPARE(sent.body, QByteArray(R"({"releaseDateTime":"","version":""})"));
        QTRY_VERIFY(manager->interactionCtrlArg());
        const ZNTInteractionCtrlArg arg = *manager->interactionCtrlArg();
        QCOMPARE(arg.canSkip(), 3);
        QCOMPARE(arg.adType(), 2); // the low 32 bits
        QCOMPARE(arg.shakeArgs().size(), 1);
        QCOMPARE(arg.shakeArgs().constFirst().startHour(), 8);
        QCOMPARE(arg.shakeArgs().constFirst().endHour(), 0);
        QVERIFY(arg.slopArgs().isEmpty());

        const auto stored = [](const char *key) {
            userdefaults::waitForStored();
            return userdefaults::read(QString::fromLatin1(key));
        };
        QTRY_COMPARE(stored("ZNTAds_ReleaseDateTime"), QJsonValue(QStringLiteral("2026")));
        QCOMPARE(stored("ZNTAds_EnableAdLog").toVariant().toBool(), true);
        QVERIFY(stored("ZNTAds_InteractionCtrlArg").isObject());

        const QString lines = log.take().join(u'\n');
        QVERIFY(lines.contains(QLatin1String("WARNING ZNTAdsSDK has already been initialized!")));
        QVERIFY(lines.contains(QLatin1String("ERROR ZNTAdsSDK initialization failed: appId and "
                                             "mediaId cannot be empty!")));
        QVERIFY(!lines.contains(QLatin1String("s3cret")));
    }

    void onTheWire()
    {
        const Outcome outcome = request("splash");
        QVERIFY(outcome.response);
        QCOMPARE(outcome.thread, qApp->thread());
        const sandbox::Request sent = lastAdRequest();
        QCOMPARE(sent.method, QByteArray("POST"));
        QVERIFY(*sent.signatureOk);
        QByteArrayList names;
        for (const auto &[name, value] : sent.headers)
            names.append(name);
        for (const char *name :
            {"Accept-Encoding", "Content-Type", "appId", "mediaId", "ts", "sign"})
            QCOMPARE(names.count(name), 1);
        QCOMPARE(sent.header("Accept-Encoding"), QByteArray("gzip"));
        QCOMPARE(sent.header("Content-Type"), QByteArray("application/json; charset=UTF-8"));

        const QJsonObject body = sent.json();
        QCOMPARE(body.keys(), QStringList({"apiVersion", "app", "device", "id", "imps", "test"}));
        QCOMPARE(body[u"app"].toObject().size(), 5);
        QCOMPARE(body[u"app"][u"version"], QLatin1String("3.2.1"));
        QCOMPARE(body[u"device"].toObject().size(), 9);
        QCOMPARE(body[u"device"][u"os"], QLatin1String("2"));
        QVERIFY(body[u"device"][u"screenWidth"].toInt() > 0);
        QCOMPARE(body[u"imps"].toArray(),
            QJsonArray({QJsonObject{{"positionId", "splash"}, {"bidPrice", 0.5}}}));
        QCOMPARE(body[u"test"], 1);
        static const QRegularExpression uuid(
            QStringLiteral("^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"));
        for (const QString &id : {body[u"id"].toString(), body[u"device"][u"idfa"].toString(),
                 body[u"device"][u"idfv"].toString()})
            QVERIFY2(uuid.match(id).hasMatch(), qPrintable(id));
        // printf ams1700000000 | sha256sum
        QCOMPARE(manager->sha256(QStringLiteral("ams1700000000")),
            QLatin1String("d0c8b0269cebc5943865fa3a6c6e704b6943b9905aac28a2b914f37f3db4602a"));
    }

    void answersOfEveryShape()
    {
        const auto errorOf = [this](const QByteArray &body) {
            exchange.setAnswer(QStringLiteral("shape"), body);
            return request("shape").error.value_or(ZNTError());
        };
        for (const char *success : {R"({"code": 200})", R"({"code": "200 ok"})"})
            QCOMPARE(errorOf(success), ZNTError());
        const auto own = [](const char *description) {
            return ZNTError(QStringLiteral("ZNTAdsManager"), 500, QLatin1String(description));
        };
        for (const char *refused : {R"({"code": true})", R"({"code": 404, "message": "x"})"})
            QCOMPARE(errorOf(refused), own("Invalid ad data"));
        for (const char *other : {"[1]", "200", "null"})
            QCOMPARE(errorOf(other), own("Invalid response format"));
        for (const QByteArray &broken : {QByteArray("<html>"), QByteArray(), QByteArray("{},{}"),
                 QByteArray("{\"code\": \"\xff\xfe\"}"),
                 QByteArray(10'000, '[') + QByteArray(10'000, ']')})
            QCOMPARE(errorOf(broken).domain(), QStringLiteral("QJsonParseError"));
    }

    void faultsOfTheWire()
    {
        QCOMPARE(failedDomain("dropped"), QLatin1String("QNetworkReply"));
        QCOMPARE(exchange.requests(QStringLiteral("/s/req2.do")).size(), 1);
        QCOMPARE(failedDomain("truncated"), QLatin1String("QNetworkReply"));
        QVERIFY(request("gzip").response);
        QVERIFY(request("wrong-types").response);

        // The status is not looked at.
        sandbox::Answer unhappy = sandbox::jsonAnswer({{"code", 200}});
        unhappy.status = 500;
        exchange.setAnswer(QStringLiteral("unhappy"), unhappy);
        QVERIFY(request("unhappy").response);

        exchange.setSecret(QStringLiteral("another"));
        QCOMPARE(failedDomain("splash"), QLatin1String("ZNTAdsManager"));
        exchange.setSecret(QStringLiteral("s3cret"));
    }

    void aSilentExchangeIsGivenFifteenSeconds()
    {
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(failedDomain("slow"), QLatin1String("QNetworkReply"));
        QVERIFY(timer.elapsed() > 14'000 && timer.elapsed() < 17'000);
    }

    void fromAnotherThread()
    {
        std::atomic<QThread *> answeredOn{nullptr};
        QThreadPool::globalInstance()->start([this, &answeredOn] {
            manager->requestAdWithPositionId(QStringLiteral("splash"), 0,
                [&answeredOn](const QJsonObject &) { answeredOn = QThread::currentThread(); }, {});
        });
        QTRY_COMPARE(answeredOn.load(), qApp->thread());
    }

    void feedback()
    {
        std::optional<bool> accepted;
        const auto send = [&](const QJsonValue &ext) {
            accepted.reset();
            manager->sendNegativeFeedbackWithType(1, QStringLiteral("ad-1"), ext,
                [&accepted](bool success, const auto &) { accepted = success; });
            return QTest::qWaitFor([&accepted] { return accepted.has_value(); });
        };
        const auto lastBody = [this] {
            return exchange.requests(QStringLiteral("/s/negfb.do")).constLast().json();
        };
        QVERIFY(send(QJsonValue::Undefined));
        QVERIFY(*accepted);
        QCOMPARE(lastBody().keys(),
            QStringList({"apiVersion", "app", "bizId", "device", "id", "negTye"}));
        QVERIFY(send(QJsonObject{{"why", 1}}));
        QCOMPARE(lastBody()[u"ext"][u"why"], 1);
        exchange.setSecret(QStringLiteral("another"));
        QVERIFY(send({}));
        QVERIFY(!*accepted);
        exchange.setSecret(QStringLiteral("s3cret"));
    }

    void exposureRatio()
    {
        const QList<QPair<double, double>> kept{
            {150.0, 100.0}, {-5.0, 0.0}, {qQNaN(), 0.0}, {33.3, 33.3}};
        for (const auto &[given, expected] : kept) {
            manager->setExposureRatio(given);
            QCOMPARE(manager->currentExposureRatio(), expected);
        }
    }
};

QTEST_MAIN(TestAdsManager)
#include "tst_adsmanager.moc"
