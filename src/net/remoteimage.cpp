#include "net/remoteimage.h"

#include "net/imagedecoder.h"
#include "net/sessions.h"
#include "support/mainthread.h"

#include <QPointer>

namespace znt {

namespace {

using Pictures = std::pair<QImage, QImage>;

Pictures decoded(const QByteArray &bytes, const std::function<QImage(const QImage &)> &makeCopy)
{
    const QImage picture = decodedImage(bytes);
    return {picture, picture.isNull() || !makeCopy ? QImage() : makeCopy(picture)};
}

} // namespace

void fetchImageAndCopy(const QString &url, QObject *receiver,
    std::function<QImage(const QImage &)> makeCopy,
    std::function<void(const QImage &picture, const QImage &copy)> done)
{
    const auto take = [done = std::move(done)](const Pictures &pictures) {
        if (!pictures.first.isNull())
            done(pictures.first, pictures.second);
    };
    // The answer comes on the session's thread, where the receiver must not be looked at.
    sendHttp(Session::Images, {.url = url},
        [receiver = QPointer<QObject>(receiver), makeCopy = std::move(makeCopy), take](
            const HttpAnswer &answer) {
            const bool arrived = !answer.error && answer.status / 100 == 2;
            const QByteArray bytes = arrived ? answer.body : QByteArray();
            inPool(
                receiver, [bytes, makeCopy] { return decoded(bytes, makeCopy); }, take);
        });
}

void fetchImage(
    const QString &url, QObject *receiver, std::function<void(const QImage &picture)> done)
{
    fetchImageAndCopy(url, receiver, {},
        [done = std::move(done)](const QImage &picture, const QImage &) { done(picture); });
}

} // namespace znt
