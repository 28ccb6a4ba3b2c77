// Leaves out of untrusted image bytes what does not draw, before any library reads them.
#pragma once

#include <QByteArray>

namespace znt {

// What draws of a picture in `format` ("png", "jpeg", "gif" or "webp"), of an animation what draws
// its first picture. Empty when the bytes are broken, or when decoding them would take more memory
// or time than a picture of maximumPixels may take.
//
// Text, thumbnails, metadata and colour profiles are left out: without a profile a picture is taken
// as sRGB, or as the gAMA and cHRM chunks of a PNG say. Of Exif data the orientation stays.
QByteArray drawingBytes(const QByteArray &bytes, const QByteArray &format);

} // namespace znt
