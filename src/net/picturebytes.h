// Leaves of untrusted picture bytes only what draws, before a decoder sees them.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QByteArray>

namespace znt {

struct PictureBytes
{
    QByteArray format; // as QImageReader calls it; empty when the bytes are not to be decoded
    QByteArray bytes;
};

// The pixels of a PNG, JPEG, GIF or WebP picture in their container, with what tells how they are
// to be placed and coloured: palette, transparency, gamma, orientation. Texts, profiles, metadata,
// thumbnails and all pictures but the first are left out, since a decoder may unpack them without a
// bound. Not to be decoded are other formats, containers that are broken, and codings that no
// browser draws or that cost far more than their pixels.
PictureBytes drawingBytes(const QByteArray &bytes);

} // namespace znt
