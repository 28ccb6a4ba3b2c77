#include "support/frames.h"
#include "support/hand.h"
#include "support/host.h"
#include "support/pictures.h"

#include <ZNTAds/ZNTFeedAdView.h>
#include <ZNTAds/ZNTFeedManager.h>
#include <ZNTAds/ZNTMixedAdView.h>

using namespace znt::test;

namespace {

class Listener : public QObject, public ZNTAdViewDelegate, public Recorder
{
public:
    void adViewDidClick() override { hear("click"); }
    void adViewDidClose() override { hear("close"); }
    void adViewDidExposure(QQuickItem *view) override
    {
        exposed = view;
        hear("exposure");
    }

    QQuickItem *exposed = nullptr;
};

ZNTFeedAdDataPtr record(const QString &title = {}, const QStringList &images = {},
    const QString &source = {}, const QString &logo = {})
{
    const auto result = std::make_shared<ZNTFeedAdData>();
    result->setTitle(title);
    result->setImageUrls(images);
    result->setSource(source);
    result->setSourceLogo(logo);
    return result;
}

} // namespace

class TestTemplates : public QObject
{
    Q_OBJECT

private:
    TrustedExchange exchange;
    ShownWindow window{{500, 400}};
    Listener listener;
    std::unique_ptr<ZNTFeedAdView> view;

    std::unique_ptr<ZNTFeedAdView> create(int style, const QSizeF &size = {375, 200})
    {
        QQuickItem *made = ZNTFeedManager().createAdViewWithStyle(style, size);
        std::unique_ptr<ZNTFeedAdView> result(qobject_cast<ZNTFeedAdView *>(made));
        result->setDelegate(&listener);
        return result;
    }
    QQuickItem *part(const char *name) const { return view->findChild<QQuickItem *>(name); }
    QVariant of(const char *name, const char *property) const
    {
        return part(name) ? part(name)->property(property) : QVariant();
    }
    QString picture(const QString &file) const { return exchange.at("/creatives/" + file); }
    void tap(const char *name)
    {
        const QQuickItem *item = part(name);
        const QPointF at = item->mapToScene({item->width() / 2, item->height() / 2});
        QTest::mouseClick(&window, Qt::LeftButton, {}, at.toPoint());
        QCoreApplication::processEvents();
    }

private slots:
    void initTestCase()
    { // as a host may want it
        QCoreApplication::setAttribute(Qt::AA_SynthesizeMouseForUnhandledTouchEvents, false);
    }

    void init() { failOnWarnings(); }

    void cleanup()
    {
        view.reset();
        listener.then = {};
        QCoreApplication::processEvents();
        listener.heard.clear();
    }

    void madeByNumber()
    {
        ZNTFeedManager manager;
        const std::unique_ptr<QQuickItem> made(manager.createAdViewWithStyle(4, {300, 100}));
        const auto *mixed = qobject_cast<ZNTMixedAdView *>(made.get());
        QVERIFY(mixed);
        QCOMPARE(QRectF(mixed->position(), mixed->size()), QRectF(0, 0, 300, 100));
        QCOMPARE(mixed->delegate().object(), &manager);
        QVERIFY(qobject_cast<ZNTNativeAdRenderProtocol *>(made.get()));
        QVERIFY(!manager.createAdViewWithStyle(9, {1, 1}));
        QVERIFY(!manager.createAdViewWithStyle(-1, {1, 1}));
    }

    void laysOut()
    {
        const QSizeF size(375, 200), flat(375, 100);
        const std::tuple<int, QSizeF, QString> rows[] = {
            {0, size, "closeButton 341 12 22 22 adImageView 12 12 351 176 adLabel 306 141 30 20"},
            {1, size, R"(closeButton 341 12 22 22 adImageView 12 12 351 120
                titleLabel 12 140 351 44 logoImageView 313 92 30 20)"},
            {2, size, R"(closeButton 341 12 22 22 titleLabel 12 12 251 44
                adImageView 12 68 351 120 adLabel 313 92 30 20)"},
            {3, size, R"(closeButton 341 12 22 22 titleLabel 12 12 251 44
                adImageView 12 68 351 120 adLabel 303 90 36 18 logoImageView 303 90 36 18)"},
            {3, {300, 300}, "adImageView 12 68 276 220"},
            {4, size, R"(closeButton 337.5 15 30 30 mainImageView 15 15 345 150
                adLabel 307 122 30 20 titleLabel 15 180 345 40)"},
            {5, size, R"(closeButton 343 10 22 22 containerView 12 12 351 176
                adImageView 0 0 351 176 overlayView 0 131 351 45 titleLabel 12 12.5 281 20
                actionButton 293 7.5 70 30 adLabel 12 12 30 20)"},
            {6, size, R"(closeButton 341 12 22 22 titleLabel 12 12 321 54
                imageContainer 12 78 351 117 imageViews[2] 239.333 0 111.667 117)"},
            {7, flat, R"(closeButton 341 12 22 22 adImageView 12 0 88 100 titleLabel 112 12 221 76
                adLabel 50 72 30 20)"},
            {8, flat, R"(closeButton 341 12 22 22 adImageView 287 12 76 76 titleLabel 12 12 251 76
                logoImageView 38 48 30 20)"}};
        for (const auto &[style, given, frames] : rows) {
            view = create(style, given);
            view->setupWithAdsData(record(QString(60, u'宽')));
            const auto frame = [this](const QString &name) {
                const QQuickItem *item = part(qPrintable(name));
                return item ? QRectF(item->position(), item->size()) : QRectF();
            };
            QCOMPARE(framesNow(frames, frame), frames.simplified());
        }
    }

    void fitsIntoAnySize()
    {
        for (int style = 0; style < 9; ++style) {
            for (const QSizeF &size :
                {QSizeF(0, 0), QSizeF(375, 1), QSizeF(1, 375), QSizeF(9e5, 2)}) {
                view = create(style, size);
                view->setParentItem(window.contentItem());
                view->setupWithAdsData(record("t"));
                window.grabWindow();
            }
            view = create(style);
            view->resetHeight();
            view->setParentItem(window.contentItem());
            QVERIFY(view->height() >= 100 && view->height() < 300);
        }
    }

    void fillsInWhatTheRecordHas()
    {
        for (int style = 0; style < 9; ++style) {
            view = create(style);
            const char *label = style == 6 ? "sourceLabel" : "adLabel";
            view->setupWithAdsData(nullptr);
            view->setupWithAdsData(record());
            if (style > 0)
                QVERIFY(of("titleLabel", "text").toString().startsWith("广告标题"));
            QCOMPARE(of(label, "text"), "广告");
            QVERIFY(part(label)->isVisible() && !part("logoImageView")->isVisible());

            view->setupWithAdsData(record("<b>x</b>", {}, "Tea", ""));
            if (style > 0)
                QCOMPARE(of("titleLabel", "text"), "<b>x</b>");
            QCOMPARE(of(label, "text"), "Tea");
            QVERIFY(!part(label)->isVisible() && part("logoImageView")->isVisible());
        }
    }

    void loadsThePictures()
    {
        exchange.setAnswerAt("/slow.png",
            {.body = written(twoHalves({2, 2})), .delay = std::chrono::milliseconds(100)});
        view = create(6);
        const auto slow = record({}, {exchange.at("/slow.png")});
        const auto later = create(6);
        view->setupWithAdsData(slow);
        later->setupWithAdsData(slow);
        view->setupWithAdsData(record(
            {}, {picture("tea-wide.jpg"), picture("isle-wide.jpg")}, {}, picture("logo-tea.png")));
        QTRY_VERIFY(of("logoImageView", "hasImage").toBool());
        for (const char *name : {"imageViews[0]", "imageViews[1]", "imageViews[2]"})
            QTRY_VERIFY(of(name, "hasImage").toBool());
        QCOMPARE(exchange.hits("/creatives/isle-wide.jpg"), 0);
        const auto *late = later->findChild<QQuickItem *>("imageViews[0]");
        QTRY_VERIFY(late->property("hasImage").toBool()); // the slow one has come
        QCOMPARE(of("imageViews[0]", "image").value<QImage>().width(), 1280);

        exchange.forgetRequests();
        const QString both = picture("isle-wide.jpg"); // picture and logo, fetched once
        view->setupWithAdsData(record({}, {both}, {}, both));
        QVERIFY(!of("logoImageView", "hasImage").toBool());
        for (const char *name : {"logoImageView", "imageViews[0]"})
            QTRY_VERIFY(of(name, "hasImage").toBool());
        QCOMPARE(exchange.hits("/creatives/isle-wide.jpg"), 1);

        view->setupWithAdsData(record({}, {"x"}, {}, "file:///etc/hostname"));
        QVERIFY(!of("imageViews[0]", "hasImage").toBool());
    }

    void showsLongTextsAtOnce()
    {
        const auto longest = record(QString(100'000, u'宽'), {}, QString(100'000, u'x'));
        view = create(1);
        view->setParentItem(window.contentItem());
        QElapsedTimer clock;
        clock.start();
        view->setupWithAdsData(longest);
        window.grabWindow();
        QVERIFY(clock.elapsed() < 100);
    }

    void tellsOfTapsAndCloses()
    {
        for (int style = 0; style < 9; ++style) {
            view = create(style);
            view->setParentItem(window.contentItem());
            tap("closeButton");
            const char *inside = style == 4 ? "mainImageView"
                : style == 6                ? "imageViews[1]"
                                            : "adImageView";
            tap(inside); // not filled yet
            QCOMPARE(listener.heard, QStringList({"exposure", "close"}));
            for (int i = 0; i < 3; ++i)
                view->setupWithAdsData(record());
            tap(inside);
            if (style == 5)
                tap("actionButton");
            const QStringList clicks(style == 5 ? 2 : 1, "click");
            QCOMPARE(listener.heard.mid(2), clicks);
            cleanup();
        }
    }

    void mayDieInASlot()
    {
        for (const auto &[key, signal] : {std::pair(Qt::Key_Return, &ZNTFeedAdView::tapped),
                 std::pair(Qt::Key_Escape, &ZNTFeedAdView::closeRequested)}) {
            view = create(0);
            view->setParentItem(window.contentItem());
            view->setupWithAdsData(record());
            view->forceActiveFocus();
            connect(view.get(), signal, this, [this] { view.reset(); });
            QKeyEvent press(QEvent::KeyPress, key, {});
            QCoreApplication::sendEvent(&window, &press);
            QVERIFY(view); // not in the middle of the event
            QTRY_VERIFY(!view);
        }
    }

    void obeysTheKeyboard()
    {
        view = create(7);
        view->setParentItem(window.contentItem());
        view->setupWithAdsData(record());
        window.requestActivate();
        QTest::keyClick(&window, Qt::Key_Tab);
        QTest::keyClick(&window, Qt::Key_Return);
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Space, {}, {}, true);
        QCoreApplication::sendEvent(&window, &held);
        QTest::keyClick(&window, Qt::Key_Escape);
        QTest::keyClick(&window, Qt::Key_Tab);
        QTest::keyClick(&window, Qt::Key_Space);
        QCoreApplication::sendEvent(&window, &held);
        QCoreApplication::processEvents();
        QCOMPARE(listener.heard, QStringList({"exposure", "click", "close", "close"}));
    }

    void keepsItsTapsToItself()
    {
        QQmlEngine engine;
        const auto object = created(&engine, R"(import QtQuick
            Flickable {
                id: list
                property Item row: Item {
                    parent: list.contentItem; width: 375; height: 200
                    TapHandler { onTapped: ++list.taps }
                    MouseArea { anchors.fill: parent; onClicked: ++list.taps }
                }
                property int taps
                width: 375; height: 200; contentHeight: 900
            })");
        auto *list = qobject_cast<QQuickItem *>(object.get());
        list->setParentItem(window.contentItem());
        view = create(1);
        view->setParentItem(list->property("row").value<QQuickItem *>());
        view->setupWithAdsData(record());
        QCoreApplication::processEvents();
        dragMouse(&window, {200, 150}, {3, 0});
        QCoreApplication::processEvents();
        QCOMPARE(listener.heard, QStringList({"exposure", "click"}));
        for (const QPoint way : {QPoint(90, 0), QPoint(0, -90)})
            dragMouse(&window, {200, 150}, way);
        QVERIFY(list->property("contentY").toReal() > 20);
        QCOMPARE(list->property("taps"), 0);

        list->setProperty("contentY", 0);
        for (int i = 0; i < 3; ++i)
            tapFinger(&window, {352, 23}); // the close button
        QCoreApplication::processEvents();
        QCOMPARE(listener.heard, QStringList({"exposure", "click", "close", "close", "close"}));
        view.reset();
    }

    // By mouse and by finger; while the list moves slowly, too, when it leaves presses to its rows.
    void aPressThatStopsAListIsNothingElse()
    {
        QQmlEngine engine;
        const auto object = created(&engine, R"(import QtQuick
            ListView { width: 375; height: 200; model: 9; flickDeceleration: 10
                delegate: Item { width: 375; height: 200 } })");
        auto *list = qobject_cast<QQuickItem *>(object.get());
        list->setParentItem(window.contentItem());
        view = create(0);
        view->setParentItem(list->property("contentItem").value<QQuickItem *>());
        view->setupWithAdsData(record());
        QCoreApplication::processEvents();
        listener.heard.clear();
        const std::function<void(const QPoint &)> presses[] = {
            [this](const QPoint &at) { QTest::mouseClick(&window, Qt::LeftButton, {}, at); },
            [this](const QPoint &at) { tapFinger(&window, at); }};
        const std::pair<QPoint, QString> places[] = {{{150, 100}, "click"}, {{352, 23}, "close"}};
        for (const auto &press : presses) {
            for (const auto &[place, notice] : places) {
                for (const double velocity : {-80.0, -900.0}) {
                    list->setProperty("contentY", 0);
                    QMetaObject::invokeMethod(
                        list, "flick", Q_ARG(double, 0), Q_ARG(double, velocity));
                    QVERIFY(list->property("moving").toBool());
                    press(place);
                    QCoreApplication::processEvents();
                    QCOMPARE(listener.heard, QStringList());
                }
                QMetaObject::invokeMethod(list, "cancelFlick");
                list->setProperty("contentY", 0);
                press(place);
                QCoreApplication::processEvents();
                QCOMPARE(std::exchange(listener.heard, {}), QStringList{notice});
            }
        }
        view.reset();
    }

    void tellsOfEachArrivalInAWindow()
    {
        view = create(0);
        QQuickItem screen;
        view->setParentItem(&screen);
        QCoreApplication::processEvents();
        QVERIFY(listener.heard.isEmpty());
        screen.setParentItem(window.contentItem());
        QTRY_COMPARE(listener.heard.size(), 1);
        QCOMPARE(listener.exposed, view.get());
        QQuickWindow other;
        screen.setParentItem(other.contentItem());
        screen.setParentItem(nullptr);
        QTRY_COMPARE(listener.heard.size(), 2);

        screen.setParentItem(window.contentItem());
        listener.then = [this](const QString &) { view.reset(); };
        QTRY_VERIFY(!view); // the delegate may destroy it then
    }
};

QTEST_MAIN(TestTemplates)
#include "tst_templates.moc"
