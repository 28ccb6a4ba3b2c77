// Plays a video in an endless loop, as a stream of pictures.
#pragma once

#include <QBuffer>
#include <QImage>
#include <QMediaPlayer>
#include <QUrl>
#include <QVideoFrame>
#include <QVideoSink>

#include <memory>

class QAudioOutput;

namespace znt {

// Fetches the video like any picture, so that the same certificates are trusted and the same bounds
// hold, and plays it from memory: it can be rewound then whatever the server is able to. One that
// cannot be fetched or played gives no picture.
class VideoPlayer : public QObject
{
    Q_OBJECT

public:
    // http or https; anything else cannot be fetched.
    explicit VideoPlayer(const QString &url);
    ~VideoPlayer() override;

Q_SIGNALS:
    // The first one tells that the video can be seen. Whoever hears of it may destroy the player.
    void frame(const QImage &frame);

private:
    void play(const QByteArray &video);
    void takeFrame(const QVideoFrame &frame);
    void convert(const QVideoFrame &frame);
    void converted(const QImage &picture);
    void rewind(QMediaPlayer::MediaStatus status);

    const QUrl m_url;
    QBuffer m_video;
    // Made when there is something to play: the first one in a process loads the media backend.
    std::unique_ptr<QVideoSink> m_sink;
    std::unique_ptr<QAudioOutput> m_sound;
    std::unique_ptr<QMediaPlayer> m_player;
    bool m_isConverting = false;
    QVideoFrame m_waiting; // the latest frame that came meanwhile
};

} // namespace znt
