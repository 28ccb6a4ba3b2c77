// Plays a video in an endless loop, as a stream of pictures.
#pragma once

#include <QImage>
#include <QObject>

namespace znt {

class VideoPlayer : public QObject
{
    Q_OBJECT

public:
    explicit VideoPlayer(const QString &url){Q_UNUSED(url)}

    Q_SIGNALS : void frame(const QImage &frame);
};

} // namespace znt
