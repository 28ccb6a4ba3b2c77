#include "feed/feedrecords.h"

#include "diagnostics/log.h"
#include "model/adanswer.h"
#include "model/trackinglists.h"
#include "support/json.h"

namespace znt {

namespace {

// The position of a code is its template's number.
constexpr std::array styleCodes{
    "XCT", "XSTXW", "XSWXT", "XDT", "XTWHH", "XWZFC", "XST", "XZTYW", "XZWYT"};

void readImages(ZNTFeedAdData &record, const QJsonObject &ad, qsizetype index)
{
    const QJsonArray images = ad.value(u"images").toArray();
    if (images.isEmpty())
        return;
    QStringList urls;
    for (const auto &image : images) {
        const QString url = json::string(image[u"url"]);
        if (!url.isNull())
            urls.append(url);
    }
    record.setImageUrls(urls);
    logInfo("Processed %1 images for ad %2", urls.size(), index);
}

void readTracking(ZNTFeedAdData &record, const QJsonObject &ad)
{
    TrackingLists lists;
    readTrackingLists(lists, ad, ClickForm::OfClick,
        {.list = "Processed dpEventUrls", .single = "Converted single dpEventURL to array"});
    record.setViewUrl3rd(lists.view);
    record.setClickUrl3rd(lists.click.toArray());
    record.setDpEventUrls(lists.dpEvent);
}

void readUrls(ZNTFeedAdData &record, const QJsonObject &ad)
{
    const QJsonValue urls = ad.value(u"urlInfo");
    if (!urls.isObject())
        return;
    record.setH5url(json::string(urls[u"h5url"]));
    record.setDeepLinkUrl(json::string(urls[u"deepLinkUrl"]));
    logInfo(
        "Processed URL info - h5url: %1, deepLinkUrl: %2", record.h5url(), record.deepLinkUrl());
}

ZNTFeedAdDataPtr readRecord(const QJsonObject &ad, qsizetype index)
{
    const auto record = std::make_shared<ZNTFeedAdData>();
    record->setAdId(json::string(ad.value(u"adId")));
    record->setTitle(randomText(ad, {QStringLiteral("TXT")}));
    record->setDesc(record->title());
    record->setStyle(feedStyle(json::string(ad.value(u"adStyle"))));
    record->setSource(json::string(ad.value(u"sourceName")));
    record->setSourceLogo(json::string(ad.value(u"sourceLogo")));
    logInfo("Processing ad %1 - Style: %2, Title: %3", index, record->style(), record->title());
    readImages(*record, ad, index);
    readTracking(*record, ad);
    readUrls(*record, ad);
    return record;
}

} // namespace

qint64 feedStyle(const QString &code)
{
    const auto known = std::find_if(styleCodes.begin(), styleCodes.end(),
        [&](const char *styleCode) { return code == QLatin1String(styleCode); });
    return known == styleCodes.end() ? 0 : known - styleCodes.begin();
}

QList<ZNTFeedAdDataPtr> readFeedRecords(const QJsonArray &ads, qint64 count)
{
    const auto kept = qsizetype(std::min(quint64(count), quint64(ads.size())));
    logInfo("Processing %1 ads from response", kept);
    QList<ZNTFeedAdDataPtr> records;
    records.reserve(kept);
    for (qsizetype i = 0; i < kept; ++i)
        records.append(readRecord(ads.at(i).toObject(), i));
    return records;
}

} // namespace znt
