// What all ad managers do first with an answer that is handed to them.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QJsonArray>
#include <QJsonObject>

#include <optional>

namespace znt {

// The "data" of an answer of code 200 that has at least one ad; nothing else, and the log says why.
ZNTADS_INTERNAL std::optional<QJsonArray> adsOfAnswer(const QJsonValue &answer);

// One of the "content" strings of the ad's "texts" whose "type" is among the given ones, each with
// the same chance. A null string when there is none.
ZNTADS_INTERNAL QString randomText(const QJsonObject &ad, const QStringList &types);

} // namespace znt
