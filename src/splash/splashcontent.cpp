#include "splash/splashcontent.h"

#include "net/remoteimage.h"
#include "splash/videoplayer.h"
#include "ui/blur.h"

namespace znt {

namespace {

// The means of the blurred copy's top, middle and bottom, without its alpha.
QVariantList groundColorsOf(const QImage &blurredPicture)
{
    const QImage means =
        blurredPicture.scaled(1, 3, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QVariantList colors;
    for (int y = 0; y < means.height(); ++y)
        colors.append(QColor(means.pixelColor(0, y).rgb()));
    return colors;
}

} // namespace

SplashContent::SplashContent() = default;

SplashContent::~SplashContent() = default;

void SplashContent::showPicture(
    const QString &url, const QString &text, const QString &source, const QString &sourceLogo)
{
    startOver(false);
    setSource(source);
    fetchLogo(!sourceLogo.isEmpty(), sourceLogo, url);
    const auto show = [this, text](const QImage &picture, const QImage &blurredPicture) {
        m_blurredPicture = blurredPicture;
        m_groundColors = groundColorsOf(blurredPicture);
        setPicture(picture);
        setText(text);
        m_hasArrived = true;
        setReady(m_picturesDrawn);
    };
    fetchImageAndCopy(url, setup(), blurred, show);
}

void SplashContent::showVideo(const QString &url)
{
    startOver(true);
    m_video = std::make_unique<VideoPlayer>(url);
    connect(m_video.get(), &VideoPlayer::frame, this, [this](const QImage &frame) {
        m_videoFrame = frame;
        Q_EMIT videoFrameChanged();
        setReady(true);
    });
}

// Later changes, of the size for example, do not hide what is shown.
void SplashContent::setPicturesDrawn(bool drawn)
{
    m_picturesDrawn = drawn;
    if (drawn && m_hasArrived)
        setReady(true);
}

void SplashContent::setSafeInsets(const QMarginsF &insets)
{
    if (std::exchange(m_safeInsets, insets) != insets)
        Q_EMIT safeInsetsChanged();
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
    AdContent::startOver();
    m_video.reset();
    m_videoFrame = {};
    m_isVideo = isVideo;
    m_hasArrived = false;
    setReady(false);
    Q_EMIT modeChanged();
    Q_EMIT videoFrameChanged();
}

void SplashContent::setReady(bool ready)
{
    if (ready == m_isReady)
        return;
    m_isReady = ready;
    Q_EMIT readyChanged();
}

} // namespace znt
