#include "ui/blur.h"

#include "support/test.h"

#include <cmath>

using namespace znt;

namespace {

// The definition itself, five sigmas wide, of all channels at once: first across, then down.
std::vector<QVector4D> trulyBlurred(std::vector<QVector4D> pixels, const QSize &size)
{
    for (const QPoint &step : {QPoint(1, 0), QPoint(0, 1)}) {
        std::vector<QVector4D> result(pixels.size());
        for (int at = 0; at < int(pixels.size()); ++at) {
            const QPoint here(at % size.width(), at / size.width());
            for (int i = -50; i <= 50; ++i) {
                const QPoint there = here + i * step;
                if (QRect({}, size).contains(there))
                    result[size_t(at)] += pixels[size_t(there.y() * size.width() + there.x())]
                        * float(std::exp(-i * i / 200.0) / std::sqrt(200 * M_PI));
            }
        }
        pixels = result;
    }
    return pixels;
}

std::vector<QVector4D> pixelsOf(const QImage &image)
{
    std::vector<QVector4D> pixels;
    for (int at = 0; at < image.width() * image.height(); ++at) {
        const auto *line = reinterpret_cast<const QRgb *>(image.constScanLine(at / image.width()));
        const QRgb pixel = line[at % image.width()];
        pixels.emplace_back(qRed(pixel), qGreen(pixel), qBlue(pixel), qAlpha(pixel));
    }
    return pixels;
}

template <class Colour>
QImage painted(int width, int height, Colour colour)
{
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, colour(x, y));
    }
    return image;
}

} // namespace

class TestBlur : public QObject
{
    Q_OBJECT

private slots:
    void isWithinSixOfATrueGaussian()
    {
        const auto white = [](int, int) { return 0xffffffffu; };
        const auto board = [](int x, int y) {
            return (x / 32 + y / 32) % 2 ? 0xffffffffu : 0x00ff0000u;
        };
        const auto slope = [](int x, int y) { return x * 3 > y * 2 ? 0xffff0000u : 0xff0000ffu; };
        const auto lines = [](int, int y) { return y % 8 < 4 ? 0xffffffffu : 0xff000000u; };
        const auto faint = [](int x, int y) { return uint(x * 9 + y * 5) * 0x01030507u; };
        for (const QImage &picture : {painted(1, 1, white), painted(3, 250, white),
                 painted(250, 2, white), painted(60, 84, white), painted(61, 83, slope),
                 painted(94, 67, board), painted(62, 65, lines), painted(77, 63, faint)}) {
            const QImage copy = blurred(picture);
            QVERIFY(copy.width() <= picture.width() / 4 + 16);
            const QImage padded = picture.copy(picture.rect().adjusted(-30, -30, 30, 30))
                                      .convertToFormat(QImage::Format_ARGB32_Premultiplied);
            const auto truth = trulyBlurred(pixelsOf(padded), padded.size());
            const auto ours = pixelsOf(
                copy.scaled(padded.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
            float worst = 0;
            for (size_t i = 0; i < truth.size(); ++i) {
                for (int channel = 0; channel < 4; ++channel)
                    worst = qMax(worst, std::abs(ours[i][channel] - truth[i][channel]));
            }
            QVERIFY2(worst <= 6, qPrintable(QString("%1 in %2").arg(worst).arg(picture.width())));
        }
    }

    void alphaIsExact()
    {
        const QImage opaque =
            painted(301, 203, [](int x, int) { return 0xff000000u | uint(x) * 0x010203u; });
        const QImage copy = blurred(opaque.convertToFormat(QImage::Format_RGB32));
        QCOMPARE(copy.format(), QImage::Format_ARGB32_Premultiplied);
        for (const QVector4D &pixel : pixelsOf(copy))
            QVERIFY(qMax(pixel.x(), qMax(pixel.y(), pixel.z())) <= pixel.w());
        for (const QVector4D &pixel : pixelsOf(copy.copy(copy.rect().adjusted(15, 15, -15, -15))))
            QCOMPARE(pixel.w(), 255.0f);
    }

    void sizesWithoutEndAreTaken()
    {
        QVERIFY(blurred(QImage()).isNull());
        QImage strip(30'000, 1, QImage::Format_RGB32);
        strip.fill(Qt::white);
        QCOMPARE(blurred(strip).size(), QSize((30'000 + 60) / 4, 16));
    }
};

QTEST_GUILESS_MAIN(TestBlur)
#include "tst_blur.moc"
