#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTProperty.h>

#include <QtCore/QJsonObject>
#include <QtCore/QString>

/// One permission that an advertised application asks for. A missing text is a null string.
class ZNTADS_EXPORT ZNTPermissionEntry
{
    /// The permission's name.
    ZNT_PROPERTY(QString, key, setKey);
    /// What the application does with it.
    ZNT_PROPERTY(QString, value, setValue);

public:
    /// Reads a record; a field whose key is missing or of a wrong type stays missing.
    static ZNTPermissionEntry initWithDictionary(const QJsonObject &dictionary);

    friend bool operator==(const ZNTPermissionEntry &, const ZNTPermissionEntry &) = default;

private:
    friend struct znt::Fields<ZNTPermissionEntry>;
};
