#include "diagnostics/log.h"
#include "support/exchangetest.h"
#include "support/loglines.h"

#include <sys/utsname.h>

#include <thread>

using namespace znt::test;
using sandbox::Answer;

const QString path = "/logs.do";

class tst_errorreport : public QObject
{
    Q_OBJECT

private slots:
    // What was reported before there was an application has waited for it.
    void initTestCase()
    {
        failOnWarnings();
        LogLines log;
        QCOMPARE(nextReport().value(u"errorSummary"), "early");
        QStringList lines;
        QTRY_COMPARE(lines += log.take(), QStringList{"INFO Error report sent successfully"});
    }

    void init()
    {
        failOnWarnings();
        QCoreApplication::setOrganizationDomain({});
        QCoreApplication::setApplicationVersion({});
        QGuiApplication::setApplicationDisplayName({});
        m_exchange.forgetRequests();
        logger()->setLogEnabled(false);
    }

    void writesTheResult()
    {
        for (const auto &[status, line] : {std::pair(200, "INFO Error report sent successfully"),
                 {201, "INFO Error report sent successfully"},
                 {300, "ERROR Error report failed with status code: 300"},
                 {404, "ERROR Error report failed with status code: 404"},
                 {0, "ERROR Error sending error report: "}}) { // the connection is dropped
            m_exchange.forgetRequests();
            m_exchange.setAnswerAt(path,
                {.status = status,
                    .delivery = status ? Answer::Delivery::Whole : Answer::Delivery::Dropped});
            LogLines log;
            logger()->logError("an error");

            QStringList lines;
            QTRY_COMPARE_GE((lines += log.take()).size(), 2);
            QCOMPARE(lines.size(), 2);
            QCOMPARE(lines[0], "ERROR an error");
            QVERIFY2(status ? lines[1] == line : lines[1].startsWith(line), qPrintable(lines[1]));
            QCOMPARE(m_exchange.hits(path), 1); // the result is no cause for another report
        }
        m_exchange.setAnswerAt(path, {});
    }

    void tellsWhatIsKnown()
    {
        QCoreApplication::setOrganizationDomain("com.example.shop");
        QCoreApplication::setApplicationVersion("2.5");
        QGuiApplication::setApplicationDisplayName("小店");
        logger()->setupWithAppId("app-7", "media-7");
        QCOMPARE(logger()->appId() + logger()->mediaId(), "app-7media-7");
        const qint64 before = QDateTime::currentMSecsSinceEpoch();
        logger()->reportErrorWithSummary("a \"summary\"", "细节\n2");
        const qint64 after = QDateTime::currentMSecsSinceEpoch();
        QTest::qSleep(5); // the report's time is that of the call
        QVERIFY(m_exchange.waitForRequests(path, 1));

        const sandbox::Request request = m_exchange.requests(path).first();
        QVERIFY(!request.secure);
        QCOMPARE(request.method, "POST");
        QCOMPARE(request.target, path);
        QCOMPARE(request.header("Content-Type"), "application/json");
        QVERIFY(!request.body.contains('\n'));

        QJsonObject report = request.json();
        const qint64 time = report.take(u"exceptionTimeLong").toInteger();
        QVERIFY(before <= time && time <= after);
        utsname name{};
        uname(&name);
        const QSize screen = QGuiApplication::primaryScreen()->size();
        const QJsonObject expected{{"deviceModel", name.machine}, {"deviceBrand", "Apple"},
            {"osVersion", QSysInfo::productVersion()}, {"kernelVersion", name.release},
            {"screenResolution", QString("%1x%2").arg(screen.width()).arg(screen.height())},
            {"languageSetting", QLocale::system().uiLanguages().constFirst()},
            {"timezone", QString::fromUtf8(QTimeZone::systemTimeZoneId())},
            {"networkStatus", "wifi"}, {"appName", "小店"}, {"appPackageName", "com.example.shop"},
            {"appVersion", "2.5"}, {"errorSummary", "a \"summary\""}, {"errorDetails", "细节\n2"}};
        QCOMPARE(report, expected);
    }

    void isSilentWhenAskedTo()
    {
        ZNTLogManager::setErrorReportsEnabled(false);
        logger()->reportErrorWithSummary("summary", "details");
        logger()->logError("unreported");
        ZNTLogManager::setErrorReportsEnabled(true);
        logger()->logError("reported");
        QTRY_COMPARE(m_exchange.hits(path), 1);
        QCOMPARE(nextReport().value(u"errorSummary"), "reported");
    }

    void leavesOutWhatIsMissing()
    {
        logger()->reportErrorWithSummary("", QString());
        const QJsonObject summaryOnly = nextReport();
        QCOMPARE(summaryOnly.value(u"errorSummary"), QJsonValue(""));
        for (const char *key : {"errorDetails", "appName", "appPackageName", "appVersion"})
            QVERIFY2(!summaryOnly.contains(key), key);

        logger()->reportErrorWithSummary(QString(), QString());
        const QJsonObject factsOnly = nextReport();
        QVERIFY(!factsOnly.contains(u"errorSummary"));
        QVERIFY(factsOnly.contains(u"deviceModel"));
    }

    void goesOutFromAnyThread()
    {
        const ZNTError error("ZNTAdsManager", -2, "why");
        std::thread([&] { znt::logError("Failed with %1", error); }).join();
        QCOMPARE(nextReport().value(u"errorSummary"),
            "Failed with Error Domain=ZNTAdsManager Code=-2 \"why\"");
    }

private:
    QJsonObject nextReport()
    {
        if (!m_exchange.waitForRequests(path, 1))
            return {};
        const QJsonObject report = m_exchange.requests(path).first().json();
        m_exchange.forgetRequests();
        return report;
    }

    TrustedExchange m_exchange;
};

int main(int argc, char **argv)
{
    logger()->logError("early");
    const QGuiApplication application(argc, argv);
    tst_errorreport test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_errorreport.moc"
