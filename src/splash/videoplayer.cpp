#include "splash/videoplayer.h"

#include "net/sessions.h"
#include "splash/backends.h"
#include "support/mainthread.h"

namespace znt {

VideoPlayer::VideoPlayer(const QString &url)
    : m_url(url)
{
    sendHttp(Session::Images, {.url = url},
        [self = QPointer<QObject>(this), this](const HttpAnswer &answer) {
            const bool arrived = !answer.error && answer.status / 100 == 2;
            if (!arrived || answer.body.isEmpty())
                return;
            withVideoBackend(
                self, [this, video = answer.body](VideoBackend &backend) { play(backend, video); });
        });
}

VideoPlayer::~VideoPlayer() = default;

void VideoPlayer::play(VideoBackend &backend, const QByteArray &video)
{
    m_loop =
        backend.play(video, m_url, [this](const VideoBackend::Frame &frame) { takeFrame(frame); });
}

// Frames that come faster than they can be converted are left out.
void VideoPlayer::takeFrame(const VideoBackend::Frame &frame)
{
    if (m_isConverting)
        m_waiting = frame;
    else
        convert(frame);
}

void VideoPlayer::convert(const VideoBackend::Frame &frame)
{
    m_isConverting = true;
    inPool(this, frame, [this](const QImage &picture) { converted(picture); });
}

void VideoPlayer::converted(const QImage &picture)
{
    m_isConverting = false;
    if (m_waiting)
        convert(std::exchange(m_waiting, nullptr));
    if (!picture.isNull())
        Q_EMIT frame(picture);
}

} // namespace znt
