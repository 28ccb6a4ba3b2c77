#include "model/ad.h"

#include "diagnostics/log.h"
#include "support/json.h"

#include <QRandomGenerator>

namespace znt {

namespace {

QString textOf(const QJsonValue &value)
{
    return shortened(json::string(value), maximumTextLength);
}

QString urlOf(const QJsonValue &value)
{
    const QString url = json::string(value);
    return url.size() <= maximumUrlLength ? url : QString();
}

template <class Read>
void readElements(const QJsonValue &value, Read read)
{
    const QJsonArray list = value.toArray();
    for (qsizetype i = 0; i < qMin(list.size(), maximumElements); ++i)
        read(list.at(i));
}

std::optional<TrackInfo> trackInfoOf(const QJsonValue &value)
{
    if (!value.isObject())
        return {};
    return TrackInfo{value[u"viewUrl3rd"], value[u"clickUrl3rd"], value[u"dpEventUrls"]};
}

std::optional<ClickTarget> targetOf(const QJsonValue &value)
{
    if (!value.isObject())
        return {};
    return ClickTarget{urlOf(value[u"deepLinkUrl"]), urlOf(value[u"h5url"])};
}

} // namespace

std::optional<QJsonArray> adsOfAnswer(const QJsonValue &answer)
{
    if (!answer.isObject()) {
        logError("Invalid response format: not a dictionary");
        return std::nullopt;
    }
    const qint64 code = json::integer(answer[u"code"]);
    if (code != 200) {
        logError("Invalid response code: %1", code);
        return std::nullopt;
    }
    const QJsonArray ads = answer[u"data"].toArray();
    if (ads.isEmpty()) {
        logError("No ad data available in response");
        return std::nullopt;
    }
    return ads;
}

Ad readAd(const QJsonObject &ad)
{
    Ad read;
    read.id = textOf(ad[u"adId"]);
    read.feedbackId = textOf(ad[u"ad_id"]);
    read.styleCode = textOf(ad[u"adStyle"]);
    read.source = textOf(ad[u"sourceName"]);
    read.sourceLogo = urlOf(ad[u"sourceLogo"]);
    read.trackInfo = trackInfoOf(ad[u"trackInfo"]);
    read.target = targetOf(ad[u"urlInfo"]);
    read.data = ad;
    readElements(ad[u"images"],
        [&](const QJsonValue &image) { read.imageUrls.append(urlOf(image[u"url"])); });
    readElements(ad[u"texts"], [&](const QJsonValue &text) {
        if (text[u"content"].isString())
            read.texts.append({textOf(text[u"type"]), textOf(text[u"content"])});
    });
    return read;
}

std::optional<Ad> readFirstAd(const QJsonValue &answer)
{
    const auto ads = adsOfAnswer(answer);
    return ads ? std::optional(readAd(ads->first().toObject())) : std::nullopt;
}

QString randomText(const Ad &ad, const QStringList &types)
{
    QStringList contents;
    for (const AdText &text : ad.texts) {
        if (types.contains(text.type))
            contents.append(text.content);
    }
    return contents.isEmpty() ? QString()
                              : contents.at(QRandomGenerator::global()->bounded(contents.size()));
}

QString shortened(const QString &text, qsizetype maximumLength)
{
    if (text.size() <= maximumLength)
        return text;
    const bool splitsPair = text.at(maximumLength - 1).isHighSurrogate();
    return text.left(maximumLength - (splitsPair ? 1 : 0));
}

} // namespace znt
