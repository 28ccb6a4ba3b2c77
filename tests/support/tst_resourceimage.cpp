#include "support/resourceimage.h"

#include "support/test.h"

using namespace znt;

// The host of this test brings "slide_icon_finger" (at two pixels a point), "own" and "broken".
class TestResourceImage : public QObject
{
    Q_OBJECT

private slots:
    void init() { test::failOnWarnings(); }

    void sizesAndPixels_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QSizeF>("size");
        QTest::addColumn<QSize>("pixels");
        QTest::newRow("the library's") << "slide_icon_bg" << QSizeF(375, 90) << QSize(375, 90);
        QTest::newRow("the host's instead of it")
            << "slide_icon_finger" << QSizeF(30, 30) << QSize(60, 60);
        QTest::newRow("the host's alone, no ending") << "own" << QSizeF(30, 30) << QSize(30, 30);
        QTest::newRow("no picture") << "broken" << QSizeF(0, 0) << QSize();
        QTest::newRow("none") << "nothing" << QSizeF(0, 0) << QSize();
    }
    void sizesAndPixels()
    {
        QFETCH(QString, name);
        QFETCH(QSizeF, size);
        QFETCH(QSize, pixels);
        ResourceImage image;
        image.setName(name);
        QCOMPARE(image.naturalSize(), size); // known at once
        QVERIFY(image.image().isNull());
        if (!pixels.isValid())
            return;
        QTRY_VERIFY(!image.image().isNull());
        QCOMPARE(image.image().size(), pixels);
        QCOMPARE(image.image().deviceIndependentSize(), size);
    }

    void onlyTheLatestNameCounts()
    {
        ResourceImage image;
        image.setName("slide_icon_bg");
        { // gone before its pixels come
            ResourceImage other;
            other.setName("slide_icon_bg");
        }
        image.setName("own");
        QTRY_VERIFY(!image.image().isNull());
        QThreadPool::globalInstance()->waitForDone();
        QCoreApplication::processEvents();
        QCOMPARE(image.image().size(), QSize(30, 30));
    }
};

QTEST_MAIN(TestResourceImage)
#include "tst_resourceimage.moc"
