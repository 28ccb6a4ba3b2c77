#include "splash/creatives.h"

#include "support/frames.h"
#include "support/pictures.h"
#include "support/safearea.h"

#include <QSignalSpy>

using namespace znt;
using namespace znt::test;
using sandbox::Answer;

namespace {

const QString pictureTip = QStringLiteral("点击跳转详情页或第三方应用");

QByteArray png(const QColor &color)
{
    QImage image(30, 20, QImage::Format_RGB32);
    image.fill(color);
    return written(image);
}

} // namespace

class TestSplashViews : public QObject
{
    Q_OBJECT

private:
    TrustedExchange exchange;
    const std::unique_ptr<QPointingDevice> screen{QTest::createTouchDevice()};
    QPointingDevice *const touchScreen = screen.get();

    QString url(const QString &path) const { return exchange.httpsUrl().toString() + path; }
    QString picture() const { return url(QStringLiteral("/red.png")); }

    bool show(Scene &scene)
    {
        scene.view->setupWithImageUrl(picture(), QStringLiteral("tip"), {}, {});
        return QTest::qWaitFor([&] { return !scene.view->isHidden(); })
            && QTest::qWaitForWindowExposed(&scene.window);
    }

private slots:
    void initTestCase()
    {
        exchange.setAnswerAt(QStringLiteral("/red.png"), {.body = png(Qt::red)});
        exchange.setAnswerAt(QStringLiteral("/blue.png"), {.body = png(Qt::blue)});
        exchange.setAnswerAt(QStringLiteral("/slow.png"),
            {.body = png(Qt::green), .delay = std::chrono::milliseconds(150)});
        exchange.setAnswerAt(QStringLiteral("/broken.png"), {.body = png(Qt::red).chopped(20)});
        exchange.setAnswerAt(QStringLiteral("/cut.png"),
            {.body = png(Qt::red), .delivery = Answer::Delivery::Truncated});
        exchange.setAnswerAt(QStringLiteral("/gone.png"), {.body = png(Qt::red), .status = 404});
    }
    void init()
    {
        failOnWarnings();
        SafeArea::instance()->setInsets({});
    }

    void framesFollowSizeAndInsets_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QMarginsF>("insets");
        QTest::addColumn<QString>("frames");

        const QMarginsF notch(0, 47, 0, 34);
        QTest::newRow("image") << int(Image) << QSize(375, 812) << QMarginsF() << R"(
            containerView 0 0 375 812 blurBackgroundView 0 0 375 812 adImageView 0 0 375 812
            mainAdImageView 37.5 266 300 180 adContentLabel 37.5 466 300 40
            viewDetailsLabel 37.5 514 300 20 skipButton 330 15 30 30
            actionTipLabel 87.5 722 200 40 actionButton 0 712 375 100
            logoImageView 327 782 36 18 adLabel 327 782 36 18)";
        QTest::newRow("image, small") << int(Image) << QSize(320, 568) << notch << R"(
            mainAdImageView 32 157.2 256 153.6 skipButton 275 62 30 30
            actionTipLabel 60 478 200 40 adLabel 272 504 36 18)";
        QTest::newRow("shake") << int(Shake) << QSize(375, 812) << notch << R"(
            mainAdImageView 37.5 266 300 180 skipButton 330 62 30 30
            shakeHintView 47.5 672 280 60 shakeHintLabel 102.5 682 210 40)";
        // The direction picture is 100 by 100 points, the arc 375 by 90.
        QTest::newRow("slide") << int(Slide) << QSize(375, 812) << QMarginsF() << R"(
            bgImageView 0 767 375 90 slideHintView 87.5 717 200 50
            slideHintTopLabel 87.5 718.5 200 22 slideHintBottomLabel 87.5 743.5 200 22
            slideIndicatorContainer 137.5 544.04 100 100 slideIconView 137.5 544.04 100 100)";
        QTest::newRow("slide, large") << int(Slide) << QSize(750, 1000) << notch << R"(
            bgImageView 0 876 750 180 slideHintView 275 871 200 50
            slideIndicatorContainer 325 670 100 100)";
    }
    void framesFollowSizeAndInsets()
    {
        QFETCH(int, style);
        QFETCH(QSize, size);
        QFETCH(QMarginsF, insets);
        QFETCH(QString, frames);

        // Made for another device, turned into this one.
        Scene scene(style, {500, 500});
        scene.window.resize(size);
        scene.view->setSize(size);
        SafeArea::instance()->setInsets(insets);
        for (const QString &line : framesIn(frames)) {
            const QString name = line.section(u' ', 0, 0);
            QCOMPARE(frameText(name, scene.frame(name)), line);
        }
    }

    void insetsCountOnlyWhereTheyReach()
    {
        SafeArea::instance()->setInsets({0, 47, 0, 34});
        Scene scene(Image);
        scene.view->setHeight(700); // something of the host's below
        QCOMPARE(scene.view->safeTop(), 47.0);
        QCOMPARE(scene.view->safeBottom(), 0.0);
        scene.view->setHeight(800);
        QCOMPARE(scene.view->safeBottom(), 22.0);
    }

    void isHiddenUntilThePictureIsThere()
    {
        for (const int style : {Image, Shake, Slide}) {
            Scene scene(style);
            QSignalSpy hidden(scene.view, &ZNTSplashAdView::hiddenChanged);
            QVERIFY(scene.view->isHidden() && !scene.view->isVisible());
            QCOMPARE(scene.get("viewDetailsLabel", "text"), QStringLiteral("查看详情"));

            scene.view->setupWithImageUrl(picture(), QStringLiteral("tip"), {}, {});
            QVERIFY(!scene.get("mainAdImageView", "hasImage").toBool());
            QCOMPARE(scene.get("adContentLabel", "text"), QString());
            QTRY_VERIFY(!scene.view->isHidden());
            QVERIFY(scene.view->isVisible());
            QCOMPARE(hidden.count(), 1);
            QVERIFY(scene.get("adImageView", "hasImage").toBool());
            const auto sharp = scene.get("mainAdImageView", "image").value<QImage>();
            QCOMPARE(sharp.pixelColor(0, 0), QColor(Qt::red));
            QCOMPARE(scene.get("adContentLabel", "text"), QStringLiteral("tip"));

            scene.view->setupWithImageUrl(picture(), {}, {}, {});
            QVERIFY(scene.view->isHidden() && !scene.view->isVisible());
            QTRY_VERIFY(!scene.view->isHidden());
            QCOMPARE(scene.get("adContentLabel", "text"), QString());
        }
    }

    void textsOfEachStyle()
    {
        Scene image(Image);
        Scene shake(Shake);
        Scene slide(Slide);
        QCOMPARE(image.get("actionTipLabel", "text"), QString());
        QCOMPARE(slide.get("slideHintTopLabel", "text"), QString());
        for (Scene *scene : {&image, &shake, &slide})
            QVERIFY(show(*scene));
        QCOMPARE(image.get("actionTipLabel", "text"), pictureTip);
        QCOMPARE(shake.get("shakeHintLabel", "text"),
            QStringLiteral("摇一摇或点击图标\n跳转详情页或第三方应用"));
        QCOMPARE(slide.get("slideHintTopLabel", "text"), QStringLiteral("滑动屏幕或点击图标"));
        QCOMPARE(
            slide.get("slideHintBottomLabel", "text"), QStringLiteral("跳转详情页或第三方应用"));
        for (const char *name : {"bgImageView", "slideIconView", "slideFingerView"})
            QTRY_VERIFY(slide.get(name, "hasImage").toBool());
        QTRY_VERIFY(shake.get("shakeIconView", "hasImage").toBool());

        const QHash<qint64, QString> titles{
            {5, "5s"}, {1, "1s"}, {0, "跳过"}, {-3, "跳过"}, {5'000'000'000, "5000000000s"}};
        for (auto it = titles.cbegin(); it != titles.cend(); ++it) {
            image.view->updateSkipButtonWithTime(it.key());
            QCOMPARE(image.view->skipButton()->property("text"), it.value());
        }
    }

    void logoOrLabel()
    {
        Scene scene(Image);
        const auto check = [&](const char *source, const QString &logo, const QString &label,
                               bool hasLogo) { // no label: hidden
            scene.view->setupWithImageUrl(picture(), {}, {}, url(QStringLiteral("/blue.png")));
            QTRY_VERIFY(scene.get("logoImageView", "hasImage").toBool());
            scene.view->setupWithImageUrl(picture(), {}, QString::fromLatin1(source), logo);
            QCOMPARE(scene.get("adLabel", "hidden").toBool(), label.isNull());
            QCOMPARE(scene.get("logoImageView", "hidden").toBool(), !label.isNull());
            if (!label.isNull())
                QCOMPARE(scene.get("adLabel", "text"), label);
            QTRY_VERIFY(!scene.view->isHidden());
            QTRY_COMPARE(scene.get("logoImageView", "hasImage").toBool(), hasLogo);
        };
        check("", QLatin1String(""), QStringLiteral("广告"), false);
        check("Tea", {}, QStringLiteral("Tea"), false);
        check("Tea", url(QStringLiteral("/blue.png")), {}, true);
        check("Tea", url(QStringLiteral("/gone.png")), {}, false);
        check("Tea", QStringLiteral("file:///etc/passwd"), {}, false);
    }

    void staysHiddenWithoutThePicture_data()
    {
        QTest::addColumn<QString>("address");
        for (const char *path : {"/gone.png", "/broken.png", "/cut.png"})
            QTest::newRow(path) << url(QString::fromLatin1(path));
        for (const char *address : {"", "no url", "file:///etc/passwd", "qrc:/x.png"})
            QTest::newRow(address) << QString::fromLatin1(address);
    }
    void staysHiddenWithoutThePicture()
    {
        QFETCH(QString, address);
        Scene bad(Image);
        Scene good(Image);
        bad.view->setupWithImageUrl(address, {}, {}, {});
        good.view->setupWithImageUrl(url(QStringLiteral("/slow.png")), {}, {}, {});
        QTRY_VERIFY(!good.view->isHidden());
        QVERIFY(bad.view->isHidden());
    }

    void theLatestSetupWins()
    {
        Scene scene(Image);
        Scene later(Image);
        const QString slow = url(QStringLiteral("/slow.png"));
        scene.view->setupWithImageUrl(slow, QStringLiteral("old"), {}, slow);
        scene.view->setupWithImageUrl(picture(), QStringLiteral("new"), {}, {});
        later.view->setupWithImageUrl(slow, {}, {}, {});
        QTRY_VERIFY(!later.view->isHidden());
        QCOMPARE(scene.get("adContentLabel", "text"), QStringLiteral("new"));
        const auto sharp = scene.get("mainAdImageView", "image").value<QImage>();
        QCOMPARE(sharp.pixelColor(0, 0), QColor(Qt::red));
        QVERIFY(!scene.get("logoImageView", "hasImage").toBool());
    }

    void everyTapIsOneClick()
    {
        for (const int style : {Image, Shake, Slide}) {
            Scene scene(style);
            QTest::mouseClick(&scene.window, Qt::LeftButton, {}, {100, 100});
            QVERIFY(show(scene));
            QCOMPARE(scene.host.clicks, 0);

            int expected = 0;
            for (const char *name : {"mainAdImageView", "adContentLabel", "adLabel", "actionButton",
                     "shakeHintView", "slideIconView", "containerView"}) {
                if (!scene.item(name))
                    continue;
                scene.tap(scene.centre(name));
                QCOMPARE(scene.host.clicks, ++expected);
                QTest::touchEvent(&scene.window, touchScreen).press(1, scene.centre(name));
                QTest::touchEvent(&scene.window, touchScreen).release(1, scene.centre(name));
                scene.settle();
                QCOMPARE(scene.host.clicks, ++expected);
            }
            QTest::mouseClick(&scene.window, Qt::RightButton, {}, {100, 100});
            QTest::mouseDClick(&scene.window, Qt::LeftButton, {}, {100, 100});
            scene.settle();
            QCOMPARE(scene.host.clicks, expected + 2);

            QCOMPARE(scene.skips, 0);
            scene.tap(scene.centre("skipButton"));
            QCOMPARE(scene.skips, 1);
            QCOMPARE(scene.host.clicks, expected + 2);
        }
    }

    void keyboardReachesEverything()
    {
        Scene scene(Image);
        QQuickItem field(scene.window.contentItem());
        field.forceActiveFocus();
        QVERIFY(show(scene));
        QTest::keyClick(&scene.window, Qt::Key_Return); // meant for the host's field
        scene.settle();
        QCOMPARE(scene.host.clicks + scene.skips, 0);

        QTest::keyClick(&scene.window, Qt::Key_Escape);
        scene.settle();
        QCOMPARE(scene.skips, 1);
        for (int i = 0; i < 4 && !scene.view->skipButton()->hasActiveFocus(); ++i) {
            QTest::keyClick(&scene.window, Qt::Key_Tab);
            QTest::keyClick(&scene.window, Qt::Key_Space);
            scene.settle();
        }
        QCOMPARE(scene.skips, 2);
        QCOMPARE(scene.host.clicks, 2); // the creative itself and its wide button
        delete scene.view;
        QVERIFY(field.hasActiveFocus());
    }

    void nothingGoesThrough()
    {
        Scene scene(Image);
        QQmlEngine engine;
        QQmlComponent component(&engine);
        component.setData(R"(
            import QtQuick
            MouseArea {
                property int hits: 0
                width: 375; height: 812; z: -1
                hoverEnabled: true
                onPressed: ++hits; onWheel: ++hits; onPositionChanged: ++hits
                TapHandler { onTapped: ++parent.hits }
                PointHandler { onActiveChanged: ++parent.hits }
                DragHandler { target: null; onActiveChanged: ++parent.hits }
                WheelHandler { onWheel: ++parent.hits }
            })",
            {});
        const std::unique_ptr<QObject> beneath(component.create());
        qobject_cast<QQuickItem *>(beneath.get())->setParentItem(scene.window.contentItem());
        QVERIFY(show(scene));
        scene.tap({100, 100});
        QTest::mouseMove(&scene.window, {120, 100});
        QTest::mouseMove(&scene.window, {130, 100});
        QTest::touchEvent(&scene.window, touchScreen).press(1, {100, 100});
        for (int x = 100; x < 200; x += 10)
            QTest::touchEvent(&scene.window, touchScreen).move(1, {x, 100});
        QTest::touchEvent(&scene.window, touchScreen).release(1, {200, 100});
        QWheelEvent wheel({100, 100}, scene.window.mapToGlobal(QPointF(100, 100)), {}, {0, 120},
            Qt::NoButton, {}, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&scene.window, &wheel);
        QCOMPARE(beneath->property("hits").toInt(), 0);
    }

    void slideIsDecidedAtTheEnd()
    {
        const auto isSlide = [](const QPointF &translation, const QPointF &velocity) {
            Scene scene(Slide);
            static_cast<ZNTSlideAdView *>(scene.view.data())
                ->handlePanGesture(translation, velocity);
            return scene.host.clicks == 1;
        };
        QVERIFY(isSlide({-120, 0}, {}));
        QVERIFY(isSlide({120, 0}, {}));
        QVERIFY(isSlide({0, 120}, {}));
        QVERIFY(!isSlide({0, -120}, {}));
        QVERIFY(isSlide({-9, 0}, {-600, 0}));
        QVERIFY(isSlide({0, 9}, {0, 900}));
        QVERIFY(!isSlide({0, -9}, {0, -900}));
        QVERIFY(!isSlide({100, 100}, {500, 500})); // exactly at all limits
        QVERIFY(isSlide({200, 200}, {900, 900}));
    }

    void dragsOfMouseAndTouch_data()
    {
        QTest::addColumn<QPoint>("way");
        QTest::addColumn<int>("rest"); // ms before the release
        QTest::addColumn<bool>("isSlide");
        QTest::newRow("fling to the left") << QPoint(-60, 0) << 0 << true;
        QTest::newRow("fling upwards") << QPoint(0, -150) << 0 << false;
        QTest::newRow("far and slow") << QPoint(0, 120) << 300 << true;
        QTest::newRow("short and slow") << QPoint(60, 60) << 300 << false;
    }
    void dragsOfMouseAndTouch()
    {
        QFETCH(QPoint, way);
        QFETCH(int, rest);
        QFETCH(bool, isSlide);
        for (const int style : {Image, Slide}) {
            Scene scene(style);
            QVERIFY(show(scene));
            const QPoint from(180, 300);
            QTest::mousePress(&scene.window, Qt::LeftButton, {}, from);
            for (int i = 1; i <= 10; ++i)
                QTest::mouseMove(&scene.window, from + way * i / 10);
            QTest::mouseRelease(&scene.window, Qt::LeftButton, {}, from + way, rest);
            scene.settle();
            QCOMPARE(scene.host.clicks, style == Slide && isSlide ? 1 : 0);
            scene.host.clicks = 0;

            auto touch = [&] { return QTest::touchEvent(&scene.window, touchScreen); };
            touch().press(1, from);
            for (int i = 1; i <= 10; ++i)
                touch().move(1, from + way * i / 10);
            QTest::qWait(rest);
            touch().release(1, from + way);
            scene.settle();
            QCOMPARE(scene.host.clicks, style == Slide && isSlide ? 1 : 0);
        }
    }

    void whatIsNoPressOfOneFingerIsNothing()
    {
        Scene scene(Slide);
        QVERIFY(show(scene));
        auto touch = [&] { return QTest::touchEvent(&scene.window, touchScreen); };
        const QPoint from(180, 300);
        const QPoint to(330, 300);

        touch().press(1, from);
        touch().press(2, from + QPoint(0, 50)).stationary(1);
        touch().move(1, to).move(2, to);
        touch().release(2, to).stationary(1);
        touch().release(1, to);
        touch().press(1, from).press(2, to);
        touch().release(1, from).release(2, to);
        scene.settle();
        QCOMPARE(scene.host.clicks, 0);

        // Taken away by the system, and by the view's own going.
        touch().press(1, from);
        touch().move(1, to);
        QTouchEvent cancel(QEvent::TouchCancel, touchScreen);
        QCoreApplication::sendEvent(&scene.window, &cancel);
        touch().release(1, to);
        QTest::mousePress(&scene.window, Qt::LeftButton, {}, from);
        QTest::mouseMove(&scene.window, to);
        scene.window.mouseGrabberItem()->ungrabMouse();
        QTest::mouseRelease(&scene.window, Qt::LeftButton, {}, to);
        QTest::mousePress(&scene.window, Qt::LeftButton, {}, from);
        scene.view->setVisible(false);
        scene.view->setVisible(true);
        QTest::mouseRelease(&scene.window, Qt::LeftButton, {}, from);
        scene.settle();
        QCOMPARE(scene.host.clicks, 0);

        scene.tap(from);
        QCOMPARE(scene.host.clicks, 1);
    }

    void mayDieInTheMiddle()
    {
        for (const int style : {Image, Shake, Slide}) {
            Scene scene(style);
            QVERIFY(show(scene));
            scene.host.onClick = [&] { delete scene.view; };
            QTest::mouseClick(&scene.window, Qt::LeftButton, {}, {180, 790});
            QTest::mouseClick(&scene.window, Qt::LeftButton, {}, {180, 100});
            scene.settle();
            QVERIFY(!scene.view);
            QCOMPARE(scene.host.clicks, 1);
        }
        {
            Scene scene(Image);
            scene.view->setDelegate(std::make_unique<ClickCounter>().get());
            QVERIFY(show(scene));
            connect(scene.view, &ZNTSplashAdView::skipClicked, this, [&] { delete scene.view; });
            scene.tap({100, 100});
            scene.tap(scene.centre("skipButton"));
            QVERIFY(!scene.view);
        }
        for (const int style : {Image, Slide}) { // while it loads
            Scene scene(style);
            scene.view->setupWithImageUrl(url(QStringLiteral("/slow.png")), {}, {}, picture());
        }
        Scene later(Image);
        later.view->setupWithImageUrl(url(QStringLiteral("/slow.png")), {}, {}, {});
        QTRY_VERIFY(!later.view->isHidden());
    }

    void animationsRunOnlyWhileTheyAreSeen()
    {
        Scene scene(Slide);
        QQuickItem *finger = scene.item("slideFingerView");
        const auto place = [&] { return finger->mapToItem(scene.view, {}); };
        const QPointF start = place();
        QTest::qWait(100);
        QCOMPARE(place(), start);
        QVERIFY(show(scene));
        QTRY_VERIFY(place() != start);
        QCOMPARE(finger->position(), QPointF(40, 40));
        QCOMPARE(scene.get("bgImageView", "opacity").toDouble(), 1.0);

        scene.window.hide();
        const QPointF stopped = place();
        QTest::qWait(100);
        QCOMPARE(place(), stopped);
    }
};

QTEST_MAIN(TestSplashViews)
#include "tst_splashviews.moc"
