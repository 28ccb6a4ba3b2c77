#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTProperty.h>

#include <QtCore/QJsonObject>
#include <QtCore/QString>

/// Where a click on an ad leads. A missing text is a null string.
class ZNTADS_EXPORT ZNTUrlInfo
{
    /// The exchange's name for the kind of target.
    ZNT_PROPERTY(QString, type, setType);
    /// The web page's address.
    ZNT_PROPERTY(QString, h5url, setH5url);
    /// The deep link, tried before the web page.
    ZNT_PROPERTY(QString, deepLinkUrl, setDeepLinkUrl);

public:
    /// Reads a record; a field whose key is missing or of a wrong type stays missing.
    static ZNTUrlInfo initWithDictionary(const QJsonObject &dictionary);

    friend bool operator==(const ZNTUrlInfo &, const ZNTUrlInfo &) = default;

private:
    friend struct znt::Fields<ZNTUrlInfo>;
};
