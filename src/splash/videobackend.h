// What plays videos. Its plugin uses Qt Multimedia, which only a host that shows a video needs.
#pragma once

#include <QImage>
#include <QObject>
#include <QUrl>

#include <functional>
#include <memory>

namespace znt {

class VideoBackend
{
public:
    // Converts a frame, on any thread.
    using Frame = std::function<QImage()>;

    virtual ~VideoBackend() = default;

    // Plays the video, which came from the address, in an endless loop for as long as the returned
    // object lives. `show` is called on the main thread; a video that cannot be played has no
    // frames.
    virtual std::unique_ptr<QObject> play(
        const QByteArray &video, const QUrl &address, std::function<void(Frame)> show) = 0;
};

} // namespace znt

// The number grows with each change of the interface.
Q_DECLARE_INTERFACE(znt::VideoBackend, "zntads.VideoBackend/1")
