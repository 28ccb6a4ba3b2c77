// What a splash creative shows: texts and pictures, or the frames of a video.
#pragma once

#include "ads/adcontent.h"

#include <QColor>

namespace znt {

class VideoPlayer;

// Loads the content and says when it can be seen.
class SplashContent : public znt::AdContent
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to a splash creative")
    Q_PROPERTY(bool hasPicture READ hasPicture NOTIFY pictureChanged)
    Q_PROPERTY(QImage blurredPicture MEMBER m_blurredPicture NOTIFY pictureChanged)
    Q_PROPERTY(QVariantList groundColors MEMBER m_groundColors NOTIFY pictureChanged)
    Q_PROPERTY(bool picturesDrawn READ picturesDrawn WRITE setPicturesDrawn)
    Q_PROPERTY(bool isVideo READ isVideo NOTIFY modeChanged)
    Q_PROPERTY(QImage videoFrame MEMBER m_videoFrame NOTIFY videoFrameChanged)
    Q_PROPERTY(qreal safeTop READ safeTop NOTIFY safeInsetsChanged)
    Q_PROPERTY(qreal safeBottom READ safeBottom NOTIFY safeInsetsChanged)
    Q_PROPERTY(QString skipTitle READ skipTitle WRITE setSkipTitle NOTIFY skipTitleChanged)

public:
    SplashContent();
    ~SplashContent() override;

    // Each takes the place of what was shown before.
    void showPicture(
        const QString &url, const QString &text, const QString &source, const QString &sourceLogo);
    void showVideo(const QString &url);

    bool isReady() const { return m_isReady; }
    // Whether what the views of the pictures draw is up to date.
    bool picturesDrawn() const { return m_picturesDrawn; }
    void setPicturesDrawn(bool drawn);
    bool isVideo() const { return m_isVideo; }
    bool hasPicture() const { return !picture().isNull(); }
    qreal safeTop() const { return m_safeInsets.top(); }
    qreal safeBottom() const { return m_safeInsets.bottom(); }
    void setSafeInsets(const QMarginsF &insets);
    QString skipTitle() const { return m_skipTitle; }
    void setSkipTitle(const QString &title);

Q_SIGNALS:
    void modeChanged();
    void videoFrameChanged();
    void safeInsetsChanged();
    void skipTitleChanged();
    void readyChanged();

private:
    void startOver(bool isVideo);
    void setReady(bool ready);

    QImage m_blurredPicture;
    QVariantList m_groundColors; // from top to bottom
    bool m_hasArrived = false;   // the picture of the present setup
    bool m_picturesDrawn = false;
    bool m_isVideo = false;
    QImage m_videoFrame;
    QMarginsF m_safeInsets;
    QString m_skipTitle;
    bool m_isReady = false;
    std::unique_ptr<VideoPlayer> m_video;
};

} // namespace znt
