#include "ads.h"

#include <QUuid>

using namespace Qt::StringLiterals;

namespace sandbox {
namespace {

struct Advertiser
{
    QString id;
    QString brand;
    QString category;
    QString logo;     // none: the brand's name marks the source
    QString deepLink; // none: the ad opens a web page alone
};

struct Picture
{
    QString file;
    int width;
    int height;
};

const Advertiser tea{u"tea"_s, u"雾山茶"_s, u"food"_s, u"logo-tea.png"_s, u"zntdemo://offer/42"_s};
const Advertiser isle{u"isle"_s, u"漫屿旅行"_s, u"travel"_s, u"logo-isle.png"_s, {}};
const Advertiser radio{u"radio"_s, u"夜航电台"_s, u"music"_s, {}, u"zntdemo://radio/7"_s};

QString base(const QString &path)
{
    return u"${BASE}/"_s + path;
}

// Two of each kind, so that a group is seen to be one.
QJsonObject trackInfo(const QString &adId)
{
    const auto pair = [&](const QString &kind) {
        const QString url = base(u"t/%1/%2"_s.arg(kind, adId));
        return QJsonArray{url + "/exchange"_L1, url + "/advertiser"_L1};
    };
    return {{u"viewUrl3rd"_s, pair(u"view"_s)}, {u"clickUrl3rd"_s, pair(u"click"_s)},
        {u"conversionUrls"_s, pair(u"conversion"_s)}, {u"dpEventUrls"_s, pair(u"dp"_s)}};
}

QJsonObject appInfo(const Advertiser &advertiser)
{
    const QString page = base(u"landing/"_s + advertiser.id);
    return {{u"name"_s, advertiser.brand}, {u"desc"_s, advertiser.brand + u"客户端"_s},
        {u"version"_s, u"3.2.1"_s}, {u"packageName"_s, "example.zntdemo."_L1 + advertiser.id},
        {u"appComplianceInfo"_s,
            QJsonObject{{u"name"_s, advertiser.brand}, {u"version"_s, u"3.2.1"_s},
                {u"developer"_s, advertiser.brand}, {u"privacyUrl"_s, page + "-privacy"_L1},
                {u"permissionsUrl"_s, page + "-permissions"_L1},
                {u"functionDescUrl"_s, page + "-functions"_L1},
                {u"permissionList"_s,
                    QJsonArray{QJsonObject{{u"key"_s, u"network"_s}, {u"value"_s, u"联网"_s}}}}}}};
}

QJsonObject ad(const QString &adId, const QString &style, const Advertiser &advertiser,
    const QString &text, const QList<Picture> &pictures)
{
    QJsonArray images;
    for (const Picture &picture : pictures)
        images.append(QJsonObject{{u"width"_s, picture.width}, {u"height"_s, picture.height},
            {u"type"_s, u"IMG"_s}, {u"url"_s, base("creatives/"_L1 + picture.file)}});
    QJsonObject target{{u"type"_s, u"H5"_s}, {u"h5url"_s, base(u"landing/"_s + advertiser.id)}};
    if (!advertiser.deepLink.isEmpty())
        target.insert(u"deepLinkUrl"_s, advertiser.deepLink);
    QJsonObject ad{{u"adId"_s, adId}, {u"adStyle"_s, style}, {u"adCate"_s, advertiser.category},
        {u"adBrand"_s, advertiser.brand}, {u"settlePrice"_s, u"12.50"_s},
        {u"templateFlag"_s, u"1"_s}, {u"sourceName"_s, advertiser.brand},
        {u"trackInfo"_s, trackInfo(adId)}, {u"images"_s, images},
        {u"texts"_s, QJsonArray{QJsonObject{{u"type"_s, u"TXT"_s}, {u"content"_s, text}}}},
        {u"urlInfo"_s, target}, {u"appInfo"_s, appInfo(advertiser)}};
    if (!advertiser.logo.isEmpty())
        ad.insert(u"sourceLogo"_s, base("creatives/"_L1 + advertiser.logo));
    return ad;
}

} // namespace

QJsonObject splashAd()
{
    return ad(u"splash-1"_s, u"XDT"_s, tea, u"第一口春天，来自云雾深处"_s,
        {{u"splash.jpg"_s, 1500, 900}});
}

QJsonObject interstitialAd()
{
    return ad(u"interstitial-1"_s, u"XDT"_s, isle, u"这个夏天，去海上住几天"_s,
        {{u"interstitial.jpg"_s, 1000, 1200}});
}

QJsonArray feedAds()
{
    const Picture teaWide{u"tea-wide.jpg"_s, 1280, 720};
    const Picture teaSquare{u"tea-square.jpg"_s, 600, 600};
    const Picture isleWide{u"isle-wide.jpg"_s, 1280, 720};
    const Picture isleSquare{u"isle-square.jpg"_s, 600, 600};
    const Picture radioWide{u"radio-wide.jpg"_s, 1280, 720};
    const Picture radioSquare{u"radio-square.jpg"_s, 600, 600};
    return {
        ad(u"feed-0"_s, u"XCT"_s, isle, u"海岛七日，机票加民宿一次订好"_s, {isleWide}),
        ad(u"feed-1"_s, u"XSTXW"_s, tea, u"明前新茶上市：清晨采摘，当天炒制，三天送到家"_s,
            {teaWide}),
        ad(u"feed-2"_s, u"XSWXT"_s, radio, u"深夜的城市，有人为你放一首歌"_s, {radioWide}),
        ad(u"feed-3"_s, u"XDT"_s, isle, u"Island hopping 2026：一张船票，十二座小岛"_s, {isleWide}),
        ad(u"feed-4"_s, u"XTWHH"_s, tea, u"一杯好茶的距离，从雾山到你的书桌"_s, {teaWide}),
        ad(u"feed-5"_s, u"XWZFC"_s, radio, u"夜航电台 · 今晚十点，准时起飞"_s, {radioWide}),
        ad(u"feed-6"_s, u"XST"_s, tea, u"春日茶会：新客首单立减 30 元，送手作茶杯一只"_s,
            {teaSquare, isleSquare, radioSquare}),
        ad(u"feed-7"_s, u"XZTYW"_s, isle, u"淡季出发更划算，海景房半价起"_s, {isleSquare}),
        ad(u"feed-8"_s, u"XZWYT"_s, radio, u"Lo-fi、爵士和雨声，陪你写完最后一页"_s, {radioSquare}),
    };
}

QJsonObject envelope(const QJsonArray &ads)
{
    return {{u"id"_s, QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper()},
        {u"code"_s, 200}, {u"message"_s, u"ok"_s}, {u"data"_s, ads}};
}

} // namespace sandbox
