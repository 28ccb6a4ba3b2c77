#include "net/pictureformats.h"

#include <array>
#include <zlib.h>

namespace znt {

namespace {

QByteArray pngChunk(const QByteArray &type, QByteArrayView data)
{
    const QByteArray body = type + data.toByteArray();
    const auto checksum = crc32_z(0, reinterpret_cast<const Bytef *>(body.data()), body.size());
    return bigBytes(quint32(data.size())) + body + bigBytes(quint32(checksum));
}

// libpng would inflate all that follows the last row.
bool inflatesWithin(const QByteArray &data, qint64 limit)
{
    std::array<Bytef, 32 * 1024> discarded;
    z_stream stream{};
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(data.constData()));
    stream.avail_in = uInt(data.size());
    int result = inflateInit(&stream);
    while (result == Z_OK && qint64(stream.total_out) <= limit) {
        stream.next_out = discarded.data();
        stream.avail_out = discarded.size();
        result = inflate(&stream, Z_NO_FLUSH);
    }
    inflateEnd(&stream);
    return qint64(stream.total_out) <= limit;
}

bool isPngWithinLimit(QByteArrayView header)
{
    ByteReader in(header);
    const qint64 width = in.big(4), height = in.big(4);
    const int depth = in.big(1);
    return isWithinLimit(width, height, depth > 8 ? 2 : 1);
}

} // namespace

QByteArray drawingPng(ByteReader in)
{
    QByteArrayList wanted{"IHDR", "PLTE", "tRNS", "gAMA", "cHRM", "sRGB"};
    QByteArray drawn = in.take(8).toByteArray(), pixels;
    while (!in.isBroken()) {
        const quint32 length = in.big(4);
        const QByteArray type = in.take(4).toByteArray();
        const QByteArrayView data = in.take(length);
        const QByteArrayView checksum = in.take(4);
        if (type == "IEND")
            break;
        if (type == "IHDR" && !isPngWithinLimit(data))
            return {};
        if (type == "IDAT")
            pixels.append(data.data(), data.size());
        else if (pixels.isEmpty() && data.size() <= 768 && wanted.removeOne(type))
            drawn += bigBytes(length) + type + data.toByteArray() + checksum.toByteArray();
    }
    constexpr qint64 rowsOfLargest = 5 * maximumPixels; // with each row's filter
    if (in.isBroken() || wanted.contains("IHDR") || !inflatesWithin(pixels, rowsOfLargest))
        return {};
    return drawn + pngChunk("IDAT", pixels) + pngChunk("IEND", {});
}

} // namespace znt
