#include "splash/videobackend.h"

#include <QAudioDevice>
#include <QAudioOutput>
#include <QBuffer>
#include <QLibrary>
#include <QMediaDevices>
#include <QMediaPlayer>
#include <QVideoFrame>
#include <QVideoSink>

#include <utility>

namespace znt {

namespace {

// Where Qt plays through GStreamer it initialises it on the main thread, which takes seconds when
// the user's account has no registry of its plugins yet. Done before, it takes nothing.
void initializeMedia()
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

class VideoLoop : public QObject
{
public:
    VideoLoop(
        const QByteArray &video, const QUrl &address, std::function<void(VideoBackend::Frame)> show)
        : m_show(std::move(show))
    {
        m_video.setData(video);
        m_video.open(QIODevice::ReadOnly);
        connect(&m_sink, &QVideoSink::videoFrameChanged, this, &VideoLoop::takeFrame);
        connect(&m_player, &QMediaPlayer::mediaStatusChanged, this, &VideoLoop::rewind,
            Qt::QueuedConnection);
        m_player.setVideoOutput(&m_sink);
        if (!QMediaDevices::defaultAudioOutput().isNull()) {
            m_sound = std::make_unique<QAudioOutput>();
            m_player.setAudioOutput(m_sound.get());
        }
        // A backend plays no device without an address, though it reads nothing from there.
        m_player.setSourceDevice(&m_video, address);
        m_player.play();
    }
    ~VideoLoop() override
    {
        m_player.setVideoOutput(nullptr); // a backend may still have frames under way to the sink
        // Else GStreamer's takes its pipeline apart when it is half destroyed.
        m_player.setSource({});
    }

private:
    void takeFrame(const QVideoFrame &frame)
    {
        if (frame.isValid())
            m_show([frame] { return frame.toImage(); });
    }

    // Not every backend heeds QMediaPlayer::setLoops().
    void rewind(QMediaPlayer::MediaStatus status)
    {
        if (status != QMediaPlayer::EndOfMedia)
            return;
        m_player.stop();
        m_player.play();
    }

    const std::function<void(VideoBackend::Frame)> m_show;
    QBuffer m_video;
    QVideoSink m_sink;
    std::unique_ptr<QAudioOutput> m_sound;
    QMediaPlayer m_player;
};

} // namespace

} // namespace znt

class ZNTAdsVideoPlugin : public QObject, public znt::VideoBackend
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "zntads.VideoBackend/1")
    Q_INTERFACES(znt::VideoBackend)

public:
    ZNTAdsVideoPlugin() { znt::initializeMedia(); }

    std::unique_ptr<QObject> play(const QByteArray &video, const QUrl &address,
        std::function<void(znt::VideoBackend::Frame)> show) override
    {
        return std::make_unique<znt::VideoLoop>(video, address, std::move(show));
    }
};

#include "videoplugin.moc"
