// What a splash creative shows: texts, pictures, or the frames of a video.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QImage>
#include <QObject>
#include <QtQml/qqmlregistration.h>

#include <memory>

namespace znt {

class VideoPlayer;

// Loads the content and says when it can be seen. The looks read it, and report what a person does
// through its signals.
class SplashContent : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to a splash creative")
    Q_PROPERTY(QString adContent MEMBER m_adContent NOTIFY changed)
    Q_PROPERTY(QString source MEMBER m_source NOTIFY changed)
    Q_PROPERTY(bool hasLogo MEMBER m_hasLogo NOTIFY changed)
    Q_PROPERTY(QImage logo MEMBER m_logo NOTIFY changed)
    Q_PROPERTY(bool hasPicture READ hasPicture NOTIFY changed)
    Q_PROPERTY(QImage picture MEMBER m_picture NOTIFY changed)
    Q_PROPERTY(QImage blurredPicture MEMBER m_blurredPicture NOTIFY changed)
    Q_PROPERTY(bool isVideo READ isVideo NOTIFY changed)
    Q_PROPERTY(QImage videoFrame MEMBER m_videoFrame NOTIFY videoFrameChanged)
    Q_PROPERTY(QString skipTitle READ skipTitle WRITE setSkipTitle NOTIFY skipTitleChanged)

public:
    explicit SplashContent(QObject *parent);
    ~SplashContent() override;

    // Each starts over: what an earlier one still loads never arrives.
    void showPicture(const QString &url, const QString &adContent, const QString &source,
        const QString &sourceLogo);
    void showVideo(const QString &url);

    bool isReady() const { return m_isReady; }
    bool isVideo() const { return m_isVideo; }
    bool hasPicture() const { return !m_picture.isNull(); }
    QString skipTitle() const { return m_skipTitle; }
    void setSkipTitle(const QString &title);

Q_SIGNALS:
    void changed();
    void videoFrameChanged();
    void skipTitleChanged();
    void readyChanged();

    // From the looks. They may be in the middle of handling an event, so whoever listens lets that
    // end first.
    void tapped();
    void panned(QPointF translation, QPointF velocity);
    void skipped();

private:
    void startOver(bool isVideo);
    void setReady(bool ready);
    void setSource(const QString &source, const QString &logoUrl);

    QString m_adContent;
    QString m_source = QStringLiteral("广告");
    bool m_hasLogo = false;
    QImage m_logo;
    QImage m_picture;
    QImage m_blurredPicture;
    bool m_isVideo = false;
    QImage m_videoFrame;
    QString m_skipTitle;
    bool m_isReady = false;
    std::unique_ptr<QObject> m_setup; // receives what the present setup loads
    std::unique_ptr<VideoPlayer> m_video;
};

} // namespace znt
