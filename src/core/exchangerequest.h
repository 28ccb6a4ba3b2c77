// One request to the exchange and what becomes of it.
#pragma once

#include "net/httpclient.h"

#include <ZNTAds/ZNTAdsResponse.h>
#include <ZNTAds/ZNTError.h>

#include <QJsonObject>
#include <QMap>

#include <atomic>
#include <functional>
#include <optional>

namespace znt {

struct ExchangeRequest
{
    QString url;
    QString method;
    std::optional<QJsonObject> params; // the body of a POST
    QMap<QString, QString> headers;

    // Why it cannot be sent at all.
    std::optional<ZNTError> error() const;
    HttpRequest written() const;
    QString headersText() const; // for the log
};

// The dictionary is the response's: an answer may be megabytes, and converting it is no work for
// the main thread.
struct Outcome
{
    std::optional<ZNTAdsResponse> response;
    std::optional<ZNTError> error;
    QJsonObject dictionary;

    // The error, or the exchange's refusal.
    std::optional<ZNTError> failure() const;
};

// From any thread. `done` runs once on the main thread, or at once when the request cannot be
// written down. Request and answer are logged while `isLogEnabled`, which outlives the request.
void sendRequest(const ExchangeRequest &request, const std::atomic<bool> &isLogEnabled,
    std::function<void(const Outcome &)> done);

} // namespace znt
