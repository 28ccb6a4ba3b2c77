// Pictures whose drawing can be checked.
#pragma once

#include "support/test.h"

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

inline QByteArray written(const QImage &image, const QByteArray &format = "png",
    QImageIOHandler::Transformations transformation = QImageIOHandler::TransformationNone)
{
    QBuffer buffer;
    QImageWriter writer(&buffer, format);
    writer.setQuality(100);
    writer.setTransformation(transformation);
    writer.write(image);
    return buffer.data();
}

} // namespace znt::test
