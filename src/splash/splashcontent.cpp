#include "splash/splashcontent.h"

#include "net/remoteimage.h"
#include "splash/videoplayer.h"
#include "ui/blur.h"

namespace znt {

SplashContent::SplashContent(QObject *parent)
    : QObject(parent)
{
}

SplashContent::~SplashContent() = default;

void SplashContent::showPicture(
    const QString &url, const QString &adContent, const QString &source, const QString &sourceLogo)
{
    startOver(false);
    setSource(source, sourceLogo);
    Q_EMIT changed();
    const auto show = [this, adContent](const QImage &picture, const QImage &blurredPicture) {
        m_picture = picture;
        m_blurredPicture = blurredPicture;
        m_adContent = adContent;
        Q_EMIT changed();
        setReady(true);
    };
    fetchImageAndCopy(url, m_setup.get(), blurred, show);
}

void SplashContent::showVideo(const QString &url)
{
    startOver(true);
    Q_EMIT changed();
    Q_EMIT videoFrameChanged();
    m_video = std::make_unique<VideoPlayer>(url);
    connect(m_video.get(), &VideoPlayer::frame, this, [this](const QImage &frame) {
        m_videoFrame = frame;
        Q_EMIT videoFrameChanged();
        setReady(true);
    });
}

void SplashContent::setSkipTitle(const QString &title)
{
    if (title == m_skipTitle)
        return;
    m_skipTitle = title;
    Q_EMIT skipTitleChanged();
}

void SplashContent::startOver(bool isVideo)
{
    m_setup = std::make_unique<QObject>();
    m_video.reset();
    m_videoFrame = {};
    m_isVideo = isVideo;
    setReady(false);
}

void SplashContent::setReady(bool ready)
{
    if (ready == m_isReady)
        return;
    m_isReady = ready;
    Q_EMIT readyChanged();
}

// A logo that cannot be had leaves its place empty; the label does not come back.
void SplashContent::setSource(const QString &source, const QString &logoUrl)
{
    m_source = source.isEmpty() ? QStringLiteral("广告") : source;
    m_logo = {};
    m_hasLogo = !logoUrl.isEmpty();
    if (!m_hasLogo)
        return;
    fetchImage(logoUrl, m_setup.get(), [this](const QImage &logo) {
        m_logo = logo;
        Q_EMIT changed();
    });
}

} // namespace znt
