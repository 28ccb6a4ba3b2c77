// A picture's bytes. What a decoder may take is bounded, see imagedecoder.h.
#include "door.h"

#include "net/imagedecoder.h"

void enter(const QByteArray &bytes)
{
    const QImage picture = znt::decodedImage(bytes);
    if (picture.width() > znt::maximumSide || picture.height() > znt::maximumSide)
        qFatal("a picture of %d x %d", picture.width(), picture.height());
}
