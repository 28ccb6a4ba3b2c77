#include "splash/creatives.h"

#include "support/beneath.h"
#include "support/frames.h"
#include "support/pictures.h"
#include "ui/safearea.h"

using namespace znt;
using namespace znt::test;

class TestSplashViews : public QObject
{
    Q_OBJECT

private:
    TrustedExchange exchange;

    QString picture() const { return exchange.at("/red.png"); }
    void serve(const QString &path, QColor color, int status = 200, int delay = 0)
    {
        QImage image(30, 20, QImage::Format_RGB32);
        image.fill(color);
        exchange.setAnswerAt(path,
            {.body = written(image), .status = status, .delay = std::chrono::milliseconds(delay)});
    }
    bool show(Scene &scene)
    {
        scene.view->setupWithImageUrl(picture(), "tip", {}, {});
        return QTest::qWaitFor([&] { return !scene.view->isHidden(); });
    }

private slots:
    void init()
    {
        failOnWarnings();
        serve("/red.png", Qt::red);
        serve("/blue.png", Qt::blue);
        serve("/slow.png", Qt::green, 200, 150);
        serve("/gone.png", Qt::red, 404);
        SafeArea::instance()->setInsets({});
    }

    void framesFollowSizeAndInsets()
    {
        const QMarginsF none, notch(0, 47, 0, 34);
        const std::tuple<Style, QSize, QMarginsF, QString> rows[] = {
            {Image, {375, 812}, none, R"(containerView 0 0 375 812 blurBackgroundView 0 0 375 812
                adImageView 0 0 375 812 mainAdImageView 37.5 266 300 180
                adContentLabel 37.5 466 300 40 viewDetailsLabel 37.5 514 300 20
                skipButton 330 15 30 30 actionTipLabel 87.5 722 200 40 actionButton 0 712 375 100
                logoImageView 327 782 36 18 adLabel 327 782 36 18)"},
            {Image, {320, 568}, notch, R"(mainAdImageView 32 157.2 256 153.6
                skipButton 275 62 30 30 actionTipLabel 60 478 200 40 adLabel 272 504 36 18)"},
            {Shake, {375, 812}, notch, R"(mainAdImageView 37.5 266 300 180 skipButton 330 62 30 30
                shakeHintView 47.5 672 280 60 shakeHintLabel 102.5 682 210 40)"},
            // The direction picture is 100 by 100 points, the arc 375 by 90.
            {Slide, {375, 812}, none, R"(bgImageView 0 767 375 90 slideHintView 87.5 717 200 50
                slideHintTopLabel 87.5 718.5 200 22 slideHintBottomLabel 87.5 743.5 200 22
                slideIndicatorContainer 137.5 544.04 100 100
                slideIconView 137.5 544.04 100 100)"},
            {Slide, {750, 1000}, notch, R"(bgImageView 0 876 750 180 slideHintView 275 871 200 50
                slideIndicatorContainer 325 670 100 100)"}};
        for (const auto &[style, size, insets, frames] : rows) {
            SafeArea::instance()->setInsets({});
            Scene scene(style, {500, 500}); // made for another device, turned into this one
            scene.window.resize(size);
            scene.view->setSize(size);
            SafeArea::instance()->setInsets(insets);
            const auto frame = [&](const QString &name) { return scene.frame(name); };
            QCOMPARE(framesNow(frames, frame), frames.simplified());
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
        scene.view->setY(40);
        QCOMPARE(scene.view->safeTop(), 7.0);
        QQuickItem page;
        scene.view->setParentItem(&page);
        QCOMPARE(scene.view->safeTop(), 0.0);
        page.setParentItem(scene.window.contentItem());
        QCOMPARE(scene.view->safeTop(), 7.0);
    }

    void isHiddenUntilThePictureIsThere()
    {
        const char *shake = "摇一摇或点击图标\n跳转详情页或第三方应用";
        const std::tuple<Style, QString, QString, QString> rows[] = {
            {Image, "actionTipLabel", "", "点击跳转详情页或第三方应用"},
            {Shake, "shakeHintLabel", shake, shake},
            {Slide, "slideHintTopLabel", "", "滑动屏幕或点击图标"},
            {Slide, "slideHintBottomLabel", "", "跳转详情页或第三方应用"}};
        for (const auto &[style, label, before, after] : rows) {
            Scene scene(style);
            QSignalSpy hidden(scene.view, &ZNTSplashAdView::hiddenChanged);
            QVERIFY(scene.view->isHidden() && !scene.view->isVisible());
            QCOMPARE(scene.get("viewDetailsLabel", "text"), "查看详情");
            QCOMPARE(scene.get(label, "text"), before);

            scene.view->setupWithImageUrl(picture(), "tip", {}, {});
            QVERIFY(!scene.get("mainAdImageView", "hasImage").toBool());
            QCOMPARE(scene.get("adContentLabel", "text"), "");
            QTRY_VERIFY(!scene.view->isHidden());
            QVERIFY(scene.view->isVisible());
            QCOMPARE(hidden.count(), 1);
            QVERIFY(scene.get("adImageView", "hasImage").toBool());
            const auto sharp = scene.get("mainAdImageView", "image").value<QImage>();
            QCOMPARE(sharp.pixelColor(0, 0), QColor(Qt::red));
            QCOMPARE(scene.get("adContentLabel", "text"), "tip");
            QCOMPARE(scene.get(label, "text"), after);
            for (const char *name :
                {"shakeIconView", "bgImageView", "slideIconView", "slideFingerView"})
                QTRY_VERIFY(!scene.item(name) || scene.get(name, "hasImage").toBool());

            scene.view->setupWithImageUrl(picture(), {}, {}, {});
            QVERIFY(scene.view->isHidden() && !scene.view->isVisible());
            QTRY_VERIFY(!scene.view->isHidden());
            QCOMPARE(scene.get("adContentLabel", "text"), "");
        }
    }

    void skipTitles()
    {
        Scene scene(Image);
        const QList<QPair<qint64, QString>> titles{
            {5, "5s"}, {1, "1s"}, {0, "跳过"}, {-3, "跳过"}, {5'000'000'000, "5000000000s"}};
        for (const auto &[seconds, title] : titles) {
            scene.view->updateSkipButtonWithTime(seconds);
            QCOMPARE(scene.view->skipButton()->property("text"), title);
        }
    }

    void logoOrLabel()
    {
        Scene scene(Image);
        const auto check = [&](const char *source, const QString &logo, const QString &label,
                               bool hasLogo) { // no label: hidden
            scene.view->setupWithImageUrl(picture(), {}, {}, exchange.at("/blue.png"));
            QTRY_VERIFY(scene.get("logoImageView", "hasImage").toBool());
            scene.view->setupWithImageUrl(picture(), {}, source, logo);
            QCOMPARE(scene.get("adLabel", "hidden").toBool(), label.isNull());
            QCOMPARE(scene.get("logoImageView", "hidden").toBool(), !label.isNull());
            QVERIFY(label.isNull() || scene.get("adLabel", "text") == label);
            QTRY_VERIFY(!scene.view->isHidden());
            QTRY_COMPARE(scene.get("logoImageView", "hasImage").toBool(), hasLogo);
        };
        check("", "", "广告", false);
        check("Tea", {}, "Tea", false);
        check("Tea", exchange.at("/blue.png"), {}, true);
        check("Tea", exchange.at("/gone.png"), {}, false);
        check("Tea", "file:///etc/passwd", {}, false);
    }

    void onlyThePictureOfTheLatestSetupShowsIt()
    {
        const QString slow = exchange.at("/slow.png");
        Scene scene(Image), gone(Image), none(Image), later(Image);
        scene.view->setupWithImageUrl(slow, "old", {}, slow);
        scene.view->setupWithImageUrl(picture(), "new", {}, {});
        gone.view->setupWithImageUrl(exchange.at("/gone.png"), {}, {}, {});
        none.view->setupWithImageUrl({}, {}, {}, picture());
        later.view->setupWithImageUrl(slow, {}, {}, {});
        QTRY_VERIFY(!later.view->isHidden());
        QVERIFY(gone.view->isHidden() && none.view->isHidden());
        QCOMPARE(scene.get("adContentLabel", "text"), "new");
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
            QCOMPARE(scene.clicks(), 0);

            int expected = 0;
            for (const char *name : {"mainAdImageView", "adContentLabel", "adLabel", "actionButton",
                     "shakeHintView", "slideIconView", "containerView"}) {
                if (!scene.item(name))
                    continue;
                scene.tap(scene.centre(name));
                tapFinger(&scene.window, scene.centre(name));
                scene.settle();
                QCOMPARE(scene.clicks(), expected += 2);
            }
            QTest::mouseClick(&scene.window, Qt::RightButton, {}, {100, 100});
            QTest::mouseDClick(&scene.window, Qt::LeftButton, {}, {100, 100});
            scene.settle();
            QCOMPARE(scene.clicks(), expected + 2);

            QCOMPARE(scene.skips, 0);
            scene.tap(scene.centre("skipButton"));
            QCOMPARE(scene.skips, 1);
            QCOMPARE(scene.clicks(), expected + 2);
        }
    }

    void keyboardReachesEverything()
    {
        Scene scene(Image);
        QQuickItem field(scene.window.contentItem());
        field.forceActiveFocus();
        QQuickItem page;
        scene.view->setParentItem(&page);
        QVERIFY(show(scene));
        page.setParentItem(scene.window.contentItem());
        scene.settle();
        QTest::keyClick(&scene.window, Qt::Key_Return); // meant for the host's field
        scene.settle();
        QCOMPARE(scene.clicks() + scene.skips, 0);

        QTest::keyClick(&scene.window, Qt::Key_Escape);
        scene.settle();
        QCOMPARE(scene.skips, 1);
        for (int i = 0; i < 4 && !scene.view->skipButton()->hasActiveFocus(); ++i) {
            QTest::keyClick(&scene.window, Qt::Key_Tab);
            QTest::keyClick(&scene.window, Qt::Key_Space);
            scene.settle();
        }
        QCOMPARE(scene.skips, 2);
        QCOMPARE(scene.clicks(), 2); // the creative itself and its wide button
        delete scene.view;
        QTRY_VERIFY(field.hasActiveFocus());
    }

    void nothingGoesThrough()
    {
        Scene scene(Image);
        Beneath beneath(scene.window.contentItem());
        QVERIFY(show(scene));
        QCOMPARE(beneath.hearsOf({100, 400}), "");
        delete scene.view;
        QCOMPARE(beneath.hearsOf({100, 400}), "drag flick hover key point shortcut tap wheel");
    }

    void slideIsDecidedAtTheEnd()
    {
        const std::tuple<QPointF, QPointF, bool> pans[] = {{{-120, 0}, {}, true},
            {{120, 0}, {}, true}, {{0, 120}, {}, true}, {{0, -120}, {}, false},
            {{-9, 0}, {-600, 0}, true}, {{0, 9}, {0, 900}, true}, {{0, -9}, {0, -900}, false},
            {{100, 100}, {500, 500}, false}}; // exactly at all limits
        for (const auto &[translation, velocity, isSlide] : pans) {
            Scene scene(Slide);
            qobject_cast<ZNTSlideAdView *>(scene.view)->handlePanGesture(translation, velocity);
            QCOMPARE(scene.clicks(), isSlide ? 1 : 0);
        }
    }

    void dragsOfMouseAndTouch()
    {
        // The way, ms of rest before the release, and whether it is a slide.
        const std::tuple<QPoint, int, bool> drags[] = {{{-60, 0}, 0, true}, {{0, -150}, 0, false},
            {{0, 120}, 300, true}, {{60, 60}, 300, false}};
        for (const int style : {Image, Slide}) {
            for (const auto &[way, rest, isSlide] : drags) {
                Scene scene(style);
                QVERIFY(show(scene));
                const int clicks = style == Slide && isSlide;
                dragMouse(&scene.window, {180, 300}, way, rest);
                scene.settle();
                QCOMPARE(scene.clicks(), clicks);
                dragFinger(&scene.window, {180, 300}, way, rest);
                scene.settle();
                QCOMPARE(scene.clicks(), 2 * clicks);
            }
        }
    }

    void whatIsNoPressOfOneFingerIsNothing()
    {
        Scene scene(Slide);
        QVERIFY(show(scene));
        QQuickWindow *const window = &scene.window;
        const QPoint from(180, 300);
        const QPoint to(330, 300);

        touch(window).press(1, from);
        touch(window).press(2, from + QPoint(0, 50)).stationary(1);
        touch(window).move(1, to).move(2, to);
        touch(window).release(2, to).stationary(1);
        touch(window).release(1, to);
        touch(window).press(1, from).press(2, to);
        touch(window).release(1, from).release(2, to);
        scene.settle();
        QCOMPARE(scene.clicks(), 0);

        // Taken away by the system, and by the view's own going.
        touch(window).press(1, from);
        touch(window).move(1, to);
        QTouchEvent cancel(QEvent::TouchCancel, touchScreen());
        QCoreApplication::sendEvent(window, &cancel);
        touch(window).release(1, to);
        QTest::mousePress(window, Qt::LeftButton, {}, from);
        QTest::mouseMove(window, to);
        window->mouseGrabberItem()->ungrabMouse();
        QTest::mouseRelease(window, Qt::LeftButton, {}, to);
        QTest::mousePress(window, Qt::LeftButton, {}, from);
        scene.view->setVisible(false);
        scene.view->setVisible(true);
        QTest::mouseRelease(window, Qt::LeftButton, {}, from);
        scene.settle();
        QCOMPARE(scene.clicks(), 0);

        scene.tap(from);
        QCOMPARE(scene.clicks(), 1);
    }

    void mayDieInTheMiddle()
    {
        for (const int style : {Image, Shake, Slide}) {
            Scene scene(style);
            QVERIFY(show(scene));
            scene.host.then = [&](const QString &) { delete scene.view; };
            QTest::mouseClick(&scene.window, Qt::LeftButton, {}, {180, 790});
            QTest::mouseClick(&scene.window, Qt::LeftButton, {}, {180, 100});
            scene.settle();
            QVERIFY(!scene.view);
            QCOMPARE(scene.clicks(), 1);
        }
        Scene scene(Image);
        scene.view->setDelegate(std::make_unique<Host>().get());
        QVERIFY(show(scene));
        connect(scene.view, &ZNTSplashAdView::skipClicked, this, [&] { delete scene.view; });
        scene.tap({100, 100});
        scene.tap(scene.centre("skipButton"));
        QVERIFY(!scene.view);
    }

    void animationsRunOnlyWhileTheyAreSeen()
    {
        Scene scene(Slide);
        QQuickItem *finger = scene.item("slideFingerView");
        const auto place = [&] { return finger->mapToItem(scene.view, QPointF()); };
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
