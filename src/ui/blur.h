// The soft copy of a picture that lies behind it.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QImage>

namespace znt {

// How far the blur reaches beyond the picture, in pixels of the picture.
constexpr int blurSpread = 30;

// The picture under a Gaussian of sigma 10 pixels, transparent outside. The copy stands for the
// picture's own extent and blurSpread pixels more on each side. It holds a quarter of the pixels
// each way, which is all that a blur of this size needs: enlarged by bilinear interpolation to that
// extent it is within 4 of 255 of the true blur. Any thread. Null for a null picture.
ZNTADS_INTERNAL QImage blurred(const QImage &picture);

} // namespace znt
