#include "ads/adcontent.h"

#include "model/ad.h"
#include "net/remoteimage.h"

#include <QCoreApplication>

namespace znt {

namespace {

constexpr qsizetype maximumShownLength = 300;

} // namespace

AdContent::AdContent()
    : m_source(QCoreApplication::translate("ZNTAds", "广告"))
    , m_setup(std::make_unique<QObject>())
{
}

AdContent::~AdContent() = default;

void AdContent::startOver()
{
    m_setup = std::make_unique<QObject>();
}

void AdContent::setText(const QString &text)
{
    m_text = shortened(text, maximumShownLength);
    Q_EMIT changed();
}

void AdContent::setSource(const QString &source)
{
    m_source = source.isEmpty() ? QCoreApplication::translate("ZNTAds", "广告")
                                : shortened(source, maximumShownLength);
    Q_EMIT changed();
}

void AdContent::fetchLogo(bool hasLogo, const QString &url, const QString &pictureUrl)
{
    m_hasLogo = hasLogo;
    m_logoIsPicture = url == pictureUrl;
    Q_EMIT changed();
    setLogo({});
    if (!url.isEmpty() && !m_logoIsPicture)
        fetchImage(url, setup(), [this](const QImage &logo) { setLogo(logo); });
}

void AdContent::fetchPicture(const QString &url)
{
    if (!url.isEmpty())
        fetchImage(url, setup(), [this](const QImage &picture) { setPicture(picture); });
}

void AdContent::clearPicture()
{
    setPicture({});
}

void AdContent::setPicture(const QImage &picture)
{
    if (picture.isNull() && m_picture.isNull())
        return;
    m_picture = picture;
    Q_EMIT pictureChanged();
    if (m_logoIsPicture)
        setLogo(picture);
}

void AdContent::setLogo(const QImage &logo)
{
    if (logo.isNull() && m_logo.isNull())
        return;
    m_logo = logo;
    Q_EMIT logoChanged();
}

} // namespace znt
