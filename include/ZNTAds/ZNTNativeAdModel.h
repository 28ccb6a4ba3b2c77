#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTProperty.h>

#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtQml/qqmlregistration.h>

#include <optional>

/// A small native ad for the host's own code, with camel-case keys. In QML it is the value type
/// zntNativeAdModel. The library itself neither makes nor reads one.
///
/// A missing text is a null string. A list is a JSON array, a missing one a JSON null; a value of
/// another kind that was set counts as missing.
class ZNTADS_EXPORT ZNTNativeAdModel
{
    Q_GADGET
    QML_VALUE_TYPE(zntNativeAdModel)

    /// The headline.
    ZNT_PROPERTY(QString, title, setTitle);
    /// The text below the headline.
    ZNT_PROPERTY(QString, desc, setDesc);
    /// The address of the picture.
    ZNT_PROPERTY(QString, imageUrl, setImageUrl);
    /// The address of the icon.
    ZNT_PROPERTY(QString, iconUrl, setIconUrl);
    /// The text of the button.
    ZNT_PROPERTY(QString, callToAction, setCallToAction);
    /// The advertiser's name.
    ZNT_PROPERTY(QString, advertiser, setAdvertiser);
    /// The web page that a click leads to.
    ZNT_PROPERTY(QString, landingPageUrl, setLandingPageUrl);
    /// Addresses of several pictures.
    ZNT_PROPERTY(QJsonValue, imageUrls, setImageUrls);
    /// Addresses to call when the ad is seen.
    ZNT_PROPERTY(QJsonValue, impressionUrls, setImpressionUrls);
    /// Addresses to call at a click.
    ZNT_PROPERTY(QJsonValue, clickUrls, setClickUrls);

public:
    /// The same as initWithDictionary().
    static std::optional<ZNTNativeAdModel> modelWithDictionary(const QJsonValue &dictionary);
    /// Reads a model; nothing when @p dictionary is no object. Texts are read by stringValue().
    static std::optional<ZNTNativeAdModel> initWithDictionary(const QJsonValue &dictionary);
    /// The fields that are not missing.
    Q_INVOKABLE QJsonObject toDictionary() const;
    /// Whether the title, the landing page, and a picture or a list of them are set.
    Q_INVOKABLE bool isValid() const;
    /// The class name, this object's address, title, advertiser and imageUrl in one line; a missing
    /// text reads "(null)".
    Q_INVOKABLE QString description() const;

    /// The same as ZNTAdModel::stringValue().
    static QString stringValue(const QJsonValue &value);

    friend bool operator==(const ZNTNativeAdModel &, const ZNTNativeAdModel &) = default;

private:
    friend struct znt::Fields<ZNTNativeAdModel>;
};
