#include "net/pictureformats.h"

namespace znt {

namespace {

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

class JpegReader : public ByteReader
{
public:
    explicit JpegReader(const ByteReader &in)
        : ByteReader(in)
    {
    }

    // The bytes before the next marker. Escaped and restart markers belong to the data.
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
};

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
    explicit JpegFilter(JpegReader in)
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
    JpegReader m_in;
    JpegCost m_cost;
    bool m_inScan = false;
};

} // namespace

QByteArray drawingJpeg(const ByteReader &in)
{
    return JpegFilter(JpegReader(in)).filtered();
}

} // namespace znt
