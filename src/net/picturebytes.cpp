#include "net/picturebytes.h"

#include "net/imagedecoder.h"

#include <QtEndian>

#include <array>
#include <zlib.h>

namespace znt {

namespace {

// Reads forward. Past the end it gives nothing, and isBroken() from then on.
class ByteReader
{
public:
    explicit ByteReader(QByteArrayView bytes)
        : m_rest(bytes)
    {
    }

    bool isBroken() const { return m_broken; }

    QByteArrayView take(qsizetype count)
    {
        if (count < 0 || count > m_rest.size()) {
            m_broken = true;
            count = 0;
        }
        const QByteArrayView taken = m_rest.first(count);
        m_rest = m_rest.sliced(m_broken ? m_rest.size() : count);
        return taken;
    }

    // A number of so many bytes; 0 past the end.
    quint32 big(int size)
    {
        quint32 number = 0;
        for (const char byte : take(size))
            number = number << 8 | uchar(byte);
        return number;
    }
    quint32 little(int size)
    {
        quint32 number = 0;
        int shift = 0;
        for (const char byte : take(size))
            number |= quint32(uchar(byte)) << std::exchange(shift, shift + 8);
        return number;
    }

    // JPEG: the bytes before the next marker. Escaped and restart markers belong to the data.
    QByteArrayView takeUntilMarker()
    {
        qsizetype end = 0;
        const auto isData = [&] {
            const uchar code = uchar(m_rest[end + 1]);
            return code == 0 || (code >= 0xd0 && code <= 0xd7);
        };
        do
            end = m_rest.indexOf('\xff', end);
        while (end >= 0 && end + 1 < m_rest.size() && isData() && (end += 2));
        return take(end < 0 ? m_rest.size() : end);
    }
    uchar takeMarker()
    {
        uchar code = 0xff;
        while (code == 0xff && !m_broken)
            code = big(1);
        return code;
    }

private:
    QByteArrayView m_rest;
    bool m_broken = false;
};

template <typename T>
QByteArray bigBytes(T number)
{
    QByteArray bytes(sizeof(T), Qt::Uninitialized);
    qToBigEndian(number, bytes.data());
    return bytes;
}

bool isWithinLimit(qint64 width, qint64 height, int weight = 1)
{
    return width > 0 && height > 0 && width * height <= maximumPixels / weight;
}

// PNG

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

// JPEG

QByteArray jpegSegment(uchar marker, QByteArrayView data)
{
    return bigBytes(quint16(0xff00 | marker)) + bigBytes(quint16(data.size() + 2))
        + data.toByteArray();
}

// 0 when there is none.
quint32 orientationOf(QByteArrayView tiff)
{
    const auto next = [little = tiff.startsWith("II")](ByteReader &in, int size) {
        return little ? in.little(size) : in.big(size);
    };
    ByteReader header(tiff), directory(tiff);
    header.take(4);
    directory.take(next(header, 4));
    for (int left = next(directory, 2); left > 0 && !directory.isBroken(); --left) {
        ByteReader entry(directory.take(12));
        constexpr quint32 orientationTag = 0x112;
        const bool found = next(entry, 2) == orientationTag;
        entry.take(6);
        if (found)
            return next(entry, 2);
    }
    return 0;
}

// An Exif segment that says nothing else.
QByteArray orientationSegment(quint32 orientation)
{
    if (orientation < 1 || orientation > 8)
        return {};
    return jpegSegment(0xe1,
        QByteArray::fromHex("4578696600004d4d002a00000008000101120003000000010000")
            .replace(25, 1, QByteArray(1, char(orientation)))
            .append(6, '\0'));
}

// What an application's segment says about drawing; empty when it says nothing.
QByteArray drawingApplicationSegment(uchar marker, QByteArrayView data)
{
    constexpr int adobeSize = 12, jfifSize = 14, exifSize = 6;
    if (marker == 0xee && data.startsWith("Adobe") && data.size() >= adobeSize)
        return jpegSegment(marker, data.first(adobeSize));
    if (marker == 0xe0 && data.startsWith("JFIF") && data.size() >= jfifSize) {
        const QByteArray noThumbnail(2, '\0');
        return jpegSegment(marker, data.first(jfifSize - 2).toByteArray() + noThumbnail);
    }
    if (marker == 0xe1 && data.startsWith("Exif") && data.size() >= exifSize)
        return orientationSegment(orientationOf(data.sliced(exifSize)));
    return {};
}

// The frame is gone through once a scan, and a scan can be written in a few bytes.
class JpegCost
{
public:
    bool addFrame(QByteArrayView data)
    {
        ByteReader in(data);
        const int depth = in.big(1);
        const qint64 height = in.big(2), width = in.big(2);
        const int components = in.big(1);
        const bool isFirst = m_samples == 0;
        // Its blocks fill units of up to 32 pixels.
        m_samples = (width + 31) * (height + 31);
        return isFirst && depth == 8 && components <= 4
            && isWithinLimit(width, height, components == 4 ? 2 : 1);
    }

    bool addScan(QByteArrayView data)
    {
        const int components = ByteReader(data).big(1);
        return m_samples > 0 && components <= 4 && add(components * m_samples + ScanOverhead);
    }

    bool addTable() { return add(TableOverhead); }

private:
    // In samples. The largest picture may have the ten scans of an ordinary progressive one.
    enum : qint64 { ScanOverhead = 1 << 20, TableOverhead = 1 << 16, Maximum = 1 << 28 };

    bool add(qint64 cost) { return (m_total += cost) <= Maximum; }

    qint64 m_samples = 0; // of one component, at most
    qint64 m_total = 0;
};

// Only frames of Huffman codes are kept: the others take far longer to decode.
class JpegFilter
{
public:
    explicit JpegFilter(ByteReader in)
        : m_drawn(in.take(2).toByteArray())
        , m_in(in)
    {
    }

    QByteArray filtered()
    {
        while (true) {
            const QByteArrayView coded = m_in.takeUntilMarker();
            if (m_inScan)
                m_drawn.append(coded.data(), coded.size());
            const uchar marker = m_in.takeMarker();
            if (marker == End || m_in.isBroken()) // a missing end is common
                return m_drawn + bigBytes(quint16(0xff00 | End));
            const QByteArrayView data = m_in.take(qsizetype(m_in.big(2)) - 2);
            if (m_in.isBroken() || !addSegment(marker, data))
                return {};
        }
    }

private:
    enum : uchar {
        Baseline = 0xc0,
        Progressive = 0xc2,
        HuffmanTable = 0xc4,
        End = 0xd9,
        Scan = 0xda,
        QuantizationTable = 0xdb,
        RestartInterval = 0xdd
    };

    bool addSegment(uchar marker, QByteArrayView data)
    {
        m_inScan = marker == Scan;
        if (marker >= Baseline && marker <= Progressive)
            return addDrawing(marker, data, m_cost.addFrame(data));
        if (marker == Scan)
            return addDrawing(marker, data, m_cost.addScan(data));
        if (marker == HuffmanTable || marker == QuantizationTable || marker == RestartInterval)
            return addDrawing(marker, data, m_cost.addTable());
        const QByteArray drawing = drawingApplicationSegment(marker, data);
        if (!drawing.isEmpty() && !m_applications.contains(char(marker))) {
            m_applications += char(marker);
            m_drawn += drawing;
        }
        return true;
    }

    bool addDrawing(uchar marker, QByteArrayView data, bool isWithinCost)
    {
        m_drawn += jpegSegment(marker, data);
        return isWithinCost;
    }

    QByteArray m_drawn, m_applications;
    ByteReader m_in;
    JpegCost m_cost;
    bool m_inScan = false;
};

// GIF

// Counts the pixels that LZW codes stand for. A code stands for up to 4096, and the codes may go on
// after the picture is full.
class GifPixelCounter
{
public:
    explicit GifPixelCounter(int rootBits)
        : m_rootBits(rootBits)
    {
        m_lengths.fill(1);
        clear();
    }

    qint64 count() const { return m_count; }

    void add(QByteArrayView data)
    {
        for (const char byte : data) {
            m_held |= quint32(uchar(byte)) << m_heldBits;
            m_heldBits += 8;
            while (m_heldBits >= m_bits) {
                const int bits = m_bits;
                addCode(m_held & ((1U << bits) - 1));
                m_held >>= bits;
                m_heldBits -= bits;
            }
        }
    }

private:
    void clear()
    {
        m_bits = m_rootBits + 1;
        m_next = (1 << m_rootBits) + 2;
        m_previousLength = 0;
    }

    void addCode(int code)
    {
        if (code == 1 << m_rootBits)
            return clear();
        const int length = code < m_next ? m_lengths[code] : m_previousLength + 1;
        m_count += length;
        if (m_previousLength > 0 && m_next < int(m_lengths.size())) {
            m_lengths[m_next++] = m_previousLength + 1;
            if (m_next == 1 << m_bits && m_bits < 12)
                ++m_bits;
        }
        m_previousLength = length;
    }

    const int m_rootBits;
    std::array<quint16, 4096> m_lengths;
    quint32 m_held = 0;
    int m_heldBits = 0;
    int m_bits;
    int m_next;
    int m_previousLength;
    qint64 m_count = 0;
};

// The blocks up to the empty one that ends them; empty when they stand for more pixels than the
// largest picture has.
QByteArray takeGifPixels(ByteReader &in, int rootBits)
{
    if (rootBits < 1 || rootBits > 8)
        return {};
    QByteArray blocks;
    GifPixelCounter pixels(rootBits);
    while (!in.isBroken() && pixels.count() <= 2 * maximumPixels) {
        const int size = in.big(1);
        const QByteArrayView data = in.take(size);
        pixels.add(data);
        blocks.append(char(size)).append(data.data(), data.size());
        if (size == 0)
            return blocks;
    }
    return {};
}

QByteArray takeGifColors(ByteReader &in, uchar flags)
{
    return flags & 0x80 ? in.take(3 * (2 << (flags & 7))).toByteArray() : QByteArray();
}

// The image that follows, in a picture whose first bytes are `drawn`.
QByteArray withGifImage(const QByteArray &drawn, ByteReader &in)
{
    const QByteArrayView descriptor = in.take(9);
    ByteReader screen(QByteArrayView(drawn).sliced(6)), image(descriptor);
    const int left = image.little(2), top = image.little(2);
    const int width = image.little(2), height = image.little(2);
    const int screenWidth = screen.little(2), screenHeight = screen.little(2);
    if (!isWithinLimit(width, height)
        || !isWithinLimit(
            screenWidth ? screenWidth : left + width, screenHeight ? screenHeight : top + height))
        return {};
    const QByteArray colors = takeGifColors(in, descriptor.back());
    const int rootBits = in.big(1);
    const QByteArray blocks = takeGifPixels(in, rootBits);
    if (blocks.isEmpty())
        return {};
    return drawn + ',' + descriptor.toByteArray() + colors + char(rootBits) + blocks + ';';
}

QByteArray drawingGif(ByteReader in)
{
    const QByteArrayView header = in.take(13);
    if (in.isBroken())
        return {};
    const QByteArray start = header.toByteArray() + takeGifColors(in, header[10]);
    QByteArray control;
    quint32 block = in.big(1);
    for (; block == '!'; block = in.big(1)) {
        const bool isControl = in.big(1) == 0xf9;
        for (auto data = in.take(in.big(1)); !data.isEmpty(); data = in.take(in.big(1))) {
            // Of what it says only the transparent color matters to the first image.
            if (isControl && data.size() == 4)
                control = QByteArray("!\xf9\4") + char(data[0] & 1) + QByteArray(2, '\0') + data[3]
                    + '\0';
        }
    }
    return block == ',' ? withGifImage(start + control, in) : QByteArray();
}

// WebP

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

QByteArray drawingWebp(ByteReader in)
{
    in.take(12);
    const QByteArray image = webpImage(in);
    return image.isEmpty() ? QByteArray() : webpChunk("RIFF", "WEBP" + image);
}

} // namespace

QByteArray drawingBytes(const QByteArray &bytes, const QByteArray &format)
{
    const ByteReader in(bytes);
    if (format == "png")
        return drawingPng(in);
    if (format == "jpeg")
        return JpegFilter(in).filtered();
    if (format == "gif")
        return drawingGif(in);
    return drawingWebp(in);
}

} // namespace znt
