#include "splash/creatives.h"

using namespace znt::test;

class TestSplashVideo : public QObject
{
    Q_OBJECT

private:
    TrustedExchange exchange;

    QString creative(const QString &name) const { return exchange.at("/creatives/" + name); }
    void showVideo(Scene &scene)
    {
        scene.view->setupWithVideoUrl(creative("video.mp4"), {});
        QVERIFY(scene.view->isHidden());
        QTRY_VERIFY_WITH_TIMEOUT(!scene.view->isHidden(), 20'000);
    }

private slots:
    void init()
    {
        // Qt Multimedia warns when a player goes while its surface is still being started.
        if (qstrcmp(QTest::currentTestFunction(), "mayDieWhileItPlays") == 0)
            return;
        // Qt's own, where there is neither sound nor a graphics card.
        QTest::failOnWarning(QRegularExpression("^(?!PulseAudioService:|QRhi\\* initializeRHI)"));
    }

    // The first video of a user's account, as nothing is cached yet.
    void keepsTheMainThreadFreeAtFirst()
    {
        const QTemporaryDir cache;
        qputenv("XDG_CACHE_HOME", cache.path().toLocal8Bit());
        Scene scene(Image);
        QElapsedTimer sinceTick;
        sinceTick.start();
        qint64 longest = 0; // milliseconds
        QTimer ticks;
        connect(
            &ticks, &QTimer::timeout, this, [&] { longest = qMax(longest, sinceTick.restart()); });
        ticks.start(0);
        showVideo(scene);
        QVERIFY2(longest < 150, qPrintable(QString::number(longest)));
    }

    void fillsTheViewInAnEndlessLoop()
    {
        Scene scene(Slide);
        showVideo(scene);
        QVERIFY(scene.view->isVideoAd());
        for (const char *name : {"adImageView", "mainAdImageView", "adLabel", "logoImageView"})
            QVERIFY2(scene.get(name, "hidden").toBool(), name);
        QVERIFY(!scene.get("skipButton", "hidden").toBool());
        const QRgb bare = scene.window.color().rgb();
        for (const QPoint corner : {QPoint(2, 2), QPoint(372, 809)})
            QTRY_VERIFY(scene.window.grabWindow().pixel(corner) != bare);

        // It has sixty frames, each three seconds.
        auto *content = scene.view->childItems().first()->property("content").value<QObject *>();
        QSignalSpy frames(content, SIGNAL(videoFrameChanged()));
        QTRY_VERIFY_WITH_TIMEOUT(frames.count() > 65, 20'000);

        scene.tap({100, 100});
        QCOMPARE(scene.clicks(), 1);
        scene.tap(scene.centre("skipButton"));
        QCOMPARE(scene.skips, 1);
    }

    void takesTurnsWithPictures()
    {
        Scene scene(Image);
        const QString picture = creative("splash.jpg");
        for (int i = 0; i < 2; ++i) {
            showVideo(scene);
            QCOMPARE(scene.get("actionTipLabel", "text"), "点击跳转详情页或第三方应用");
            scene.view->setupWithImageUrl(picture, {}, {}, {});
            QVERIFY(scene.view->isHidden() && !scene.view->isVideoAd());
            QTRY_VERIFY(!scene.view->isHidden());
            QVERIFY(!scene.get("mainAdImageView", "hidden").toBool());
        }
        // The later one counts, whichever is there first.
        scene.view->setupWithVideoUrl(creative("video.mp4"), {});
        scene.view->setupWithImageUrl(picture, {}, {}, {});
        QTRY_VERIFY(!scene.view->isHidden());
        scene.view->setupWithImageUrl(picture, {}, {}, {});
        scene.view->setupWithVideoUrl(creative("nothing.mp4"), {});
        showVideo(scene);
    }

    void staysHiddenWithoutAVideo()
    {
        Scene noise(Image), gone(Shake), file(Slide), good(Image);
        exchange.setAnswerAt(
            "/noise.mp4", {.body = QByteArray(100'000, 'x'), .contentType = "video/mp4"});
        noise.view->setupWithVideoUrl(exchange.at("/noise.mp4"), {});
        gone.view->setupWithVideoUrl(creative("nothing.mp4"), {});
        file.view->setupWithVideoUrl("file:///etc/passwd", {});
        showVideo(good);
        QVERIFY(noise.view->isHidden() && gone.view->isHidden() && file.view->isHidden());
    }

    void mayDieWhileItPlays()
    {
        Scene early(Image), scene(Image);
        early.view->setupWithVideoUrl(creative("video.mp4"), {});
        connect(scene.view, &ZNTSplashAdView::hiddenChanged, this, [&] { delete scene.view; });
        scene.view->setupWithVideoUrl(creative("video.mp4"), {});
        QTRY_VERIFY_WITH_TIMEOUT(!scene.view, 20'000);
    }
};

QTEST_MAIN(TestSplashVideo)
#include "tst_splashvideo.moc"
