#include "net/picturebytes.h"

#include "net/imagedecoder.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <bit>

namespace znt {

namespace {

// How often a progressive JPEG goes over all its pixels, beside a bound on the product: each scan
// can be written in a few bytes. Encoders make about ten.
constexpr int maximumScans = 200;
constexpr qint64 maximumScannedPixels = 400'000'000;
// Encoders write a few tables a scan.
constexpr int maximumSegments = 2000;

template <class Number>
Number bigEndian(QByteArrayView bytes, qsizetype at)
{
    return qFromBigEndian<Number>(bytes.data() + at);
}

int littleEndian16(QByteArrayView bytes, qsizetype at)
{
    return qFromLittleEndian<quint16>(bytes.data() + at);
}

quint8 byteAt(QByteArrayView bytes, qsizetype at)
{
    return quint8(bytes[at]);
}

template <size_t Count>
bool isOneOf(QByteArrayView name, const std::array<const char *, Count> &names)
{
    return std::any_of(
        names.begin(), names.end(), [&](const char *other) { return name == other; });
}

// PNG

QByteArray drawingChunks(QByteArrayView png)
{
    static constexpr std::array drawing{"IHDR", "PLTE", "tRNS", "gAMA", "cHRM", "sRGB", "IDAT"};
    QByteArray kept = png.first(8).toByteArray();
    for (qsizetype at = 8; at + 12 <= png.size();) {
        const quint32 length = bigEndian<quint32>(png, at);
        if (length > quint32(png.size() - at - 12))
            return {};
        const QByteArrayView type = png.sliced(at + 4, 4);
        const QByteArrayView chunk = png.sliced(at, qsizetype(length) + 12);
        if (type == "IEND") {
            kept += chunk.first(12);
            return kept;
        }
        const bool isCritical = (type[0] & 0x20) == 0;
        if (length > 0 && isOneOf(type, drawing))
            kept += chunk;
        else if (length > 0 && isCritical)
            return {};
        at += chunk.size();
    }
    return {};
}

// JPEG

// As the value 1 to 8 of the one entry of an Exif directory that is read; 0 where there is none.
int exifOrientation(QByteArrayView tiff)
{
    if (tiff.size() < 8)
        return 0;
    const bool isBigEndian = tiff.startsWith("MM");
    const auto number16 = [&](qsizetype at) {
        return isBigEndian ? int(bigEndian<quint16>(tiff, at)) : littleEndian16(tiff, at);
    };
    const quint32 directory =
        isBigEndian ? bigEndian<quint32>(tiff, 4) : qFromLittleEndian<quint32>(tiff.data() + 4);
    if (directory > quint32(tiff.size()) - 2)
        return 0;
    const qsizetype entries = qsizetype(directory) + 2;
    for (int i = 0; i < number16(directory) && entries + 12 * (i + 1) <= tiff.size(); ++i) {
        if (number16(entries + 12 * i) == 0x0112)
            return qBound(0, number16(entries + 12 * i + 8), 8);
    }
    return 0;
}

QByteArray exifSegment(int orientation)
{
    QByteArray segment = QByteArray::fromHex(
        "ffe100224578696600004d4d002a00000008000101120003000000010000000000000000");
    segment[29] = char(orientation);
    return segment;
}

class JpegReader
{
public:
    explicit JpegReader(QByteArrayView jpeg)
        : m_jpeg(jpeg)
        , m_kept(jpeg.first(2).toByteArray())
    {
    }

    QByteArray drawingSegments()
    {
        for (int i = 0; i < maximumSegments; ++i) {
            if (!findMarker()) // cut off
                return m_scans > 0 ? m_kept + "\xff\xd9" : QByteArray();
            const quint8 marker = byteAt(m_jpeg, m_at + 1);
            if (marker == 0xd9)
                return m_kept + "\xff\xd9";
            if (!take(marker))
                return {};
        }
        return {};
    }

private:
    // Fill bytes may stand before a marker. At the end of cut-off data nothing is left to find.
    bool findMarker()
    {
        while (m_at + 4 <= m_jpeg.size() && byteAt(m_jpeg, m_at) == 0xff
            && byteAt(m_jpeg, m_at + 1) == 0xff)
            ++m_at;
        return m_at + 2 <= m_jpeg.size() && byteAt(m_jpeg, m_at) == 0xff;
    }

    bool take(quint8 marker)
    {
        if (m_at + 4 > m_jpeg.size())
            return false;
        const qsizetype size = 2 + bigEndian<quint16>(m_jpeg, m_at + 2);
        if (size < 4 || m_at + size > m_jpeg.size())
            return false;
        const QByteArrayView segment = m_jpeg.sliced(m_at, size);
        m_at += size;
        switch (marker) {
        case 0xc0:
        case 0xc1:
        case 0xc2: // baseline, extended, progressive
            return takeFrame(segment);
        case 0xc4:
        case 0xdb:
        case 0xdd: // tables, restart interval
            m_kept += segment;
            return true;
        case 0xda:
            return takeScan(segment);
        case 0xe0:
            if (segment.sliced(4).startsWith("JFIF") && size >= 18)
                m_kept += QByteArray::fromHex("ffe000104a46494600010100000100010000");
            return true;
        case 0xe1:
            if (segment.sliced(4).startsWith(QByteArrayView("Exif\0\0", 6)))
                m_kept += exifSegment(exifOrientation(segment.sliced(10)));
            return true;
        case 0xee:
            if (segment.sliced(4).startsWith("Adobe") && size <= 32)
                m_kept += segment;
            return true;
        default:
            return (marker >= 0xe2 && marker <= 0xef) || marker == 0xfe; // applications', comment
        }
    }

    bool takeFrame(QByteArrayView segment)
    {
        if (segment.size() < 10)
            return false;
        m_pixels = qint64(bigEndian<quint16>(segment, 5)) * bigEndian<quint16>(segment, 7);
        m_kept += segment;
        return true;
    }

    bool takeScan(QByteArrayView segment)
    {
        if (++m_scans > maximumScans || m_scans * m_pixels > maximumScannedPixels)
            return false;
        const qsizetype begin = m_at;
        while (m_at + 1 < m_jpeg.size() && isEntropyCoded())
            ++m_at;
        if (m_at + 1 == m_jpeg.size())
            ++m_at; // cut off
        m_kept += segment;
        m_kept += m_jpeg.sliced(begin, m_at - begin);
        return true;
    }

    bool isEntropyCoded() const
    {
        const quint8 next = byteAt(m_jpeg, m_at + 1);
        return byteAt(m_jpeg, m_at) != 0xff || next == 0 || (next >= 0xd0 && next <= 0xd7);
    }

    const QByteArrayView m_jpeg;
    QByteArray m_kept;
    qsizetype m_at = 2;
    qint64 m_pixels = 0;
    int m_scans = 0;
};

// GIF

// How many bytes of the codes draw that many pixels. A code stands for up to 4096 of them, and a
// decoder goes on with those for which there is no room.
class GifCodes
{
public:
    GifCodes(QByteArrayView codes, int literalBits)
        : m_codes(codes)
        , m_clear(1 << literalBits)
    {
        clear();
    }

    qsizetype bytesFor(qint64 pixels)
    {
        while (pixels > 0 && m_bit + m_width <= m_codes.size() * 8) {
            const int code = next();
            if (code == m_clear)
                clear();
            else if (code == m_clear + 1 || !draw(code, pixels))
                break;
        }
        return qMin(m_bit / 8 + 1, m_codes.size());
    }

private:
    int next()
    {
        int code = 0;
        for (int i = 0; i < m_width; ++i, ++m_bit)
            code |= (byteAt(m_codes, m_bit / 8) >> (m_bit % 8) & 1) << i;
        return code;
    }
    void clear()
    {
        m_free = m_clear + 2;
        m_width = std::bit_width(unsigned(m_clear));
        m_previous = -1;
    }
    int lengthOf(int code) const { return code < m_clear ? 1 : m_lengths[size_t(code)]; }

    bool draw(int code, qint64 &pixels)
    {
        if (code > m_free || (code == m_free && m_previous < 0))
            return false;
        const bool learns = m_previous >= 0 && m_free < int(m_lengths.size());
        if (learns)
            m_lengths[size_t(m_free)] = lengthOf(m_previous) + 1;
        if (code >= int(m_lengths.size()))
            return false;
        pixels -= lengthOf(code);
        m_free += learns;
        if (m_free == 1 << m_width && m_width < 12)
            ++m_width;
        m_previous = code;
        return true;
    }

    const QByteArrayView m_codes;
    const int m_clear;
    std::array<int, 4096> m_lengths{};
    qsizetype m_bit = 0;
    int m_width = 0;
    int m_free = 0;
    int m_previous = -1;
};

class GifReader
{
public:
    explicit GifReader(QByteArrayView gif)
        : m_gif(gif)
    {
    }

    QByteArray firstImage()
    {
        if (!keep(13) || !keepColors(byteAt(m_gif, 10)))
            return {};
        while (m_at + 2 <= m_gif.size()) {
            if (m_gif[m_at] == 0x2c)
                return image();
            if (m_gif[m_at] != 0x21)
                return {};
            const bool isControl = byteAt(m_gif, m_at + 1) == 0xf9;
            const qsizetype begin = m_at;
            m_at += 2;
            subBlocks();
            if (isControl && m_at - begin == 8)
                m_kept += m_gif.sliced(begin, 8);
        }
        return {};
    }

private:
    bool keep(qsizetype count)
    {
        if (m_at + count > m_gif.size())
            return false;
        m_kept += m_gif.sliced(m_at, count);
        m_at += count;
        return true;
    }
    bool keepColors(quint8 flags) { return !(flags & 0x80) || keep(3 << ((flags & 7) + 1)); }

    QByteArray subBlocks()
    {
        QByteArray data;
        while (m_at < m_gif.size()) {
            const int size = byteAt(m_gif, m_at++);
            if (size == 0)
                break;
            data += m_gif.sliced(m_at).first(qMin<qsizetype>(size, m_gif.size() - m_at));
            m_at = qMin(m_at + size, m_gif.size());
        }
        return data;
    }

    QByteArray image()
    {
        const qsizetype at = m_at;
        if (!keep(10) || !keepColors(byteAt(m_gif, at + 9)) || !keep(1))
            return {};
        const auto number = [&](int offset) { return qint64(littleEndian16(m_gif, at + offset)); };
        if ((number(1) + number(5)) * (number(3) + number(7)) > maximumPixels)
            return {};
        const int literalBits = byteAt(m_gif, m_at - 1);
        if (literalBits < 1 || literalBits > 8)
            return {};
        const QByteArray codes = subBlocks();
        const qsizetype count = GifCodes(codes, literalBits).bytesFor(number(5) * number(7));
        for (qsizetype i = 0; i < count; i += 255) {
            const QByteArray block = codes.mid(i, qMin<qsizetype>(255, count - i));
            m_kept += char(block.size());
            m_kept += block;
        }
        return m_kept + '\0' + '\x3b';
    }

    const QByteArrayView m_gif;
    QByteArray m_kept;
    qsizetype m_at = 0;
};

// WebP

QByteArray firstFrame(QByteArrayView webp)
{
    static constexpr std::array pixels{"VP8 ", "VP8L", "ANMF"};
    static constexpr std::array others{"VP8X", "ALPH", "ANIM"};
    QByteArray kept = webp.first(12).toByteArray();
    for (qsizetype at = 12; at + 8 <= webp.size();) {
        const QByteArrayView type = webp.sliced(at, 4);
        const quint32 size = qFromLittleEndian<quint32>(webp.data() + at + 4);
        if (size > quint32(webp.size() - at - 8))
            return {};
        const bool draws = isOneOf(type, pixels);
        const qsizetype chunk = kept.size();
        if (draws || isOneOf(type, others)) {
            kept += webp.sliced(at, 8 + qsizetype(size));
            kept.append(size % 2, '\0');
        }
        if (type == "VP8X" && size > 0)
            kept[chunk + 8] =
                char(kept[chunk + 8] & 0x12); // alpha, animation; no profile, no metadata
        if (draws) {
            qToLittleEndian(quint32(kept.size() - 8), kept.data() + 4);
            return kept;
        }
        at += 8 + qsizetype(size) + size % 2;
    }
    return {};
}

} // namespace

PictureBytes drawingBytes(const QByteArray &bytes)
{
    PictureBytes picture;
    if (bytes.startsWith("\x89PNG\r\n\x1a\n"))
        picture = {"png", drawingChunks(bytes)};
    else if (bytes.startsWith("\xff\xd8\xff"))
        picture = {"jpeg", JpegReader(bytes).drawingSegments()};
    else if (bytes.startsWith("GIF87a") || bytes.startsWith("GIF89a"))
        picture = {"gif", GifReader(bytes).firstImage()};
    else if (bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP")
        picture = {"webp", firstFrame(bytes)};
    return picture.bytes.isEmpty() ? PictureBytes() : picture;
}

} // namespace znt
