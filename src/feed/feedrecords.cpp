#include "feed/feedrecords.h"

#include "diagnostics/log.h"
#include "model/ad.h"
#include "model/trackinglists.h"

namespace znt {

namespace {

// The position of a code is its template's number.
constexpr std::array styleCodes{
    "XCT", "XSTXW", "XSWXT", "XDT", "XTWHH", "XWZFC", "XST", "XZTYW", "XZWYT"};

void setImages(ZNTFeedAdData &record, const QStringList &urls, qsizetype index)
{
    if (urls.isEmpty())
        return;
    QStringList known = urls;
    known.removeIf([](const QString &url) { return url.isNull(); });
    record.setImageUrls(known);
    logInfo("Processed %1 images for ad %2", known.size(), index);
}

void setTracking(ZNTFeedAdData &record, const std::optional<TrackInfo> &info)
{
    TrackingLists lists;
    readTrackingLists(lists, info, ClickForm::OfClick,
        {.list = "Processed dpEventUrls", .single = "Converted single dpEventURL to array"});
    record.setViewUrl3rd(lists.view);
    record.setClickUrl3rd(lists.click.toArray());
    record.setDpEventUrls(lists.dpEvent);
}

void setTarget(ZNTFeedAdData &record, const std::optional<ClickTarget> &target)
{
    if (!target)
        return;
    record.setH5url(target->webPage);
    record.setDeepLinkUrl(target->deepLink);
    logInfo("Processed URL info - h5url: %1, deepLinkUrl: %2", target->webPage, target->deepLink);
}

ZNTFeedAdDataPtr recordOf(const Ad &ad, qsizetype index)
{
    const auto record = std::make_shared<ZNTFeedAdData>();
    record->setAdId(ad.id);
    record->setTitle(randomText(ad, {QStringLiteral("TXT")}));
    record->setDesc(record->title());
    record->setStyle(feedStyle(ad.styleCode));
    record->setSource(ad.source);
    record->setSourceLogo(ad.sourceLogo);
    logInfo("Processing ad %1 - Style: %2, Title: %3", index, record->style(), record->title());
    setImages(*record, ad.imageUrls, index);
    setTracking(*record, ad.trackInfo);
    setTarget(*record, ad.target);
    return record;
}

} // namespace

qint64 feedStyle(const QString &code)
{
    const auto known = std::find_if(styleCodes.begin(), styleCodes.end(),
        [&](const char *styleCode) { return code == QLatin1String(styleCode); });
    return known == styleCodes.end() ? 0 : known - styleCodes.begin();
}

std::optional<QList<ZNTFeedAdDataPtr>> readFeedRecords(const QJsonValue &answer, qint64 count)
{
    const auto ads = adsOfAnswer(answer);
    if (!ads)
        return std::nullopt;
    const auto kept = qsizetype(std::min(quint64(count), quint64(ads->size())));
    logInfo("Processing %1 ads from response", kept);
    QList<ZNTFeedAdDataPtr> records;
    records.reserve(kept);
    for (qsizetype i = 0; i < kept; ++i)
        records.append(recordOf(readAd(ads->at(i).toObject()), i));
    return records;
}

} // namespace znt
