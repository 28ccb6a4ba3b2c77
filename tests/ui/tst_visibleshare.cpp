#include "support/test.h"
#include "ui/visibleshare.h"

using namespace znt;
using namespace znt::test;

namespace {

constexpr QSize windowSize(120, 90);
constexpr QRgb adColor = 0xffff0000;

class Box : public QQuickItem
{
public:
    Box(QQuickItem *parent, const QRectF &frame, QRgb color = 0)
        : QQuickItem(parent)
        , m_color(color)
    {
        setPosition(frame.topLeft());
        setSize(frame.size());
        setFlag(ItemHasContents, qAlpha(color) > 0);
    }

protected:
    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *) override
    {
        auto *rectangle = node ? static_cast<QSGSimpleRectNode *>(node) : new QSGSimpleRectNode;
        rectangle->setRect(QRectF(QPointF(), size()));
        rectangle->setColor(QColor::fromRgb(m_color));
        return rectangle;
    }

private:
    const QRgb m_color;
};

} // namespace

class TestVisibleShare : public QObject
{
    Q_OBJECT

private:
    ShownWindow window{windowSize};
    QRandomGenerator random{1};

    int between(int low, int high) { return random.bounded(low, high + 1); }
    bool oneIn(int count) { return random.bounded(count) == 0; }

    // In steps that stay whole pixels when they are halved twice, about their middle too.
    QRectF randomFrame()
    {
        return QRectF(
            8 * between(-5, 10), 8 * between(-5, 8), 8 * between(1, 10), 8 * between(1, 10));
    }

    // A chain of boxes with an ad at its end; nothing is drawn but the ad.
    Box *randomTree(QQuickItem *root)
    {
        QQuickItem *at = root;
        int scalings = 2;
        for (int depth = between(0, 5); depth > 0; --depth) {
            at = new Box(at, randomFrame());
            at->setClip(oneIn(3));
            at->setTransformOrigin(QQuickItem::TransformOrigin(between(0, 8)));
            if (oneIn(5) && scalings-- > 0)
                at->setScale(oneIn(2) ? 0.5 : 2);
            if (oneIn(20))
                at->setOpacity(oneIn(2) ? 0 : 0.5);
            if (oneIn(25))
                at->setVisible(false);
        }
        return new Box(at, randomFrame(), adColor);
    }

    // In percent of the ad's area, from the pixels of a picture that are not the window's white.
    double drawnShare(const QImage &picture, const Box *ad) const
    {
        double pixels = 0;
        for (int y = 0; y < picture.height(); ++y) {
            const auto *line = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
            pixels += std::count_if(
                line, line + picture.width(), [](QRgb pixel) { return qGreen(pixel) < 250; });
        }
        return pixels / (ad->width() * ad->height()) * 100;
    }

private slots:
    void init() { failOnWarnings(); }

    void agreesWithTheDrawnPixels()
    {
        int seen = 0;
        for (int i = 0; i < 5000; ++i) {
            Box root(window.contentItem(), QRectF(QPointF(), windowSize));
            const Box *ad = randomTree(&root);
            const std::optional<double> share = visibleShare(ad);
            const double drawn = drawnShare(window.grabWindow(), ad);
            for (const double ratio : {0.0, 10.0, 50.0, 70.0, 100.0}) {
                const bool counts = share && *share >= ratio;
                QVERIFY2(counts == (drawn > 0 && drawn >= ratio - 1e-9),
                    qPrintable(QString("tree %1: %2 of %3 at %4")
                                   .arg(i)
                                   .arg(share.value_or(-1))
                                   .arg(drawn)
                                   .arg(ratio)));
                seen += counts;
            }
        }
        QVERIFY(seen > 3000 && seen < 20000); // the trees are of all kinds
    }

    // Rows beyond the edge of a view are not drawn, whether it clips or not.
    void agreesWithTheDrawnPixelsOfItemViews()
    {
        QQmlEngine engine;
        const QByteArray row = "delegate: Rectangle { objectName: 'row'; implicitWidth: 30; "
                               "implicitHeight: 20; width: 30; height: 20; color: 'transparent' } ";
        for (const QByteArray &view : {QByteArray("ListView { cacheBuffer: 100; model: 12;"),
                 QByteArray("ListView { cacheBuffer: 100; model: 12; orientation: Qt.Horizontal;"),
                 QByteArray("ListView { cacheBuffer: 100; model: 12; displayMarginBeginning: 15;"
                            "verticalLayoutDirection: ListView.BottomToTop;"),
                 QByteArray(
                     "GridView { cacheBuffer: 100; model: 30; cellWidth: 30; cellHeight: 14;"),
                 QByteArray("GridView { cacheBuffer: 100; model: 30; cellWidth: 36; cellHeight: 30;"
                            "flow: GridView.FlowTopToBottom;"),
                 QByteArray(
                     "GridView { cacheBuffer: 100; model: 30; cellWidth: 30; cellHeight: 40;"),
                 QByteArray("TableView { model: 12;")}) {
            const auto object = created(
                &engine, "import QtQuick; " + view + row + "x: 25; y: 22; width: 60; height: 40 }");
            auto *list = qobject_cast<QQuickItem *>(object.get());
            list->setParentItem(window.contentItem());
            auto *content = list->property("contentItem").value<QQuickItem *>();
            int rows = 0;
            for (int i = 0; i < 40; ++i) {
                list->setClip(oneIn(2));
                list->setProperty("contentX", content->height() > 100 ? 0 : between(0, 300) / 2.0);
                list->setProperty(
                    "contentY", list->property("originY").toDouble() + between(0, 300) / 2.0);
                window.grabWindow();
                for (QQuickItem *item : content->childItems()) {
                    if (item->objectName() != "row")
                        continue;
                    ++rows;
                    item->setProperty("color", QColor(Qt::red));
                    const QImage picture = window.grabWindow();
                    item->setProperty("color", QColor(Qt::transparent));
                    const Box ad(nullptr, QRectF(QPointF(), item->size()));
                    const double drawn = drawnShare(picture, &ad);
                    const double share = visibleShare(item).value_or(0);
                    QVERIFY2(qAbs(drawn - share) < 12 && (share > 0 || drawn == 0),
                        qPrintable(QString("%1: %2, drawn %3, at %4 %5")
                                       .arg(view)
                                       .arg(share)
                                       .arg(drawn)
                                       .arg(item->x() + content->x())
                                       .arg(item->y() + content->y())));
                }
            }
            QVERIFY2(rows > 100, view.constData());
        }
    }

    void aWholeViewIsAHundredPercent()
    {
        Box root(window.contentItem(), QRectF(0, 0, 119.7, 89.9));
        root.setClip(true);
        for (int i = 0; i < 300; ++i) {
            QQuickItem *at = &root;
            for (int depth = 0; depth < 3; ++depth)
                at = new Box(at, QRectF(random.bounded(20.0), random.bounded(20.0), 31.1, 22.3));
            QCOMPARE(visibleShare(at), std::optional(100.0));
            at->setSize(at->size() * random.bounded(1.0));
            QVERIFY(*visibleShare(at) == 100);
        }
    }

    void turnsAndScalesAsQtDoes()
    {
        int agreeing = 0, differing = 0;
        for (int i = 0; i < 500; ++i) {
            Box root(window.contentItem(), QRectF(QPointF(), windowSize));
            Box *ad = randomTree(&root);
            for (QQuickItem *at = ad; at != &root; at = at->parentItem()) {
                at->setRotation(between(0, 359));
                at->setScale(between(2, 8) / 4.0);
                at->setOpacity(1);
                at->setVisible(true);
            }
            QRectF part(QPointF(), ad->size());
            for (QQuickItem *at = ad; at != &root && !part.isEmpty(); at = at->parentItem()) {
                part = at->mapRectToItem(at->parentItem(), part);
                if (at->parentItem()->clip())
                    part &= at->parentItem()->boundingRect();
            }
            part &= root.boundingRect();
            const double share = part.width() * part.height() / ad->width() / ad->height() * 100;
            const double found = visibleShare(ad).value_or(0);
            // Edges that touch may leave a sliver, or not, when they are turned.
            const bool agrees = qAbs(found - share) < 1e-6;
            agreeing += agrees && share > 0;
            differing += !agrees;
        }
        QVERIFY2(agreeing > 150 && differing <= 2, qPrintable(QString::number(differing)));
    }

    void heedsTransformLists()
    {
        QQmlEngine engine;
        const auto object = created(&engine, R"(import QtQuick
            Item { width: 40; height: 40; transform: Translate { x: 100 }
                Item { width: 40; height: 40 } })");
        auto *item = qobject_cast<QQuickItem *>(object.get());
        item->setParentItem(window.contentItem());
        QCOMPARE(visibleShare(item->childItems().first()), std::optional(50.0));
    }

    void measuresNeighboursTogether()
    {
        for (int i = 0; i < 200; ++i) {
            Box root(window.contentItem(), QRectF(QPointF(), windowSize));
            VisibleShares shares;
            QQuickItem *above = &root;
            for (int k = 0; k < 12; ++k) {
                const Box *ad = randomTree(above);
                QCOMPARE(shares.of(ad), visibleShare(ad));
                if (oneIn(2))
                    above = ad->parentItem();
            }
        }
    }

    void knowsWindowsAndEmptyItems()
    {
        QVERIFY(!visibleShare(nullptr));
        Box ad(nullptr, QRectF(0, 0, 10, 10));
        QVERIFY(!visibleShare(&ad));
        ad.setParentItem(window.contentItem());
        QCOMPARE(visibleShare(&ad), std::optional(100.0));
        ad.setOpacity(0.01);
        QCOMPARE(visibleShare(&ad), std::optional(100.0));
        ad.setSize({0, 10});
        QVERIFY(!visibleShare(&ad));
        ad.setSize({10, 10});
        window.contentItem()->setOpacity(0);
        QVERIFY(!visibleShare(&ad));
        window.contentItem()->setOpacity(1);
        window.hide();
        QVERIFY(!visibleShare(&ad));
        QCOMPARE(shareInWindow(&ad), std::optional(100.0));
        window.show();
        QCOMPARE(visibleShare(&ad), std::optional(100.0));

        // What lies in a window that lies in another is seen with it.
        ShownWindow outer({200, 200});
        for (int i = 0; i < 2; ++i)
            QTest::ignoreMessage(QtWarningMsg, "This plugin does not support setParent!");
        window.setParent(&outer);
        QTRY_COMPARE(visibleShare(&ad), std::optional(100.0));
        outer.hide();
        QVERIFY(!visibleShare(&ad));
        window.setParent(nullptr);
    }
};

QTEST_MAIN(TestVisibleShare)
#include "tst_visibleshare.moc"
