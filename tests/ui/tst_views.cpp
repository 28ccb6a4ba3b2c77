#include "ui/imageview.h"

#include "support/hand.h"
#include "support/pictures.h"
#include "support/test.h"

using namespace znt;
using namespace znt::test;

class TestViews : public QObject
{
    Q_OBJECT

private:
    QQmlEngine engine;

    // With the item that the text, a file of the module, describes.
    std::unique_ptr<QQuickWindow> windowWith(const QByteArray &qml)
    {
        auto window = std::make_unique<ShownWindow>(QSize(200, 200));
        auto *item =
            qobject_cast<QQuickItem *>(created(&engine, "import QtQuick; import ZNTAds; " + qml,
                QUrl("qrc:/qt-project.org/imports/ZNTAds/Test.qml"))
                                           .release());
        item->setParent(window.get());
        item->setParentItem(window->contentItem());
        return window;
    }
    static QQuickItem *itemOf(const std::unique_ptr<QQuickWindow> &window)
    {
        return window->contentItem()->childItems().constFirst();
    }

private slots:
    void init() { failOnWarnings(); }

    void contentModes()
    {
        // Above the middle of the left half, at the left edge's middle, 30 left of the middle.
        const QColor red(Qt::red), white(Qt::white);
        const std::tuple<QByteArray, QColor, QColor, QColor> rows[] = {
            {"scaleToFill", red, red, red}, {"aspectFit", white, red, red},
            {"aspectFill", red, red, red}, {"center", white, white, white}};
        for (const auto &[mode, top, left, beside] : rows) {
            const auto window = windowWith(
                "ImageView { x: 10; y: 10; width: 100; height: 100; contentMode: '" + mode + "' }");
            auto *view = qobject_cast<ImageView *>(itemOf(window));
            view->setImage(twoHalves({40, 20}));
            QTRY_VERIFY(view->isReady());
            const QImage shot = window->grabWindow();
            QCOMPARE(shot.pixelColor(40, 15), top);
            QCOMPARE(shot.pixelColor(12, 60), left);
            QCOMPARE(shot.pixelColor(30, 60), beside);
            QCOMPARE(shot.pixelColor(50, 60), red);
            QCOMPARE(shot.pixelColor(70, 60), QColor(Qt::blue));
            QCOMPARE(shot.pixelColor(60, 115), white); // outside
            QCOMPARE(view->naturalSize(), QSizeF(40, 20));
        }
    }

    void cornersAreRoundedAndSmooth()
    {
        const auto window = windowWith("ImageView { width: 100; height: 100; cornerRadius: 30; "
                                       "contentMode: 'aspectFill' }");
        auto *view = qobject_cast<ImageView *>(itemOf(window));
        view->setImage(twoHalves({40, 20}));
        QTRY_VERIFY(view->isReady());
        const QImage shot = window->grabWindow();
        QCOMPARE(shot.pixelColor(2, 2), QColor(Qt::white));
        QCOMPARE(shot.pixelColor(40, 2), QColor(Qt::red));
        QCOMPARE(shot.pixelColor(2, 50), QColor(Qt::red));
        QSet<int> shades;
        for (int x = 0; x < 30; ++x)
            shades.insert(shot.pixelColor(x, 5).green());
        QVERIFY(shades.size() > 2);
    }

    void imageViewFollowsWhatHappensToIt()
    {
        ImageView view;
        for (const QSizeF &size : {QSizeF(0, 50), QSizeF(qQNaN(), qQNaN()), QSizeF(-5, 5),
                 QSizeF(1e9, 1e9), QSizeF(50, 50)}) {
            view.setSize(size);
            view.setImage(twoHalves({30, 30}));
            view.setContentMode("aspectFill");
            QTRY_VERIFY(view.isReady());
        }
        view.setContentMode("upside down");
        QCOMPARE(view.contentMode(), "aspectFill");
        for (int i = 0; i < 2; ++i) {
            ShownWindow window({60, 60});
            view.setParentItem(window.contentItem());
            QTRY_VERIFY(view.isReady());
            QCOMPARE(window.grabWindow().pixelColor(5, 5), QColor(Qt::red));
            view.setImage({});
            QTRY_VERIFY(view.isReady());
            QCOMPARE(window.grabWindow().pixelColor(5, 5), QColor(Qt::white));
            view.setImage(twoHalves({20, 20}));
            QTRY_VERIFY(view.isReady());
            view.setHidden(true);
            QCOMPARE(window.grabWindow().pixelColor(5, 5), QColor(Qt::white));
            view.setHidden(false);
            view.setParentItem(nullptr);
        }
        ImageView *brief = new ImageView;
        brief->setSize({500, 500});
        brief->setImage(twoHalves({30, 30}));
        QCoreApplication::processEvents();
        delete brief; // while the pool is at work
    }

    void labelsAreNoMarkup()
    {
        const auto window = windowWith(
            "Label { width: 200; height: 40; fontSize: 15; lines: 2; backgroundColor: '#fff'; "
            "text: '<img src=\"a.png\">\\n广告 <b>b</b>' }");
        const QQuickItem *label = itemOf(window);
        QCOMPARE(label->property("lineCount").toInt(), 2);
        QCOMPARE(label->property("truncated").toBool(), false);
        window->grabWindow(); // a picture asked for would warn
    }

    void aButtonTakesTheTapAloneAndLetsAListFlick()
    {
        const auto window = windowWith(R"(
            Flickable {
                id: root; width: 200; height: 200; contentHeight: 900
                property int taps: 0
                property int clicks: 0
                TapHandler { onTapped: ++root.taps }
                Button {
                    objectName: "button"; x: 20; y: 20; width: 50; height: 50; text: "×"
                    onClicked: ++root.clicks
                }
            })");
        QQuickItem *root = itemOf(window);
        auto *button = root->findChild<QQuickItem *>("button");
        const auto tap = [&](const QPoint &at) {
            QTest::mouseClick(window.get(), Qt::LeftButton, {}, at);
            return QPair(root->property("taps").toInt(), root->property("clicks").toInt());
        };
        QCOMPARE(tap({45, 45}), QPair(0, 1));
        QVERIFY(!button->hasActiveFocus());
        QCOMPARE(tap({100, 100}), QPair(1, 1));
        dragMouse(window.get(), {45, 60}, {0, -40});
        QVERIFY(root->property("contentY").toReal() > 0);
        root->setProperty("contentY", 0);
        QTest::keyClick(window.get(), Qt::Key_Tab);
        QVERIFY(button->hasActiveFocus());
        for (const int key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
            QTest::keyClick(window.get(), Qt::Key(key));
        QCOMPARE(root->property("clicks").toInt(), 4);
        button->setProperty("clickable", false);
        QCOMPARE(tap({45, 45}), QPair(1, 4));
        button->setProperty("clickable", true);
        button->setProperty("hidden", true);
        QCOMPARE(tap({45, 45}), QPair(2, 4));
    }
};

QTEST_MAIN(TestViews)
#include "tst_views.moc"
