#include "splash/videoplayer.h"

#include "net/sessions.h"
#include "support/mainthread.h"

#include <QAudioDevice>
#include <QAudioOutput>
#include <QLibrary>
#include <QMediaDevices>
#include <QPointer>

namespace znt {

namespace {

// Where Qt plays through GStreamer it initialises it on the main thread, which takes seconds when
// the user's account has no registry of its plugins yet. Done before, it takes nothing.
void initializeBackend()
{
#if defined(Q_OS_LINUX) && !defined(Q_OS_ANDROID)
    constexpr auto defaultBackend = QT_VERSION < QT_VERSION_CHECK(6, 5, 0) ? "gstreamer" : "ffmpeg";
    if (qEnvironmentVariable("QT_MEDIA_BACKEND", QLatin1String(defaultBackend)) != u"gstreamer")
        return;
    using Initialize = int (*)(int *, char ***, void **);
    QLibrary library(QStringLiteral("gstreamer-1.0"), 0);
    const auto initialize = reinterpret_cast<Initialize>(library.resolve("gst_init_check"));
    if (initialize)
        initialize(nullptr, nullptr, nullptr);
#endif
}

} // namespace

VideoPlayer::VideoPlayer(const QString &url)
    : m_url(url)
{
    sendHttp(Session::Images, {.url = url},
        [self = QPointer<QObject>(this), this](const HttpAnswer &answer) {
            const bool arrived = !answer.error && answer.status / 100 == 2;
            if (!arrived || answer.body.isEmpty())
                return;
            inPool(
                self,
                [video = answer.body] {
                    initializeBackend();
                    return video;
                },
                [this](const QByteArray &video) { play(video); });
        });
}

VideoPlayer::~VideoPlayer()
{
    if (!m_player)
        return;
    m_player->setVideoOutput(nullptr); // a backend may still have frames under way to the sink
    m_player->setSource({}); // else GStreamer's takes its pipeline apart when it is half destroyed
}

void VideoPlayer::play(const QByteArray &video)
{
    m_video.setData(video);
    m_video.open(QIODevice::ReadOnly);
    m_sink = std::make_unique<QVideoSink>();
    m_player = std::make_unique<QMediaPlayer>();
    connect(m_sink.get(), &QVideoSink::videoFrameChanged, this, &VideoPlayer::takeFrame);
    connect(m_player.get(), &QMediaPlayer::mediaStatusChanged, this, &VideoPlayer::rewind,
        Qt::QueuedConnection);
    m_player->setVideoOutput(m_sink.get());
    if (!QMediaDevices::defaultAudioOutput().isNull()) {
        m_sound = std::make_unique<QAudioOutput>();
        m_player->setAudioOutput(m_sound.get());
    }
    // A backend plays no device without an address, though it reads nothing from there.
    m_player->setSourceDevice(&m_video, m_url);
    m_player->play();
}

// Frames that come faster than they can be converted are left out.
void VideoPlayer::takeFrame(const QVideoFrame &frame)
{
    if (!frame.isValid())
        return;
    if (m_isConverting)
        m_waiting = frame;
    else
        convert(frame);
}

void VideoPlayer::convert(const QVideoFrame &frame)
{
    m_isConverting = true;
    inPool(
        this, [frame] { return frame.toImage(); },
        [this](const QImage &picture) { converted(picture); });
}

void VideoPlayer::converted(const QImage &picture)
{
    m_isConverting = false;
    if (m_waiting.isValid())
        convert(std::exchange(m_waiting, {}));
    if (!picture.isNull())
        Q_EMIT frame(picture);
}

// Not every backend heeds QMediaPlayer::setLoops().
void VideoPlayer::rewind(QMediaPlayer::MediaStatus status)
{
    if (status != QMediaPlayer::EndOfMedia)
        return;
    m_player->stop();
    m_player->play();
}

} // namespace znt
