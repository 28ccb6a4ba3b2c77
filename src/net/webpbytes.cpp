#include "net/pictureformats.h"

namespace znt {

namespace {

QByteArray webpChunk(const QByteArray &type, const QByteArray &data)
{
    QByteArray size(4, Qt::Uninitialized);
    qToLittleEndian(quint32(data.size()), size.data());
    return type + size + data + QByteArray(data.size() % 2, '\0');
}

// The extended header without the flags of what is left out; empty when its canvas is too large.
QByteArray webpHeader(QByteArrayView data)
{
    constexpr uchar animationAndAlpha = 0x12;
    ByteReader in(data);
    const quint32 flags = in.little(4);
    const qint64 width = in.little(3) + 1, height = in.little(3) + 1;
    if (in.isBroken() || !isWithinLimit(width, height))
        return {};
    const QByteArray kept = char(flags & animationAndAlpha) + QByteArray(3, '\0');
    return webpChunk("VP8X", kept + data.sliced(4, 6).toByteArray());
}

// The chunks up to the first image, which is in a chunk of its own in an animation.
QByteArray webpImage(ByteReader in, bool inFrame = false)
{
    constexpr int frameHeader = 16;
    QByteArray drawn;
    while (!in.isBroken()) {
        const QByteArray type = in.take(4).toByteArray();
        const quint32 size = in.little(4);
        const QByteArrayView data = in.take(size);
        in.take(size % 2);
        if (in.isBroken())
            break;
        if (type == "VP8 " || type == "VP8L")
            return drawn + webpChunk(type, data.toByteArray());
        if (type == "ALPH" || type == "ANIM")
            drawn += webpChunk(type, data.toByteArray());
        if (type == "VP8X" && (drawn += webpHeader(data)).isEmpty())
            break;
        if (type == "ANMF" && !inFrame && size >= frameHeader)
            return drawn
                + webpChunk(type,
                    data.first(frameHeader).toByteArray()
                        + webpImage(ByteReader(data.sliced(frameHeader)), true));
    }
    return {};
}

} // namespace

QByteArray drawingWebp(ByteReader in)
{
    in.take(12);
    const QByteArray image = webpImage(in);
    return image.isEmpty() ? QByteArray() : webpChunk("RIFF", "WEBP" + image);
}

} // namespace znt
