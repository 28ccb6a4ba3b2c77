#include "net/pictureformats.h"

#include <array>

namespace znt {

namespace {

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

} // namespace

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

} // namespace znt
