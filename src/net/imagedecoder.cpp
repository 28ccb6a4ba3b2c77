#include "net/imagedecoder.h"

#include "net/picturebytes.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageReader>

namespace znt {

namespace {

// The formats of the web that hold pixels only: none that can refer to other files, is drawn by a
// program, or leaves out pixels without Qt noticing, as BMP does.
QByteArray formatOf(const QByteArray &bytes)
{
    if (bytes.startsWith("\x89PNG\r\n\x1a\n"))
        return "png";
    if (bytes.startsWith("\xff\xd8\xff"))
        return "jpeg";
    if (bytes.startsWith("GIF87a") || bytes.startsWith("GIF89a"))
        return "gif";
    if (bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP")
        return "webp";
    return {};
}

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
    const QByteArray format = formatOf(bytes);
    const QByteArray drawing = format.isEmpty() ? format : drawingBytes(bytes, format);
    if (drawing.isEmpty())
        return {};
    QBuffer buffer;
    buffer.setData(drawing);
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (size.isEmpty() || qint64(size.width()) * size.height() > maximumPixels)
        return {};
    reader.setScaledSize(sizeWithinBounds(size));
    return readyToDraw(reader.read());
}

} // namespace znt
