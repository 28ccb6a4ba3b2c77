#include "net/picturebytes.h"

#include "net/pictureformats.h"

namespace znt {

QByteArray drawingBytes(const QByteArray &bytes, const QByteArray &format)
{
    const ByteReader in(bytes);
    if (format == "png")
        return drawingPng(in);
    if (format == "jpeg")
        return drawingJpeg(in);
    if (format == "gif")
        return drawingGif(in);
    return drawingWebp(in);
}

} // namespace znt
