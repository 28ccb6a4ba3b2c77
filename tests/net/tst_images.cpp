#include "net/imagedecoder.h"
#include "net/remoteimage.h"

#include "support/exchangetest.h"
#include "support/pictures.h"

#include <sys/resource.h>
#include <zlib.h>

#include <bit>
#include <random>

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

QByteArray pngChunk(const QByteArray &type, const QByteArray &data)
{
    QByteArray chunk(4, 0);
    qToBigEndian(quint32(data.size()), chunk.data());
    chunk += type + data;
    QByteArray check(4, 0);
    const auto *checked = reinterpret_cast<const Bytef *>(chunk.constData()) + 4;
    qToBigEndian(quint32(crc32(0, checked, uInt(chunk.size() - 4))), check.data());
    return chunk + check;
}

// After the header.
QByteArray pngWith(const QByteArray &chunks)
{
    return written(twoHalves({40, 20})).insert(33, chunks);
}

// As zlib writes them: a few bytes that expand to megabytes.
QByteArray packedZeros(qsizetype count)
{
    return qCompress(QByteArray(count, 0), 9).mid(4);
}

// A picture of two pixels whose codes stand for thousands each, ten gigabytes in all.
QByteArray gifOfLongCodes()
{
    QByteArray codes;
    quint32 bits = 0;
    int count = 0;
    const auto put = [&](int code, int width) {
        bits |= quint32(code) << count;
        for (count += width; count >= 8; count -= 8, bits >>= 8)
            codes += char(bits);
    };
    put(4, 3); // clear
    put(0, 3);
    for (int code = 6; code < 4096; ++code) // each the one before and one pixel more
        put(code, int(std::bit_width(unsigned(code))));
    for (int i = 0; i < 2'500'000; ++i)
        put(4095, 12);
    QByteArray gif =
        QByteArray::fromHex("4749463839610200010080000000000000ffffff2c00000000020001000002");
    for (qsizetype i = 0; i < codes.size(); i += 255) {
        const QByteArray block = codes.mid(i, 255);
        gif += char(block.size());
        gif += block;
    }
    return gif + QByteArray::fromHex("003b");
}

QByteArray mutated(QByteArray bytes, std::mt19937 &random)
{
    for (unsigned i = random() % 6 + 1; i > 0; --i)
        bytes[qsizetype(random() % size_t(bytes.size()))] = char(random());
    return random() % 4 ? bytes : bytes.left(qsizetype(random() % size_t(bytes.size())));
}

qint64 peakMemory()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return qint64(usage.ru_maxrss) * 1024;
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
        for (const QByteArray &bytes :
            {QByteArray(), QByteArray("<html>404</html>"), svg, written(image, "bmp"), png.left(8),
                png.left(png.size() / 2), jpegAnnouncing(8192, 4097),
                QByteArray("GIF89a") + QByteArray(32, 0), jpegAnnouncing(65500, 65500)})
            QVERIFY2(decodedImage(bytes).isNull(), bytes.left(100).toHex().constData());
    }

    void whatDoesNotDrawIsLeftOut()
    {
        const QImage image = twoHalves({40, 20});
        QImage described = image;
        described.setText("Comment", QString(10'000, u'x'));
        const QByteArray jpeg = written(image, "jpg");
        const QByteArray comment = QByteArray::fromHex("fffe0004") + "hi";
        for (const QByteArray &bytes : {written(described),
                 pngWith(pngChunk("iCCP", QByteArray("k\0\0", 3) + "broken")), jpeg + "trailer",
                 QByteArray(jpeg).insert(2, comment + "\xff\xff"), jpeg.left(jpeg.size() - 2)}) {
            const QImage decoded = decodedImage(bytes);
            QVERIFY(decoded.pixelColor(5, 5).red() > 250 && decoded.pixelColor(5, 5).blue() < 5);
            QCOMPARE(decoded.text(), QString());
        }
        for (int i = 0; i < 8; ++i) {
            const auto transformation = QImageIOHandler::Transformation(i);
            const QByteArray turned = written(image, "jpg", transformation);
            QBuffer buffer;
            buffer.setData(turned);
            QImageReader reader(&buffer);
            reader.setAutoTransform(true);
            const QImage wanted = reader.read();
            QCOMPARE(decodedImage(turned).convertedTo(wanted.format()), wanted);
        }
    }

    void noPictureCostsMoreThanItsPixels()
    {
        const QByteArray jpeg = written(twoHalves({1000, 1000}), "jpg");
        const QByteArray scan = jpeg.mid(jpeg.indexOf("\xff\xda")).chopped(2);
        const QByteArray text = QByteArray("k\0\0", 3) + packedZeros(8'000'000);
        QByteArrayList files{pngWith(QByteArray::fromHex("7fffffff") + "tEXt"),
            pngWith(pngChunk("zTXt", text).repeated(100)), pngWith(pngChunk("iCCP", text)),
            QByteArray(jpeg).insert(jpeg.size() - 2, scan.repeated(400)), gifOfLongCodes()};
        std::mt19937 random(1);
        const QByteArray gif = files.last().left(600);
        for (int i = 0; i < 200; ++i)
            files.append(mutated(gif, random));
        for (const char *format : {"png", "jpg", "webp"}) {
            for (int i = 0; i < 200; ++i)
                files.append(mutated(written(twoHalves({40, 20}), format), random));
        }
        QLoggingCategory::setFilterRules("qt.gui.imageio*=false"); // says what is broken
        const auto restored = qScopeGuard([] { QLoggingCategory::setFilterRules({}); });
        const qint64 before = peakMemory();
        for (const QByteArray &bytes : files) {
            QElapsedTimer timer;
            timer.start();
            const QImage image = decodedImage(bytes);
            QVERIFY2(timer.elapsed() < 1000, bytes.left(200).toHex().constData());
            QVERIFY2(peakMemory() - before < 48'000'000 + 40LL * image.width() * image.height(),
                bytes.left(200).toHex().constData());
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
