// A picture fitted into a view: what is drawn of it, pixel for pixel.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QImage>

namespace znt {

enum class ContentMode {
    ScaleToFill, // stretched to the view
    AspectFit,   // as large as can be seen whole
    AspectFill,  // as small as leaves nothing bare; the rest is cut off
    Center,      // at its natural size
};

struct ImageFit
{
    QImage image;
    ContentMode mode = ContentMode::ScaleToFill;
    QSize size;             // of the view, in pixels
    qreal scale = 1;        // pixels to a point
    qreal cornerRadius = 0; // in points

    // Of the picture its identity counts, not its pixels.
    bool operator==(const ImageFit &other) const;
};

// `size` pixels, smoothly scaled, the corners rounded into the alpha; null when there is nothing to
// draw. Any thread.
ZNTADS_INTERNAL QImage fittedImage(const ImageFit &request);

} // namespace znt
