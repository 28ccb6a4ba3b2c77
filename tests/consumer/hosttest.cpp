// A host's test of its own interstitial ad, with time in its hands.
#include <ZNTAds/ZNTInterstitialAd.h>
#include <ZNTAdsTesting/ZNTTestClock.h>

#include <QElapsedTimer>
#include <QJsonObject>
#include <QQuickItem>
#include <QQuickWindow>
#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;

class HostTest : public QObject
{
    Q_OBJECT

private slots:
    //! [clock]
    void aCountdownIsOverAtOnce()
    {
        ZNTTestClock clock;
        QElapsedTimer real;
        real.start();
        QQuickWindow window;
        window.resize(375, 812);
        window.show();
        ZNTInterstitialAd ad(QStringLiteral("position"));
        ad.setupWithAdData(QJsonObject());
        ad.showFromViewController(window.contentItem());
        QCOMPARE(ad.remainingTime(), 5);
        clock.advance(2999ms);
        QCOMPARE(ad.remainingTime(), 3);
        clock.advance(1ms);
        QCOMPARE(ad.remainingTime(), 2);
        //! [clock]
        QTest::ignoreMessage(QtWarningMsg,
            "ZNTTestClock: time is advancing already; advance() does nothing in a callback");
        QSignalSpy ticks(&ad, &ZNTInterstitialAd::remainingTimeChanged);
        connect(
            &ad, &ZNTInterstitialAd::remainingTimeChanged, this, [&clock] { clock.advance(1s); },
            Qt::SingleShotConnection);
        clock.advance(1h);
        QCOMPARE(ad.remainingTime(), 0);
        QCOMPARE(ticks.size(), 2);
        QCOMPARE(clock.elapsed(), 1h + 3s);
        QVERIFY(real.elapsed() < 60'000);
    }
};

QTEST_MAIN(HostTest)
#include "hosttest.moc"
