#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QtCore/QJsonArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <memory>

/// One feed ad. It has identity: the manager keeps track of records by object, not by content, so
/// it is held by std::shared_ptr. Missing texts are null.
class ZNTADS_EXPORT ZNTFeedAdData
{
public:
    ZNTFeedAdData() = default;
    Q_DISABLE_COPY_MOVE(ZNTFeedAdData)

    /// Tells what was reported as seen, and goes into negative feedback. An ad without one is never
    /// taken for another.
    QString adId() const { return m_adId; }
    void setAdId(const QString &adId) { m_adId = adId; }
    /// One of the texts that the answer offered.
    QString title() const { return m_title; }
    void setTitle(const QString &title) { m_title = title; }
    /// The same text as title().
    QString desc() const { return m_desc; }
    void setDesc(const QString &desc) { m_desc = desc; }
    /// Addresses of the pictures, empty when there are none.
    QStringList imageUrls() const { return m_imageUrls; }
    void setImageUrls(const QStringList &urls) { m_imageUrls = urls; }
    /// The web page that a click opens.
    QString h5url() const { return m_h5url; }
    void setH5url(const QString &url) { m_h5url = url; }
    /// The deep link that a click tries first.
    QString deepLinkUrl() const { return m_deepLinkUrl; }
    void setDeepLinkUrl(const QString &url) { m_deepLinkUrl = url; }
    /// Address of the advertiser's logo; when it is not null, also when empty, the logo takes the
    /// label's place.
    QString sourceLogo() const { return m_sourceLogo; }
    void setSourceLogo(const QString &url) { m_sourceLogo = url; }
    /// The advertiser's name.
    QString source() const { return m_source; }
    void setSource(const QString &source) { m_source = source; }
    /// The number of the template that draws the ad, 0 to 8.
    qint64 style() const { return m_style; }
    void setStyle(qint64 style) { m_style = style; }
    /// The tracking lists, kept as the exchange sent them; elements that are no texts are not
    /// fired.
    QJsonArray viewUrl3rd() const { return m_viewUrl3rd; }
    void setViewUrl3rd(const QJsonArray &urls) { m_viewUrl3rd = urls; }
    QJsonArray clickUrl3rd() const { return m_clickUrl3rd; }
    void setClickUrl3rd(const QJsonArray &urls) { m_clickUrl3rd = urls; }
    QJsonArray dpEventUrls() const { return m_dpEventUrls; }
    void setDpEventUrls(const QJsonArray &urls) { m_dpEventUrls = urls; }

private:
    QString m_adId;
    QString m_title;
    QString m_desc;
    QStringList m_imageUrls;
    QString m_h5url;
    QString m_deepLinkUrl;
    QString m_sourceLogo;
    QString m_source;
    qint64 m_style = 0;
    QJsonArray m_viewUrl3rd;
    QJsonArray m_clickUrl3rd;
    QJsonArray m_dpEventUrls;
};

using ZNTFeedAdDataPtr = std::shared_ptr<ZNTFeedAdData>;
