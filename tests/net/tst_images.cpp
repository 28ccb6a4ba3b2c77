#include "net/imagedecoder.h"
#include "net/remoteimage.h"

#include "support/exchangetest.h"
#include "support/pictures.h"

using namespace znt;
using namespace znt::test;

namespace {

// What a header says need not be true.
QByteArray jpegAnnouncing(quint16 width, quint16 height)
{
    QByteArray jpeg = written(twoHalves({2, 2}), "jpg");
    char *const header = jpeg.data() + jpeg.indexOf("\xff\xc0");
    qToBigEndian(height, header + 5);
    qToBigEndian(width, header + 7);
    return jpeg;
}

} // namespace

class TestImages : public QObject
{
    Q_OBJECT

private:
    TrustedExchange exchange;

    QString serve(const QString &path, const QByteArray &body, int status = 200)
    {
        exchange.setAnswerAt(path, {.body = body, .status = status});
        return exchange.at(path);
    }

private slots:
    void init() { failOnWarnings(); }

    void theBytesTellTheFormat()
    {
        // A red and a blue picture follow each other.
        QByteArrayList files{QByteArray::fromHex(
            "4749463839610200010080000000ff000000ff21f90400000000002c000000000200010000020244"
            "0a0021f90400000000002c0000000002000100000202844b003b")};
        for (const char *format : {"png", "jpg", "webp"})
            files.append(written(twoHalves({40, 20}), format));
        for (const QByteArray &bytes : files) {
            const QImage image = decodedImage(bytes);
            QCOMPARE(image.format(), QImage::Format_RGB32);
            QCOMPARE(image.width(), 2 * image.height());
        }
    }

    void decodesForTheScreen()
    {
        QImage red(3, 3, QImage::Format_ARGB32);
        red.fill(QColor(255, 0, 0, 128));
        const QImage premultiplied = decodedImage(written(red));
        QCOMPARE(premultiplied.format(), QImage::Format_ARGB32_Premultiplied);
        QCOMPARE(*reinterpret_cast<const QRgb *>(premultiplied.constBits()), 0x80800000u);

        const QImage upright = decodedImage(
            written(twoHalves({40, 20}), "jpg", QImageIOHandler::TransformationRotate90));
        QCOMPARE(upright.size(), QSize(20, 40));
        QVERIFY(upright.pixelColor(10, 5).red() > 240 && upright.pixelColor(10, 5).blue() < 16);
        QVERIFY(upright.pixelColor(10, 35).blue() > 240);

        QCOMPARE(decodedImage(written(twoHalves({8192, 30}))).size(), QSize(4096, 15));
        QCOMPARE(decodedImage(written(twoHalves({1, 5000}), "jpg")).size(), QSize(1, 4096));
    }

    void otherThingsAreNoPictures()
    {
        const QImage image = twoHalves({40, 20});
        const QByteArray png = written(image), jpeg = written(image, "jpg");
        const QByteArray svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" "
                               "height=\"9\"><rect/></svg>";
        for (const QByteArray &bytes : {QByteArray(), QByteArray("<html>404</html>"), svg,
                 written(image, "bmp"), png.left(8), png.left(png.size() / 2),
                 jpegAnnouncing(8192, 4097), QByteArray("GIF89a") + QByteArray(32, 0),
                 jpegAnnouncing(65500, 65500), jpeg + QByteArray("\xff\xda").repeated(1000)})
            QVERIFY2(decodedImage(bytes).isNull(), bytes.left(100).toHex().constData());
    }

    void pictureAndCopyArriveOnTheMainThread()
    {
        const QString url = serve("/picture", written(twoHalves({40, 20})));
        QImage picture, copy;
        QThread *copiedOn = nullptr, *doneOn = nullptr;
        fetchImageAndCopy(
            url, this,
            [&](const QImage &image) {
                copiedOn = QThread::currentThread();
                return image.mirrored(true, false);
            },
            [&](const QImage &image, const QImage &made) {
                picture = image;
                copy = made;
                doneOn = QThread::currentThread();
            });
        QTRY_COMPARE(picture.size(), QSize(40, 20));
        QCOMPARE(copy.pixelColor(0, 0), QColor(Qt::blue));
        QCOMPARE(doneOn, thread());
        QVERIFY(copiedOn && copiedOn != thread());
        QCOMPARE(exchange.requests("/picture").size(), 1);
    }

    void failureIsSilent()
    {
        const QByteArray png = written(twoHalves({40, 20}));
        exchange.setAnswerAt(
            "/cut", {.body = png, .delivery = sandbox::Answer::Delivery::Truncated});
        for (const QString &url : {serve("/missing", png, 404), serve("/broken", "no picture"),
                 exchange.at("/cut"), QString("https://127.0.0.1:1/a.png"),
                 QUrl::fromLocalFile(saved(QDir::temp().filePath("local.png"), png)).toString(),
                 "data:image/png;base64," + QString(png.toBase64()), QString()}) {
            bool called = false;
            auto held = std::make_shared<int>();
            const std::weak_ptr<int> watched = held;
            fetchImage(url, this, [&called, held](const QImage &) { called = true; });
            held.reset();
            QTRY_VERIFY(watched.expired()); // it has come to its end
            QVERIFY2(!called, qPrintable(url));
        }
    }

    void aDeadReceiverGetsNothing()
    {
        const QString url = serve("/late", written(twoHalves({40, 20})));
        auto receiver = std::make_unique<QObject>();
        bool called = false;
        auto held = std::make_shared<int>();
        const std::weak_ptr<int> watched = held;
        fetchImageAndCopy(
            url, receiver.get(),
            [&receiver, this](const QImage &image) {
                QMetaObject::invokeMethod(this, [&] { receiver.reset(); });
                return image;
            },
            [&called, held](const QImage &, const QImage &) { called = true; });
        held.reset();
        QTRY_VERIFY(watched.expired());
        QVERIFY(!receiver && !called);
    }
};

QTEST_MAIN(TestImages)
#include "tst_images.moc"
