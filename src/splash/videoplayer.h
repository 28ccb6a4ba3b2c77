// Plays a video in an endless loop, as a stream of pictures.
#pragma once

#include "splash/videobackend.h"

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
    void play(VideoBackend &backend, const QByteArray &video);
    void takeFrame(const VideoBackend::Frame &frame);
    void convert(const VideoBackend::Frame &frame);
    void converted(const QImage &picture);

    const QUrl m_url;
    std::unique_ptr<QObject> m_loop; // while there is something to play
    bool m_isConverting = false;
    VideoBackend::Frame m_waiting; // the latest frame that came meanwhile
};

} // namespace znt
