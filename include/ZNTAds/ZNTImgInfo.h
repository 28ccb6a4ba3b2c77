#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTProperty.h>

#include <QtCore/QJsonObject>
#include <QtCore/QString>

/// One picture of an ad. A missing text is a null string.
class ZNTADS_EXPORT ZNTImgInfo
{
    /// Width in pixels as the exchange states it; 0 when it does not.
    ZNT_PROPERTY(qint32, width, setWidth);
    /// Height in pixels as the exchange states it; 0 when it does not.
    ZNT_PROPERTY(qint32, height, setHeight);
    /// The exchange's name for the kind of picture.
    ZNT_PROPERTY(QString, type, setType);
    /// The picture's address.
    ZNT_PROPERTY(QString, url, setUrl);

public:
    /// Reads a record; a field whose key is missing or of a wrong type stays missing or 0.
    static ZNTImgInfo initWithDictionary(const QJsonObject &dictionary);

    friend bool operator==(const ZNTImgInfo &, const ZNTImgInfo &) = default;

private:
    friend struct znt::Fields<ZNTImgInfo>;
};
