// Pictures out of bytes that nobody vouches for.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QImage>

namespace znt {

// The most pixels that a picture may announce: at four bytes each, what Qt agrees to allocate.
constexpr qint64 maximumPixels = 32 * 1024 * 1024;
// A picture with a longer side than this is scaled down to it.
constexpr int maximumSide = 4096;

// The picture that PNG, JPEG, GIF or WebP bytes hold, upright and in sRGB, as
// Format_RGB32 or, where it has alpha, Format_ARGB32_Premultiplied; of an animation the first
// picture. An embedded colour profile is not heeded. Null when the bytes are anything else, are
// broken, or announce no size or one that is out of bounds. What they are is told by the bytes
// alone. Any thread. It takes less than a second, and no more memory than ten times the bytes of
// the announced pixels.
ZNTADS_INTERNAL QImage decodedImage(const QByteArray &bytes);

} // namespace znt
