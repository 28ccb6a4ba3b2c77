#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTProperty.h>

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QSizeF>
#include <QtCore/QString>
#include <QtQml/qqmlregistration.h>

#include <optional>

/// A native ad for the host's own code, with snake-case keys. In QML it is the value type
/// zntAdModel. The library itself neither makes nor reads one.
///
/// A missing text is a null string. "ad_id", "ad_cate" and "ad_brand" are written, but "adID",
/// "adCate" and "adBrand" are read, so these three do not survive writing and reading back.
class ZNTADS_EXPORT ZNTAdModel
{
    Q_GADGET
    QML_VALUE_TYPE(zntAdModel)

    /// The ad's identifier.
    ZNT_PROPERTY(QString, adId, setAdId);
    /// The creative's identifier.
    ZNT_PROPERTY(QString, creativeId, setCreativeId);
    /// The kind of creative, one of CreativeType; other values are kept.
    ZNT_PROPERTY(qint64, type, setType);
    /// The creative's size, as two single-precision numbers.
    ZNT_PROPERTY(QSizeF, size, setSize, 0, 0);
    /// The ad's category.
    ZNT_PROPERTY(QString, adCate, setAdCate);
    /// The advertised brand.
    ZNT_PROPERTY(QString, adBrand, setAdBrand);
    /// The headline.
    ZNT_PROPERTY(QString, title, setTitle);
    /// The address of the picture.
    ZNT_PROPERTY(QString, imageUrl, setImageUrl);
    /// The address of the icon.
    ZNT_PROPERTY(QString, iconUrl, setIconUrl);
    /// The address of the video.
    ZNT_PROPERTY(QString, videoUrl, setVideoUrl);
    /// Where a click leads.
    ZNT_PROPERTY(QString, clickUrl, setClickUrl);
    /// The deep link.
    ZNT_PROPERTY(QString, deepLinkUrl, setDeepLinkUrl);
    /// The web page.
    ZNT_PROPERTY(QString, landingPageUrl, setLandingPageUrl);
    /// The text of the button.
    ZNT_PROPERTY(QString, callToAction, setCallToAction);
    /// The advertiser's name.
    ZNT_PROPERTY(QString, advertiserName, setAdvertiserName);
    /// The address of the advertiser's logo.
    ZNT_PROPERTY(QString, advertiserLogo, setAdvertiserLogo);
    /// Addresses to call when the ad is seen.
    ZNT_PROPERTY(QJsonArray, impressionUrls, setImpressionUrls);
    /// Addresses to call at a click.
    ZNT_PROPERTY(QJsonArray, clickUrls, setClickUrls);
    /// Addresses to call when the video starts.
    ZNT_PROPERTY(QJsonArray, startUrls, setStartUrls);
    /// Addresses to call when the video has ended.
    ZNT_PROPERTY(QJsonArray, completeUrls, setCompleteUrls);

public:
    /// The kinds of creative.
    enum CreativeType : qint64 {
        UnknownCreative = 0,
        ImageCreative = 1,
        VideoCreative = 2,
        HtmlCreative = 3,
        TextCreative = 4,
    };

    /// The same as initWithDictionary().
    static std::optional<ZNTAdModel> modelWithDictionary(const QJsonValue &dictionary);
    /// Reads a model; nothing when @p dictionary is no object. Texts are read by stringValue(), a
    /// list that is missing or no list as an empty one. The size is read when both "width" and
    /// "height" are numbers, or texts that are read for their leading number, and fit single
    /// precision; else it is zero.
    static std::optional<ZNTAdModel> initWithDictionary(const QJsonValue &dictionary);
    /// All fields, a missing text as "", and "description".
    Q_INVOKABLE QJsonObject toDictionary() const;
    /// Whether the identifiers are set, the type is known, and what the type needs is set: imageUrl
    /// for a picture, videoUrl for a video, clickUrl for HTML, title for a text.
    Q_INVOKABLE bool isValid() const;
    /// The class name and this object's address: "<ZNTAdModel: 0x7ffd5e8a1f20>".
    Q_INVOKABLE QString description() const;

    /// A string as it is; a number in its shortest decimal form that reads back the same, true and
    /// false as "1" and "0"; null for anything else.
    static QString stringValue(const QJsonValue &value);
    /// An array as it is; nothing for anything else.
    static std::optional<QJsonArray> arrayValue(const QJsonValue &value);
    /// The type of the exact name "image", "video", "html" or "text"; 0 for any other, and for
    /// null.
    static qint64 creativeTypeFromString(const QString &name);
    /// The name of a type, "unknown" for any but 1 to 4.
    static QString stringFromCreativeType(qint64 type);

    friend bool operator==(const ZNTAdModel &, const ZNTAdModel &) = default;

private:
    friend struct znt::Fields<ZNTAdModel>;
};
