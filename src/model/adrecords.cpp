#include "model/fields.h"

#include <ZNTAds/ZNTAdsResponse.h>

namespace znt {

template <>
struct Fields<ZNTPermissionEntry>
{
    static void visit(auto &record, auto &&field)
    {
        field("key", record.m_key);
        field("value", record.m_value);
    }
};

template <>
struct Fields<ZNTAppComplianceInfo>
{
    static void visit(auto &record, auto &&field)
    {
        field("name", record.m_name);
        field("version", record.m_version);
        field("developer", record.m_developer);
        field("privacyUrl", record.m_privacyUrl);
        field("permissionList", record.m_permissionList);
        field("permissionsUrl", record.m_permissionsUrl);
        field("functionDescUrl", record.m_functionDescUrl);
    }
};

template <>
struct Fields<ZNTAppInfo>
{
    static void visit(auto &record, auto &&field)
    {
        field("name", record.m_name);
        field("desc", record.m_desc);
        field("version", record.m_version);
        field("packageName", record.m_packageName);
        field("appComplianceInfo", record.m_appComplianceInfo);
    }
};

template <>
struct Fields<ZNTUrlInfo>
{
    static void visit(auto &record, auto &&field)
    {
        field("type", record.m_type);
        field("h5url", record.m_h5url);
        field("deepLinkUrl", record.m_deepLinkUrl);
    }
};

template <>
struct Fields<ZNTTxtInfo>
{
    static void visit(auto &record, auto &&field)
    {
        field("type", record.m_type);
        field("content", record.m_content);
    }
};

template <>
struct Fields<ZNTImgInfo>
{
    static void visit(auto &record, auto &&field)
    {
        field("width", record.m_width);
        field("height", record.m_height);
        field("type", record.m_type);
        field("url", record.m_url);
    }
};

template <>
struct Fields<ZNTTrackInfo>
{
    static void visit(auto &record, auto &&field)
    {
        field("viewUrl3rd", record.m_viewUrl3rd);
        field("clickUrl3rd", record.m_clickUrl3rd);
        field("conversionUrls", record.m_conversionUrls);
        field("dpEventUrls", record.m_dpEventUrls);
    }
};

template <>
struct Fields<ZNTAdInfo>
{
    static void visit(auto &record, auto &&field)
    {
        field("settlePrice", record.m_settlePrice);
        field("positionId", record.m_positionId);
        field("templateFlag", record.m_templateFlag);
        field("sourceLogo", record.m_sourceLogo);
        field("sourceName", record.m_sourceName);
        field("adStyle", record.m_adStyle);
        field("adId", record.m_adId);
        field("adCate", record.m_adCate);
        field("adBrand", record.m_adBrand);
        field("trackInfo", record.m_trackInfo);
        field("images", record.m_images);
        field("texts", record.m_texts);
        field("urlInfo", record.m_urlInfo);
        field("appInfo", record.m_appInfo);
    }
};

template <>
struct Fields<ZNTAdsResponse>
{
    static void visit(auto &record, auto &&field)
    {
        field("code", record.m_code);
        field("id", record.m_requestId);
        field("message", record.m_message);
        field("data", record.m_data);
    }
};

} // namespace znt

ZNTPermissionEntry ZNTPermissionEntry::initWithDictionary(const QJsonObject &dictionary)
{
    return znt::readRecord<ZNTPermissionEntry>(dictionary);
}

ZNTAppComplianceInfo ZNTAppComplianceInfo::initWithDictionary(const QJsonObject &dictionary)
{
    return znt::readRecord<ZNTAppComplianceInfo>(dictionary);
}

ZNTAppInfo ZNTAppInfo::initWithDictionary(const QJsonObject &dictionary)
{
    return znt::readRecord<ZNTAppInfo>(dictionary);
}

ZNTUrlInfo ZNTUrlInfo::initWithDictionary(const QJsonObject &dictionary)
{
    return znt::readRecord<ZNTUrlInfo>(dictionary);
}

ZNTTxtInfo ZNTTxtInfo::initWithDictionary(const QJsonObject &dictionary)
{
    return znt::readRecord<ZNTTxtInfo>(dictionary);
}

ZNTImgInfo ZNTImgInfo::initWithDictionary(const QJsonObject &dictionary)
{
    return znt::readRecord<ZNTImgInfo>(dictionary);
}

ZNTTrackInfo ZNTTrackInfo::initWithDictionary(const QJsonObject &dictionary)
{
    return znt::readRecord<ZNTTrackInfo>(dictionary);
}

ZNTAdInfo ZNTAdInfo::initWithDictionary(const QJsonObject &dictionary)
{
    return znt::readRecord<ZNTAdInfo>(dictionary);
}

QJsonObject ZNTAdInfo::toDictionary() const
{
    return znt::writeRecord(*this);
}

ZNTAdsResponse ZNTAdsResponse::initWithDictionary(const QJsonObject &dictionary)
{
    return znt::readRecord<ZNTAdsResponse>(dictionary);
}

QJsonObject ZNTAdsResponse::toDictionary() const
{
    return znt::writeRecord(*this);
}
