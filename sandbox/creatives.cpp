#include "creatives.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMimeDatabase>
#include <QtEndian>

#include <zlib.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// Outside of any namespace, as the macro wants it.
static void loadResources()
{
    Q_INIT_RESOURCE(sandbox_creatives);
}

namespace sandbox {
namespace {

constexpr char pngSignature[] = "\x89PNG\r\n\x1a\n";

QByteArray bigEndian(quint32 value)
{
    QByteArray bytes(4, Qt::Uninitialized);
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray pngChunk(const QByteArray &type, const QByteArray &data)
{
    const QByteArray content = type + data;
    const auto *bytes = reinterpret_cast<const Bytef *>(content.constData());
    return bigEndian(data.size()) + content + bigEndian(crc32(0, bytes, uInt(content.size())));
}

QByteArray pngHeader(quint32 side)
{
    // One bit a pixel, grey.
    return pngSignature
        + pngChunk("IHDR", bigEndian(side) + bigEndian(side) + QByteArray("\x01\0\0\0\0", 5));
}

// 50 KB that decode to 400 million pixels.
QByteArray bombPicture()
{
    constexpr quint32 side = 20'000;
    const QByteArray rows((1 + side / 8) * side, '\0');
    // qCompress() puts the length before the zlib stream.
    return pngHeader(side) + pngChunk("IDAT", qCompress(rows, 9).mid(4)) + pngChunk("IEND", {});
}

Answer endlessPicture()
{
    // A well-formed start, and a data chunk that promises two gigabytes.
    Answer answer = creative(u"endless.png"_s, pngHeader(4096) + bigEndian(0x7fffffff) + "IDAT");
    answer.delivery = Answer::Delivery::Endless;
    return answer;
}

QByteArray resource(const QString &name)
{
    static const bool isLoaded = (loadResources(), true);
    Q_UNUSED(isLoaded)
    QFile file(u":/sandbox/"_s + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

std::optional<QByteArray> fileIn(const QString &dir, const QString &name)
{
    const QString folder = QFileInfo(dir).canonicalFilePath();
    const QFileInfo info(QDir(folder), name);
    if (folder.isEmpty() || !info.isFile() || QFileInfo(info.canonicalFilePath()).path() != folder)
        return {};
    QFile file(info.canonicalFilePath());
    return file.open(QIODevice::ReadOnly) ? std::optional(file.readAll()) : std::nullopt;
}

std::optional<Answer> builtInCreative(const QString &name)
{
    if (name == "broken.png"_L1)
        return creative(name, pngSignature + QByteArray(2000, '\x5a'));
    if (name == "bomb.png"_L1)
        return creative(name, bombPicture());
    if (name == "endless.png"_L1)
        return endlessPicture();
    const bool slow = name == "slow.jpg"_L1;
    const QByteArray data = resource(slow ? u"splash.jpg"_s : name);
    if (data.isEmpty())
        return {};
    Answer answer = creative(name, data);
    answer.delay = slow ? 3s : 0s;
    return answer;
}

Answer creative(const QString &name, const QByteArray &data)
{
    const QMimeType type = QMimeDatabase().mimeTypeForFileNameAndData(name, data);
    return {.body = data, .contentType = type.name().toLatin1()};
}

Answer ranged(const Request &request, Answer whole)
{
    const qint64 size = whole.body.size();
    const QByteArray range = request.header("Range");
    const qsizetype dash = range.indexOf('-');
    whole.headers.emplaceBack("Accept-Ranges", "bytes");
    if (!range.startsWith("bytes=") || dash < 0)
        return whole;
    const QByteArray from = range.mid(6, dash - 6);
    const QByteArray to = range.mid(dash + 1);
    // "bytes=A-B", "bytes=A-" or "bytes=-N", the last N.
    const qint64 first = from.isEmpty() ? qMax(0LL, size - to.toLongLong()) : from.toLongLong();
    const qint64 last = from.isEmpty() || to.isEmpty() ? size - 1 : qMin(to.toLongLong(), size - 1);
    const QByteArray total = '/' + QByteArray::number(size);
    if (first < 0 || first > last)
        return {.status = 416, .headers = {{"Content-Range", "bytes *" + total}}};
    whole.status = 206;
    whole.headers.emplaceBack("Content-Range",
        "bytes " + QByteArray::number(first) + '-' + QByteArray::number(last) + total);
    whole.body = whole.body.mid(first, last - first + 1);
    return whole;
}

} // namespace sandbox
