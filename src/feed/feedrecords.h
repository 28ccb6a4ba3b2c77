// Reads feed ads out of an answer.
#pragma once

#include <ZNTAds/ZNTFeedAdData.h>

#include <QJsonValue>
#include <QList>

#include <optional>

namespace znt {

// The template number of a style code.
qint64 feedStyle(const QString &code);

// At most `count` records, in the order of the answer's ads; the count is read as unsigned, so a
// negative one keeps all. An ad that is no object gives an empty record. Nothing, and the log says
// why, when the answer has no ads. Any thread.
std::optional<QList<ZNTFeedAdDataPtr>> readFeedRecords(const QJsonValue &answer, qint64 count);

} // namespace znt
