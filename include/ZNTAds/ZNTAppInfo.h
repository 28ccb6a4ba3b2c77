#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTAppComplianceInfo.h>

/// The application that an ad advertises. A missing text is a null string.
class ZNTADS_EXPORT ZNTAppInfo
{
    /// The application's name.
    ZNT_PROPERTY(QString, name, setName);
    /// What it is, in a few words.
    ZNT_PROPERTY(QString, desc, setDesc);
    /// Its version.
    ZNT_PROPERTY(QString, version, setVersion);
    /// Its package name or bundle identifier.
    ZNT_PROPERTY(QString, packageName, setPackageName);
    /// What must be disclosed about it.
    ZNT_PROPERTY(std::optional<ZNTAppComplianceInfo>, appComplianceInfo, setAppComplianceInfo);

public:
    /// Reads a record; a field whose key is missing or of a wrong type stays missing.
    static ZNTAppInfo initWithDictionary(const QJsonObject &dictionary);

    friend bool operator==(const ZNTAppInfo &, const ZNTAppInfo &) = default;

private:
    friend struct znt::Fields<ZNTAppInfo>;
};
