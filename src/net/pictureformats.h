// What draws in a picture of each format; see drawingBytes().
#pragma once

#include "net/bytereader.h"
#include "net/imagedecoder.h"

namespace znt {

inline bool isWithinLimit(qint64 width, qint64 height, int weight = 1)
{
    return width > 0 && height > 0 && width <= maximumPixels / weight / height;
}

QByteArray drawingPng(ByteReader in);
QByteArray drawingJpeg(const ByteReader &in);
QByteArray drawingGif(ByteReader in);
QByteArray drawingWebp(ByteReader in);

} // namespace znt
