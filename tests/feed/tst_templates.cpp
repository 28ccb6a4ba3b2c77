#include "support/exchangetest.h"

#include <ZNTAds/ZNTFeedAdView.h>
#include <ZNTAds/ZNTFeedManager.h>
#include <ZNTAds/ZNTMixedAdView.h>

#include <QElapsedTimer>
#include <QQuickWindow>
#include <QSignalSpy>

using namespace znt;

namespace {

class Listener : public QObject, public ZNTAdViewDelegate
{
    Q_OBJECT
    Q_INTERFACES(ZNTAdViewDelegate)

public:
    void adViewDidClick() override { heard("click"); }
    void adViewDidClose() override { heard("close"); }
    void adViewDidExposure(QQuickItem *view) override
    {
        exposed = view;
        heard("exposure");
    }

    QByteArrayList events;
    QQuickItem *exposed = nullptr;
    std::function<void()> react;

private:
    void heard(const char *event)
    {
        events.append(event);
        if (react)
            react();
    }
};

struct Record
{
    QString title = {};
    QString source = {};
    QString logo = {};
    QStringList images = {};

    ZNTFeedAdDataPtr shared() const
    {
        const auto record = std::make_shared<ZNTFeedAdData>();
        record->setTitle(title);
        record->setSource(source);
        record->setSourceLogo(logo);
        record->setImageUrls(images);
        return record;
    }
};

} // namespace

class TestTemplates : public QObject
{
    Q_OBJECT

private:
    test::TrustedExchange exchange;
    QQuickWindow window;
    Listener listener;
    std::unique_ptr<ZNTFeedAdView> view;

    std::unique_ptr<ZNTFeedAdView> create(int style, const QSizeF &size = {375, 200})
    {
        QQuickItem *made = ZNTFeedManager().createAdViewWithStyle(style, size);
        std::unique_ptr<ZNTFeedAdView> result(qobject_cast<ZNTFeedAdView *>(made));
        result->setDelegate(&listener);
        return result;
    }
    QQuickItem *part(const char *name) const
    {
        return view->findChild<QQuickItem *>(QLatin1String(name));
    }
    QVariant of(const char *name, const char *property) const
    {
        return part(name) ? part(name)->property(property) : QVariant();
    }
    QString picture(const char *file) const
    {
        return exchange.url(QLatin1String("/creatives/") + QLatin1String(file)).toString();
    }
    void tap(const char *name)
    {
        const QQuickItem *item = part(name);
        const QPointF at = item->mapToScene({item->width() / 2, item->height() / 2});
        QTest::mouseClick(&window, Qt::LeftButton, {}, at.toPoint());
        QCoreApplication::processEvents();
    }

private slots:
    void initTestCase()
    {
        window.resize(500, 400);
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
    }

    void init() { test::failOnWarnings(); }

    void cleanup()
    {
        view.reset();
        listener.react = {};
        QCoreApplication::processEvents();
        listener.events.clear();
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

    void laysOut_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<QSizeF>("size");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QRectF>("frame");
        const QSizeF row(375, 200);
        const auto add = [row](int style, const char *name, const QRectF &frame, QSizeF size = {}) {
            QTest::addRow("%d %s", style, name)
                << style << (size.isEmpty() ? row : size) << QString::fromLatin1(name) << frame;
        };
        const QRectF close(341, 12, 22, 22);
        const QRectF upperTitle(12, 12, 251, 44);
        for (const int style : {0, 1, 2, 3, 6, 7, 8})
            add(style, "closeButton", close);
        add(0, "adImageView", {12, 12, 351, 176});
        add(0, "adLabel", {306, 141, 30, 20});
        add(1, "adImageView", {12, 12, 351, 120});
        add(1, "titleLabel", {12, 140, 351, 44});
        add(1, "logoImageView", {313, 92, 30, 20});
        add(2, "titleLabel", upperTitle);
        add(2, "adImageView", {12, 68, 351, 120});
        add(2, "adLabel", {313, 92, 30, 20});
        add(3, "titleLabel", upperTitle);
        add(3, "adImageView", {12, 68, 351, 120});
        add(3, "adLabel", {303, 90, 36, 18});
        add(3, "logoImageView", {303, 90, 36, 18});
        add(4, "closeButton", {337.5, 15, 30, 30});
        add(4, "mainImageView", {15, 15, 345, 150});
        add(4, "adLabel", {307, 122, 30, 20});
        add(4, "titleLabel", {15, 180, 345, 40});
        add(5, "closeButton", {343, 10, 22, 22});
        add(5, "containerView", {12, 12, 351, 176});
        add(5, "adImageView", {0, 0, 351, 176});
        add(5, "overlayView", {0, 131, 351, 45});
        add(5, "titleLabel", {12, 12.5, 281, 20});
        add(5, "actionButton", {293, 7.5, 70, 30});
        add(5, "adLabel", {12, 12, 30, 20});
        add(6, "titleLabel", {12, 12, 321, 54});
        add(6, "imageContainer", {12, 78, 351, 117});
        add(6, "imageViews[2]", {2 * (335 / 3.0 + 8), 0, 335 / 3.0, 117});
        const QSizeF low(375, 100);
        add(7, "adImageView", {12, 0, 88, 100}, low);
        add(7, "titleLabel", {112, 12, 221, 76}, low);
        add(7, "closeButton", {341, 12, 22, 22}, low);
        add(7, "adLabel", {50, 72, 30, 20}, low);
        add(8, "adImageView", {287, 12, 76, 76}, low);
        add(8, "titleLabel", {12, 12, 251, 76}, low);
        add(8, "logoImageView", {38, 48, 30, 20}, low);
        add(3, "adImageView", {12, 68, 276, 220}, {300, 300});
    }

    void laysOut()
    {
        QFETCH(int, style);
        QFETCH(QSizeF, size);
        QFETCH(QString, name);
        QFETCH(QRectF, frame);
        view = create(style, size);
        view->setupWithAdsData(Record{.title = QString(60, u'宽')}.shared());
        const QQuickItem *item = part(qPrintable(name));
        QVERIFY(item);
        QCOMPARE(QRectF(item->position(), item->size()), frame);
    }

    void fitsIntoAnySize()
    {
        for (int style = 0; style < 9; ++style) {
            for (const QSizeF &size :
                {QSizeF(0, 0), QSizeF(375, 1), QSizeF(1, 375), QSizeF(9e5, 2)}) {
                view = create(style, size);
                view->setParentItem(window.contentItem());
                view->setupWithAdsData(Record{.title = QStringLiteral("t")}.shared());
                window.grabWindow();
            }
            view = create(style);
            view->resetHeight();
            QVERIFY(view->height() >= 100 && view->height() < 300);
        }
    }

    void fillsInWhatTheRecordHas()
    {
        for (int style = 0; style < 9; ++style) {
            view = create(style);
            const char *label = style == 6 ? "sourceLabel" : "adLabel";
            view->setupWithAdsData(nullptr);
            view->setupWithAdsData(Record{}.shared());
            if (style > 0)
                QVERIFY(of("titleLabel", "text").toString().startsWith(QStringLiteral("广告标题")));
            QCOMPARE(of(label, "text"), QStringLiteral("广告"));
            QVERIFY(part(label)->isVisible() && !part("logoImageView")->isVisible());

            view->setupWithAdsData(
                Record{QStringLiteral("<b>x</b>"), "Tea", QLatin1String("")}.shared());
            if (style > 0)
                QCOMPARE(of("titleLabel", "text"), QStringLiteral("<b>x</b>"));
            QCOMPARE(of(label, "text"), QStringLiteral("Tea"));
            QVERIFY(!part(label)->isVisible() && part("logoImageView")->isVisible());
        }
    }

    void loadsThePictures()
    {
        const QString slow = exchange.url(QStringLiteral("/slow.png")).toString();
        exchange.setAnswerAt(
            QStringLiteral("/slow.png"), {.status = 200, .delay = std::chrono::milliseconds(150)});
        view = create(6);
        view->setupWithAdsData(Record{.images = {slow}}.shared());
        view->setupWithAdsData(Record{.logo = picture("logo-tea.png"),
            .images = {picture("tea-wide.jpg"), picture("isle-wide.jpg")}}
                                   .shared());
        QTRY_VERIFY(of("logoImageView", "hasImage").toBool());
        for (const char *name : {"imageViews[0]", "imageViews[1]", "imageViews[2]"})
            QTRY_VERIFY(of(name, "hasImage").toBool());
        QCOMPARE(exchange.hits(QStringLiteral("/creatives/isle-wide.jpg")), 0);

        view->setupWithAdsData(Record{.logo = "file:///etc/hostname", .images = {"x"}}.shared());
        QVERIFY(!of("imageViews[0]", "hasImage").toBool());
        view->setupWithAdsData(Record{.images = {picture("tea-wide.jpg")}}.shared());
        view.reset(); // with its picture under way
        QTest::qWait(50);
    }

    void showsLongTextsAtOnce()
    {
        const auto record = Record{QString(100'000, u'宽'), QString(100'000, u'x')}.shared();
        view = create(1);
        view->setParentItem(window.contentItem());
        QElapsedTimer clock;
        clock.start();
        view->setupWithAdsData(record);
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
            QCOMPARE(listener.events, QByteArrayList({"exposure", "close"}));
            for (int i = 0; i < 3; ++i)
                view->setupWithAdsData(Record{}.shared());
            tap(inside);
            if (style == 5)
                tap("actionButton");
            const QByteArrayList clicks(style == 5 ? 2 : 1, "click");
            QCOMPARE(listener.events.mid(2), clicks);
            cleanup();
        }
    }

    void obeysTheKeyboard()
    {
        view = create(7);
        view->setParentItem(window.contentItem());
        view->setupWithAdsData(Record{}.shared());
        window.requestActivate();
        QTest::keyClick(&window, Qt::Key_Tab);
        QTest::keyClick(&window, Qt::Key_Return);
        QTest::keyClick(&window, Qt::Key_Escape);
        QTest::keyClick(&window, Qt::Key_Tab);
        QTest::keyClick(&window, Qt::Key_Space);
        QCoreApplication::processEvents();
        QCOMPARE(listener.events, QByteArrayList({"exposure", "click", "close", "close"}));
    }

    void tellsOfEachArrivalInAWindow()
    {
        view = create(0);
        QQuickItem screen;
        view->setParentItem(&screen);
        QCoreApplication::processEvents();
        QVERIFY(listener.events.isEmpty());
        screen.setParentItem(window.contentItem());
        QTRY_COMPARE(listener.events.size(), 1);
        QCOMPARE(listener.exposed, view.get());
        QQuickWindow other;
        screen.setParentItem(other.contentItem());
        screen.setParentItem(nullptr);
        QTRY_COMPARE(listener.events.size(), 2);

        screen.setParentItem(window.contentItem());
        listener.react = [this] { view.reset(); };
        QTRY_VERIFY(!view); // the delegate may destroy it then
    }
};

QTEST_MAIN(TestTemplates)
#include "tst_templates.moc"
