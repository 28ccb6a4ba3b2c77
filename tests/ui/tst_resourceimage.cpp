#include "ui/resourceimage.h"

#include "support/test.h"

using namespace znt;

// The host of this test brings "slide_icon_finger" (at two pixels a point), "own" and "broken".
class TestResourceImage : public QObject
{
    Q_OBJECT

private slots:
    void init() { test::failOnWarnings(); }

    void sizesAndPixels()
    {
        const std::tuple<QString, QSizeF, QSize> rows[] = {
            {"slide_icon_bg", {375, 90}, {375, 90}},   // the library's
            {"slide_icon_finger", {30, 30}, {60, 60}}, // the host's instead of it
            {"own", {30, 30}, {30, 30}},               // the host's alone, no ending
            {"broken", {0, 0}, {}}, {"nothing", {0, 0}, {}}};
        for (const auto &[name, size, pixels] : rows) {
            ResourceImage image;
            image.setName(name);
            QCOMPARE(image.naturalSize(), size); // known at once
            QVERIFY(image.image().isNull());
            if (!pixels.isValid())
                continue;
            QTRY_VERIFY(!image.image().isNull());
            QCOMPARE(image.image().size(), pixels);
            QCOMPARE(image.image().deviceIndependentSize(), size);
        }
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
