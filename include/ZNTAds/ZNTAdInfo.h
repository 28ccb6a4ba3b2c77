#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTAppInfo.h>
#include <ZNTAds/ZNTImgInfo.h>
#include <ZNTAds/ZNTTrackInfo.h>
#include <ZNTAds/ZNTTxtInfo.h>
#include <ZNTAds/ZNTUrlInfo.h>

/// One ad of the exchange's answer. A missing text is a null string, a missing record or list an
/// empty optional, which is not the same as an empty list.
class ZNTADS_EXPORT ZNTAdInfo
{
    /// The settlement price of the auction.
    ZNT_PROPERTY(QString, settlePrice, setSettlePrice);
    /// The position that the ad was requested for.
    ZNT_PROPERTY(QString, positionId, setPositionId);
    /// The exchange's template mark.
    ZNT_PROPERTY(QString, templateFlag, setTemplateFlag);
    /// The tracking addresses.
    ZNT_PROPERTY(std::optional<ZNTTrackInfo>, trackInfo, setTrackInfo);
    /// The pictures.
    ZNT_PROPERTY(std::optional<QList<ZNTImgInfo>>, images, setImages);
    /// The texts.
    ZNT_PROPERTY(std::optional<QList<ZNTTxtInfo>>, texts, setTexts);
    /// The address of the advertiser's logo.
    ZNT_PROPERTY(QString, sourceLogo, setSourceLogo);
    /// The advertiser's name.
    ZNT_PROPERTY(QString, sourceName, setSourceName);
    /// The ad's identifier.
    ZNT_PROPERTY(QString, adId, setAdId);
    /// The ad's category.
    ZNT_PROPERTY(QString, adCate, setAdCate);
    /// The advertised brand.
    ZNT_PROPERTY(QString, adBrand, setAdBrand);
    /// The style code, such as "XDT".
    ZNT_PROPERTY(QString, adStyle, setAdStyle);
    /// Where a click leads.
    ZNT_PROPERTY(std::optional<ZNTUrlInfo>, urlInfo, setUrlInfo);
    /// The advertised application.
    ZNT_PROPERTY(std::optional<ZNTAppInfo>, appInfo, setAppInfo);

public:
    /// Reads a record; a field whose key is missing or of a wrong type stays missing. An element of
    /// a list that is no object gives an empty record.
    static ZNTAdInfo initWithDictionary(const QJsonObject &dictionary);
    /// The record in the exchange's form, without the keys of missing fields. A record that was
    /// read comes back as it was, less unknown keys and values of a wrong type.
    QJsonObject toDictionary() const;

    friend bool operator==(const ZNTAdInfo &, const ZNTAdInfo &) = default;

private:
    friend struct znt::Fields<ZNTAdInfo>;
};
