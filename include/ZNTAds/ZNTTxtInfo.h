#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTProperty.h>

#include <QtCore/QJsonObject>
#include <QtCore/QString>

/// One text of an ad. A missing text is a null string.
class ZNTADS_EXPORT ZNTTxtInfo
{
    /// The kind of text, such as "TXT" or "TITLE".
    ZNT_PROPERTY(QString, type, setType);
    /// The text itself.
    ZNT_PROPERTY(QString, content, setContent);

public:
    /// Reads a record; a field whose key is missing or of a wrong type stays missing.
    static ZNTTxtInfo initWithDictionary(const QJsonObject &dictionary);

    friend bool operator==(const ZNTTxtInfo &, const ZNTTxtInfo &) = default;

private:
    friend struct znt::Fields<ZNTTxtInfo>;
};
