#include "net/imagedecoder.h"

#include "net/picturebytes.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>

namespace znt {

namespace {

QSize sizeWithinBounds(const QSize &size)
{
    if (qMax(size.width(), size.height()) <= maximumSide)
        return size;
    return size.scaled(maximumSide, maximumSide, Qt::KeepAspectRatio).expandedTo({1, 1});
}

QImage readyToDraw(QImage image)
{
    if (image.colorSpace().isValid() && image.colorSpace() != QColorSpace::SRgb)
        image.convertToColorSpace(QColorSpace::SRgb);
    image.convertTo(
        image.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32);
    return image;
}

} // namespace

QImage decodedImage(const QByteArray &bytes)
{
    PictureBytes picture = drawingBytes(bytes);
    if (picture.format.isEmpty())
        return {};
    QBuffer buffer(&picture.bytes);
    QImageReader reader(&buffer, picture.format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isEmpty() || qint64(size.width()) * size.height() > maximumPixels)
        return {};
    reader.setScaledSize(sizeWithinBounds(size));
    return readyToDraw(reader.read());
}

} // namespace znt
