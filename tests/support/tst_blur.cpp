#include "support/blur.h"

#include <QTest>

#include <cmath>

using namespace znt;

namespace {

// One channel with the spread around it, as numbers.
struct Plane
{
    int width;
    int height;
    std::vector<double> values;

    double at(int x, int y) const
    {
        const bool inside = x >= 0 && y >= 0 && x < width && y < height;
        return inside ? values[size_t(y * width + x)] : 0;
    }
};

Plane channelOf(const QImage &picture, int channel)
{
    Plane plane{picture.width() + 2 * blurSpread, picture.height() + 2 * blurSpread, {}};
    for (int y = -blurSpread; y < picture.height() + blurSpread; ++y) {
        for (int x = -blurSpread; x < picture.width() + blurSpread; ++x) {
            const bool inside = picture.rect().contains(x, y);
            plane.values.push_back(inside ? picture.constScanLine(y)[4 * x + channel] : 0);
        }
    }
    return plane;
}

// The definition itself, five sigmas wide, in one direction.
Plane trulyBlurred(const Plane &plane, int dx, int dy)
{
    Plane result{plane.width, plane.height, {}};
    for (int y = 0; y < plane.height; ++y) {
        for (int x = 0; x < plane.width; ++x) {
            double sum = 0, weights = 0;
            for (int i = -50; i <= 50; ++i) {
                const double weight = std::exp(-i * i / 200.0);
                weights += weight;
                sum += weight * plane.at(x + i * dx, y + i * dy);
            }
            result.values.push_back(sum / weights);
        }
    }
    return result;
}

template <class Colour>
QImage painted(int width, int height, QImage::Format format, Colour colour)
{
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, colour(x, y));
    }
    return image.convertToFormat(format);
}

} // namespace

class TestBlur : public QObject
{
    Q_OBJECT

private slots:
    void isWithinSixOfATrueGaussian_data()
    {
        QTest::addColumn<QImage>("picture");
        const auto white = [](int, int) { return 0xffffffffu; };
        const auto board = [](int x, int y) {
            return (x / 32 + y / 32) % 2 ? 0xffffffffu : 0x00ff0000u;
        };
        const auto slope = [](int x, int y) { return x * 3 > y * 2 ? 0xffff0000u : 0xff0000ffu; };
        const auto lines = [](int, int y) { return y % 8 < 4 ? 0xffffffffu : 0xff000000u; };
        const auto faint = [](int x, int y) { return uint(x * 9 + y * 5) * 0x01030507u; };
        QTest::newRow("a pixel") << painted(1, 1, QImage::Format_RGB32, white);
        QTest::newRow("tall") << painted(3, 250, QImage::Format_RGB32, white);
        QTest::newRow("wide") << painted(250, 2, QImage::Format_RGB32, white);
        QTest::newRow("even") << painted(60, 84, QImage::Format_RGB32, white);
        QTest::newRow("odd") << painted(61, 83, QImage::Format_RGB32, slope);
        QTest::newRow("edges of alpha") << painted(94, 67, QImage::Format_ARGB32, board);
        QTest::newRow("fine lines") << painted(62, 65, QImage::Format_RGB888, lines);
        QTest::newRow("any alpha") << painted(77, 63, QImage::Format_ARGB32_Premultiplied, faint);
    }
    void isWithinSixOfATrueGaussian()
    {
        QFETCH(QImage, picture);
        const QImage copy = blurred(picture);
        QVERIFY(copy.width() <= picture.width() / 4 + 16);
        const QImage enlarged = copy.scaled(picture.width() + 2 * blurSpread,
            picture.height() + 2 * blurSpread, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        const QImage bytes = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
        for (int channel = 0; channel < 4; ++channel) {
            const Plane truth = trulyBlurred(trulyBlurred(channelOf(bytes, channel), 1, 0), 0, 1);
            double worst = 0;
            for (int y = 0; y < truth.height; ++y) {
                for (int x = 0; x < truth.width; ++x) {
                    const int value = enlarged.constScanLine(y)[4 * x + channel];
                    worst = qMax(worst, std::abs(value - truth.at(x, y)));
                }
            }
            QVERIFY2(worst <= 6, qPrintable(QString::number(worst)));
        }
    }

    void alphaIsExact()
    {
        const QImage opaque =
            painted(301, 203, QImage::Format_RGB32, [](int x, int) { return uint(x) * 0x010203u; });
        const QImage copy = blurred(opaque);
        QCOMPARE(copy.format(), QImage::Format_ARGB32_Premultiplied);
        const QRect interior = copy.rect().adjusted(15, 15, -15, -15);
        QVERIFY(interior.isValid());
        for (int y = 0; y < copy.height(); ++y) {
            for (int x = 0; x < copy.width(); ++x) {
                const QRgb pixel = reinterpret_cast<const QRgb *>(copy.constScanLine(y))[x];
                const int most = qMax(qRed(pixel), qMax(qGreen(pixel), qBlue(pixel)));
                QVERIFY(most <= qAlpha(pixel));
                QVERIFY(!interior.contains(x, y) || qAlpha(pixel) == 255);
            }
        }
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
