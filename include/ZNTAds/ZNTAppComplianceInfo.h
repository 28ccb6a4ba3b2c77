#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTPermissionEntry.h>

#include <QtCore/QList>

#include <optional>

/// What must be disclosed about an advertised application. A missing text is a null string.
class ZNTADS_EXPORT ZNTAppComplianceInfo
{
    /// The application's name.
    ZNT_PROPERTY(QString, name, setName);
    /// Its version.
    ZNT_PROPERTY(QString, version, setVersion);
    /// Who made it.
    ZNT_PROPERTY(QString, developer, setDeveloper);
    /// The address of its privacy statement.
    ZNT_PROPERTY(QString, privacyUrl, setPrivacyUrl);
    /// The permissions that it asks for; missing is not the same as an empty list.
    ZNT_PROPERTY(std::optional<QList<ZNTPermissionEntry>>, permissionList, setPermissionList);
    /// The address of a page that lists its permissions.
    ZNT_PROPERTY(QString, permissionsUrl, setPermissionsUrl);
    /// The address of a page that describes what it does.
    ZNT_PROPERTY(QString, functionDescUrl, setFunctionDescUrl);

public:
    /// Reads a record; a field whose key is missing or of a wrong type stays missing.
    static ZNTAppComplianceInfo initWithDictionary(const QJsonObject &dictionary);

    friend bool operator==(const ZNTAppComplianceInfo &, const ZNTAppComplianceInfo &) = default;

private:
    friend struct znt::Fields<ZNTAppComplianceInfo>;
};
