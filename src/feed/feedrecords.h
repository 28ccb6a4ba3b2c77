// Reads feed ads out of an answer.
#pragma once

#include <ZNTAds/ZNTFeedAdData.h>

#include <QJsonArray>
#include <QList>

namespace znt {

// The template number of a style code.
qint64 feedStyle(const QString &code);

// At most `count` records, in the order of `ads`; the count is read as unsigned, so a negative one
// keeps all. An entry that is no object gives an empty record.
QList<ZNTFeedAdDataPtr> readFeedRecords(const QJsonArray &ads, qint64 count);

} // namespace znt
