// That tests/support/eventloopchecker.cpp sees who keeps the event loop waiting. What is to fail
// runs in a process of its own.
#include "support/test.h"

#include <ZNTAds/ZNTAdsManager.h>

using namespace znt::test;

class TestEventLoop : public QObject
{
    Q_OBJECT

private slots:
    void libraryAtWork()
    {
        if (!qEnvironmentVariableIsSet("ZNT_TEST_LATE"))
            QSKIP("is to fail");
        const QString much(100'000'000, u'x');
        ZNTAdsManager::sharedInstance()->sha256(much);
        QTest::qWait(1);
    }

    void testAtWork()
    {
        QElapsedTimer timer;
        timer.start();
        while (timer.elapsed() < 600)
            ZNTAdsManager::sharedInstance()->currentExposureRatio();
        QTest::qSleep(600);
        QTest::qWait(1);
    }

    void saysWhereTheLibraryIs()
    {
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
        QSKIP("the checker is off, or generous");
#endif
        QProcess child;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("ZNT_TEST_LATE", "1");
        child.setProcessEnvironment(environment);
        child.start(QCoreApplication::applicationFilePath(), {"libraryAtWork"});
        QVERIFY(child.waitForFinished(60'000));
        const QByteArray text = child.readAllStandardOutput();
        QCOMPARE(child.exitCode(), 1);
        QVERIFY2(text.contains("kept the event loop") && text.contains("sha256"), text.constData());
    }
};

QTEST_MAIN(TestEventLoop)
#include "tst_eventloop.moc"
