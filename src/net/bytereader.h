// Reads and writes the numbers of picture files.
#pragma once

#include <QByteArray>
#include <QtEndian>

#include <utility>

namespace znt {

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

protected:
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

} // namespace znt
