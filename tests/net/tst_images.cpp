#include "net/imagedecoder.h"
#include "net/remoteimage.h"

#include "support/exchangetest.h"
#include "support/pictures.h"

#include <zlib.h>

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

// A green and a blue picture that follow each other.
const QByteArray animatedGif = QByteArray::fromHex(
    "4749463839610200010080000000ff000000ff21f90400000000002c000000000200010000020244"
    "0a0021f90400000000002c0000000002000100000202844b003b");

template <typename T>
QByteArray big(T number)
{
    QByteArray bytes(sizeof(T), '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

QByteArray little(quint32 number, int size = 4)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(number, bytes.data());
    return bytes.left(size);
}

QByteArray inserted(QByteArray into, const QByteArray &bytes, qsizetype at)
{
    return into.insert(at, bytes);
}

QByteArray pngChunk(const QByteArray &type, const QByteArray &data)
{
    const QByteArray body = type + data;
    const auto checksum = crc32(0, reinterpret_cast<const Bytef *>(body.data()), body.size());
    return big(quint32(data.size())) + body + big(quint32(checksum));
}

QByteArray webpChunk(const QByteArray &type, const QByteArray &data)
{
    return type + little(data.size()) + data + QByteArray(data.size() % 2, '\0');
}

constexpr qsizetype afterPngHeader = 33, afterJpegStart = 2, afterWebpStart = 12,
                    afterGifStart = 19;

QByteArray deflated(qsizetype size)
{
    return qCompress(QByteArray(size, 'a'), 9).mid(4);
}

// Each unit of the rows stands for eight runs of 258 bytes.
QByteArray pngOfRuns(int units)
{
    const QByteArray png = written(twoHalves({4, 4}));
    const QByteArray rows = QByteArray::fromHex("7801631805")
        + QByteArray::fromHex("a360148c8251300a46c1281805").repeated(units);
    return png.left(png.indexOf("IDAT") - 4) + pngChunk("IDAT", rows) + png.right(12);
}

// The last scan, which refines every coefficient, is repeated.
QByteArray jpegOfScans(int count)
{
    QImage noise(2000, 2000, QImage::Format_RGB32);
    QRandomGenerator(1).fillRange(reinterpret_cast<quint32 *>(noise.bits()), 2000 * 2000);
    QBuffer buffer;
    QImageWriter writer(&buffer, "jpg");
    writer.setProgressiveScanWrite(true);
    writer.write(noise);
    const QByteArray scan = buffer.data().mid(buffer.data().lastIndexOf("\xff\xda"));
    return buffer.data().chopped(2) + scan.chopped(2).repeated(count);
}

// Each code stands for a run longer by a pixel than the one before, up to 4090 pixels.
QByteArray gifOfRuns(quint16 side, int codes)
{
    QByteArray data;
    quint32 held = 4 | 0 << 3; // clear, and a pixel of the first color
    int heldBits = 6, bits = 3;
    for (int i = 0, code = 6; i < codes; ++i, code = qMin(code + 1, 4095)) {
        held |= code << heldBits;
        for (heldBits += bits; heldBits >= 8; heldBits -= 8, held >>= 8)
            data += char(held);
        bits = code + 1 == 1 << bits && bits < 12 ? bits + 1 : bits;
    }
    QByteArray blocks;
    for (qsizetype at = 0; at < data.size(); at += 255)
        blocks += char(data.mid(at, 255).size()) + data.mid(at, 255);
    const QByteArray size = little(side, 2) + little(side, 2);
    return "GIF89a" + size + QByteArray("\x80\0\0\xff\0\0\0\0\xff,\0\0\0\0", 14) + size
        + QByteArray("\0\x02", 2) + blocks + QByteArray("\0;", 2);
}

// What the process held at most since this was last asked.
qint64 peakMemory()
{
    const QByteArray status = contents("/proc/self/status");
    QFile reset("/proc/self/clear_refs");
    if (reset.open(QIODevice::WriteOnly))
        reset.write("5");
    return status.mid(status.indexOf("VmHWM:") + 6).trimmed().split(' ').first().toLongLong()
        * 1024;
}

// Ten times the pixels' bytes, and what a sanitizer may need.
bool decodesWithinBounds(const QByteArray &bytes)
{
    constexpr qint64 allowance = 64 * 1024 * 1024, second = CLOCKS_PER_SEC;
    peakMemory();
    const qint64 before = peakMemory();
    const clock_t start = clock();
    const QImage image = decodedImage(bytes);
    const clock_t taken = clock() - start;
    const qint64 memory = peakMemory() - before;
    const qint64 pixels = image.isNull() ? maximumPixels : qint64(image.width()) * image.height();
    return taken < second && memory < allowance + 10 * 4 * pixels;
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
        QByteArrayList files{animatedGif};
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

        QCOMPARE(decodedImage(written(twoHalves({8192, 30}))).size(), QSize(4096, 15));
        QCOMPARE(decodedImage(written(twoHalves({1, 5000}), "jpg")).size(), QSize(1, 4096));
    }

    void otherThingsAreNoPictures()
    {
        const QImage image = twoHalves({40, 20});
        const QByteArray png = written(image);
        const QByteArray svg = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"9\" "
                               "height=\"9\"><rect/></svg>";
        for (const QByteArray &bytes :
            {QByteArray(), QByteArray("<html>404</html>"), svg, written(image, "bmp"), png.left(8),
                png.left(png.size() / 2), jpegAnnouncing(4096, 4097),
                QByteArray("GIF89a") + QByteArray(32, 0), jpegAnnouncing(65500, 65500)})
            QVERIFY2(decodedImage(bytes).isNull(), bytes.left(100).toHex().constData());
    }

    void orientationStays()
    {
        const QImage image = twoHalves({40, 20}).copy(0, 0, 40, 30);
        for (int orientation = 0; orientation < 8; ++orientation) {
            QByteArray jpeg = written(image, "jpg", QImageIOHandler::Transformations(orientation));
            QBuffer buffer(&jpeg);
            QImageReader reader(&buffer);
            reader.setAutoTransform(true);
            QCOMPARE(decodedImage(jpeg), reader.read());
        }
        const QByteArray turned = QByteArray::fromHex(
            "ffe1002245786966000049492a000800000001001201030001000000060000000000");
        const QByteArray jpeg = inserted(written(image, "jpg"), turned + QByteArray(2, '\0'), 2);
        QCOMPARE(decodedImage(jpeg).size(), QSize(30, 40));
    }

    void metadataDoesNotDraw()
    {
        const QImage image = twoHalves({40, 20});
        const QByteArray note(300, 'n');
        const QByteArray segment = "\xff\xe2" + big(quint16(note.size() + 2)) + note;
        const struct
        {
            QByteArray bytes, metadata;
            qsizetype at;
        } cases[] = {
            {written(image), pngChunk("tEXt", note) + pngChunk("iCCP", note), afterPngHeader},
            {written(image, "jpg"), segment, afterJpegStart},
            {written(image, "webp"), webpChunk("EXIF", note), afterWebpStart},
            {animatedGif, QByteArray("!\xfe\3abc\0", 7), afterGifStart},
        };
        for (const auto &[bytes, metadata, at] : cases) {
            QVERIFY(!decodedImage(bytes).isNull());
            QCOMPARE(decodedImage(inserted(bytes, metadata, at)), decodedImage(bytes));
        }
    }

    void firstPictureOfAnAnimation()
    {
        const auto frame = [](QColor color) {
            QImage image(8, 8, QImage::Format_RGB32);
            image.fill(color);
            const QByteArray header = QByteArray(6, '\0') + little(7, 3) + little(7, 3);
            return webpChunk("ANMF", header + little(9) + written(image, "webp").mid(12));
        };
        const QByteArray body = "WEBP" + webpChunk("VP8X", little(2) + little(7, 3) + little(7, 3))
            + webpChunk("ANIM", QByteArray(6, '\0')) + frame(Qt::red) + frame(Qt::blue);
        QCOMPARE(decodedImage(webpChunk("RIFF", body)).pixelColor(4, 4), QColor(Qt::red));
        QCOMPARE(decodedImage(animatedGif).pixelColor(0, 0), QColor(Qt::green));
    }

    void hostilePicturesStayWithinBounds()
    {
        constexpr qsizetype lessThanLibpngsLimit = 7'900'000;
        const QByteArray png = written(twoHalves({4, 4}));
        const QByteArray text = QByteArray("k\0\0", 3) + deflated(lessThanLibpngsLimit);
        const QMap<QByteArray, QByteArray> pictures{
            {"png: a text of 2 GB", png.left(afterPngHeader) + big(quint32(INT_MAX)) + "tEXtabcd"},
            {"png: texts that inflate",
                inserted(png, pngChunk("zTXt", text).repeated(100), afterPngHeader)},
            {"png: rows that never end", pngOfRuns(1'000'000)},
            {"jpeg: scans", jpegOfScans(60)},
            {"gif: runs beyond the picture", gifOfRuns(4, 300'000)},
            {"gif: an image beyond the screen",
                gifOfRuns(9, 300'000).replace(23, 4, "\xff\xff\xff\xff")},
        };
        for (auto picture = pictures.begin(); picture != pictures.end(); ++picture)
            QVERIFY2(decodesWithinBounds(picture.value()), picture.key().constData());
    }

    void damagedPicturesStayWithinBounds()
    {
        QLoggingCategory::setFilterRules("qt.gui.imageio*=false");
        QRandomGenerator random(1);
        for (QByteArray bytes : {written(twoHalves({40, 20})), written(twoHalves({40, 20}), "jpg"),
                 written(twoHalves({40, 20}), "webp"), animatedGif}) {
            for (int i = 0; i < 150; ++i) {
                QByteArray damaged =
                    bytes.left(bytes.size() - (i % 2) * random.bounded(int(bytes.size()) / 2));
                for (int flips = random.bounded(6); flips >= 0; --flips)
                    damaged.data()[random.bounded(int(damaged.size()))] ^= 1 << random.bounded(8);
                QVERIFY2(decodesWithinBounds(damaged), damaged.toHex().constData());
            }
        }
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
