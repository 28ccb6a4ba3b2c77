// Decodes untrusted image bytes within fixed limits of size, memory and time.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QImage>

namespace znt {

// The most pixels that a picture may announce; half as many with 16 bits a channel or, in a JPEG,
// four components. So that decoding takes less than a second: the slowest of this size, progressive
// JPEG and interlaced PNG, took 0.8 s.
constexpr qint64 maximumPixels = 16 * 1024 * 1024;
// A picture with a longer side than this is scaled down to it.
constexpr int maximumSide = 4096;

// The picture that PNG, JPEG, GIF or WebP bytes hold, upright and in sRGB, as
// Format_RGB32 or, where it has alpha, Format_ARGB32_Premultiplied; of an animation the first
// picture. Null when the bytes are anything else, are broken, or announce no size or one that is
// out of bounds. What they are is told by the bytes alone, and only what draws of them is read
// (picturebytes.h). Beside a copy of the bytes it takes at most 40 bytes a pixel and 16 MiB, but
// for a lossless WebP, where a hostile one has been seen to take 500 MB and 3 s. Any thread; it
// takes up to a second.
ZNTADS_INTERNAL QImage decodedImage(const QByteArray &bytes);

} // namespace znt
