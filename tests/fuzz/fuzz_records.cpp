// The records and public models: what was read can be written, and reads as the same again.
#include "door.h"

#include "model/ad.h"
#include "support/json.h"

#include <ZNTAds/ZNTAdModel.h>
#include <ZNTAds/ZNTAdsResponseFactory.h>
#include <ZNTAds/ZNTFreqCtrlArg.h>
#include <ZNTAds/ZNTInteractionCtrlArg.h>
#include <ZNTAds/ZNTNativeAdModel.h>

using namespace znt;

namespace {

template <class Record>
void comesBack(const QJsonValue &value)
{
    const auto record = Record::initWithDictionary(value);
    if (!record)
        return;
    const QJsonObject written = record->toDictionary();
    const auto again = Record::initWithDictionary(written);
    if (!again || again->toDictionary() != written)
        qFatal("%s", json::compact(written).constData());
}

} // namespace

void enter(const QByteArray &bytes)
{
    const QJsonValue value = json::parse(bytes).value;
    ZNTAdsResponseFactory::createFromServerResponse(value);
    readFirstAd(value);
    readAd(value.toObject());
    comesBack<ZNTFreqCtrlArg>(value);
    comesBack<ZNTInteractionCtrlArg>(value);
    ZNTAdModel::initWithDictionary(value);
    ZNTNativeAdModel::initWithDictionary(value);
    json::integer(value);
    json::text(value);
}
