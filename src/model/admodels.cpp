#include "diagnostics/log.h"
#include "model/fields.h"

#include <ZNTAds/ZNTAdModel.h>
#include <ZNTAds/ZNTNativeAdModel.h>

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace znt {

// The third argument is the key to write, where it is not the key to read.
template <>
struct Fields<ZNTAdModel>
{
    static void visit(auto &model, auto &&field)
    {
        field("adID", model.m_adId, "ad_id");
        field("creative_id", model.m_creativeId);
        field("adCate", model.m_adCate, "ad_cate");
        field("adBrand", model.m_adBrand, "ad_brand");
        field("title", model.m_title);
        field("image_url", model.m_imageUrl);
        field("icon_url", model.m_iconUrl);
        field("video_url", model.m_videoUrl);
        field("click_url", model.m_clickUrl);
        field("deep_link_url", model.m_deepLinkUrl);
        field("landing_page_url", model.m_landingPageUrl);
        field("call_to_action", model.m_callToAction);
        field("advertiser_name", model.m_advertiserName);
        field("advertiser_logo", model.m_advertiserLogo);
        field("impression_urls", model.m_impressionUrls);
        field("click_urls", model.m_clickUrls);
        field("start_urls", model.m_startUrls);
        field("complete_urls", model.m_completeUrls);
    }
};

template <>
struct Fields<ZNTNativeAdModel>
{
    static void visit(auto &model, auto &&field)
    {
        field("title", model.m_title);
        field("desc", model.m_desc);
        field("imageUrl", model.m_imageUrl);
        field("iconUrl", model.m_iconUrl);
        field("callToAction", model.m_callToAction);
        field("advertiser", model.m_advertiser);
        field("landingPageUrl", model.m_landingPageUrl);
        field("imageUrls", model.m_imageUrls);
        field("impressionUrls", model.m_impressionUrls);
        field("clickUrls", model.m_clickUrls);
    }
};

namespace {

// A record's texts take numbers too.
template <class Model>
void readModel(Model &model, const QJsonObject &dictionary)
{
    Fields<Model>::visit(model, [&](const char *key, auto &member, const char * = nullptr) {
        const QJsonValue value = dictionary.value(QLatin1String(key));
        if constexpr (std::is_same_v<decltype(member), QString &>)
            member = ZNTAdModel::stringValue(value);
        else
            read(member, value);
    });
}

std::optional<float> leadingFloat(const QJsonValue &value)
{
    if (value.isBool())
        return value.toBool() ? 1.0f : 0.0f;
    // Beyond single precision this is infinite, which counts as no number.
    double number = value.toDouble();
    if (value.isString()) {
        QByteArray text = value.toString().trimmed().toLatin1();
        if (text.startsWith('+'))
            text.remove(0, 1);
        std::from_chars(text.cbegin(), text.cend(), number);
    } else if (!value.isDouble()) {
        return std::nullopt;
    }
    if (!(std::abs(number) <= double(std::numeric_limits<float>::max())))
        return std::nullopt;
    return float(number);
}

constexpr std::array creativeNames{"unknown", "image", "video", "html", "text"};

// The class's name and the object's address open a description.
QString objectName(const char *className, const void *object)
{
    return QStringLiteral("%1: 0x%2").arg(QLatin1String(className)).arg(quintptr(object), 0, 16);
}

} // namespace

} // namespace znt

using namespace znt;

std::optional<ZNTAdModel> ZNTAdModel::modelWithDictionary(const QJsonValue &dictionary)
{
    return initWithDictionary(dictionary);
}

std::optional<ZNTAdModel> ZNTAdModel::initWithDictionary(const QJsonValue &dictionary)
{
    if (!dictionary.isObject())
        return std::nullopt;
    ZNTAdModel model;
    readModel(model, dictionary.toObject());
    model.m_type = creativeTypeFromString(json::string(dictionary[u"type"]));
    const std::optional<float> width = leadingFloat(dictionary[u"width"]);
    const std::optional<float> height = leadingFloat(dictionary[u"height"]);
    if (width && height)
        model.m_size = QSizeF(*width, *height);
    return model;
}

QJsonObject ZNTAdModel::toDictionary() const
{
    QJsonObject object{
        {QStringLiteral("type"), stringFromCreativeType(m_type)},
        {QStringLiteral("width"), m_size.width()},
        {QStringLiteral("height"), m_size.height()},
        {QStringLiteral("description"), description()},
    };
    Fields<ZNTAdModel>::visit(
        *this, [&](const char *key, const auto &member, const char *writtenKey = nullptr) {
            object.insert(QLatin1String(writtenKey ? writtenKey : key), member);
        });
    return object;
}

bool ZNTAdModel::isValid() const
{
    if (m_adId.isEmpty() || m_creativeId.isEmpty())
        return false;
    switch (m_type) {
    case ImageCreative:
        return !m_imageUrl.isEmpty();
    case VideoCreative:
        return !m_videoUrl.isEmpty();
    case HtmlCreative:
        return !m_clickUrl.isEmpty();
    case TextCreative:
        return !m_title.isEmpty();
    default:
        return false;
    }
}

QString ZNTAdModel::description() const
{
    return u'<' + objectName("ZNTAdModel", this) + u'>';
}

QString ZNTAdModel::stringValue(const QJsonValue &value)
{
    if (value.isBool())
        return QString::number(json::integer(value));
    return value.isDouble() ? value.toVariant().toString() : json::string(value);
}

std::optional<QJsonArray> ZNTAdModel::arrayValue(const QJsonValue &value)
{
    return json::array(value);
}

qint64 ZNTAdModel::creativeTypeFromString(const QString &name)
{
    for (qint64 type = ImageCreative; type <= TextCreative; ++type) {
        if (name == QLatin1String(creativeNames[type]))
            return type;
    }
    return UnknownCreative;
}

QString ZNTAdModel::stringFromCreativeType(qint64 type)
{
    const bool known = type >= ImageCreative && type <= TextCreative;
    return QLatin1String(creativeNames[known ? type : UnknownCreative]);
}

std::optional<ZNTNativeAdModel> ZNTNativeAdModel::modelWithDictionary(const QJsonValue &dictionary)
{
    return initWithDictionary(dictionary);
}

std::optional<ZNTNativeAdModel> ZNTNativeAdModel::initWithDictionary(const QJsonValue &dictionary)
{
    if (!dictionary.isObject())
        return std::nullopt;
    ZNTNativeAdModel model;
    readModel(model, dictionary.toObject());
    return model;
}

QJsonObject ZNTNativeAdModel::toDictionary() const
{
    return writeRecord(*this);
}

bool ZNTNativeAdModel::isValid() const
{
    const bool hasImage = !m_imageUrl.isEmpty() || !m_imageUrls.toArray().isEmpty();
    return !m_title.isEmpty() && hasImage && !m_landingPageUrl.isEmpty();
}

QString ZNTNativeAdModel::description() const
{
    return logLine("<%1> title: %2, advertiser: %3, imageUrl: %4",
        objectName("ZNTNativeAdModel", this), m_title, m_advertiser, m_imageUrl);
}

QString ZNTNativeAdModel::stringValue(const QJsonValue &value)
{
    return ZNTAdModel::stringValue(value);
}
