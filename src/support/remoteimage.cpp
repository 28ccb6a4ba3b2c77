#include "support/remoteimage.h"

#include "support/application.h"
#include "support/imagedecoder.h"
#include "support/sessions.h"

#include <QPointer>
#include <QThreadPool>

namespace znt {

namespace {

// Travels through the threads as a whole and is looked into on the main thread alone.
struct Order
{
    QPointer<QObject> receiver;
    std::function<QImage(const QImage &)> makeCopy;
    std::function<void(const QImage &, const QImage &)> done;
};

void prepare(const QByteArray &bytes, const std::shared_ptr<Order> &order)
{
    const QImage picture = decodedImage(bytes);
    const QImage copy = picture.isNull() || !order->makeCopy ? QImage() : order->makeCopy(picture);
    // A failure goes to the main thread too: what `done` holds is let go where it came from.
    onMainThread([picture, copy, order] {
        if (!picture.isNull() && order->receiver)
            order->done(picture, copy);
    });
}

} // namespace

void fetchImageAndCopy(const QString &url, QObject *receiver,
    std::function<QImage(const QImage &)> makeCopy,
    std::function<void(const QImage &picture, const QImage &copy)> done)
{
    const auto order =
        std::make_shared<Order>(Order{receiver, std::move(makeCopy), std::move(done)});
    sendHttp(Session::Images, {.url = QUrl(url)}, [order](const HttpAnswer &answer) {
        const bool arrived = !answer.error && answer.status / 100 == 2;
        const QByteArray bytes = arrived ? answer.body : QByteArray();
        QThreadPool::globalInstance()->start([bytes, order] { prepare(bytes, order); });
    });
}

void fetchImage(
    const QString &url, QObject *receiver, std::function<void(const QImage &picture)> done)
{
    fetchImageAndCopy(url, receiver, {},
        [done = std::move(done)](const QImage &picture, const QImage &) { done(picture); });
}

} // namespace znt
