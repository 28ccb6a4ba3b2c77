// Pictures whose drawing can be checked.
#pragma once

#include <QImage>

namespace znt::test {

// Left half red, right half blue.
inline QImage twoHalves(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = size.width() / 2; x < size.width(); ++x)
            image.setPixelColor(x, y, Qt::blue);
    }
    return image;
}

} // namespace znt::test
