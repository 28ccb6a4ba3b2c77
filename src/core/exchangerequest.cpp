#include "core/exchangerequest.h"

#include "core/requestbody.h"
#include "diagnostics/log.h"
#include "net/sessions.h"
#include "support/json.h"
#include "support/mainthread.h"

#include <ZNTAds/ZNTAdsResponseFactory.h>

namespace znt {

namespace {

using Done = std::function<void(const Outcome &)>;

std::shared_ptr<const Outcome> outcomeOf(const QByteArray &body, bool isLogEnabled)
{
    const json::Parsed parsed = json::parse(body);
    if (parsed.error) {
        if (isLogEnabled)
            logError("JSON Parse Error: %1", *parsed.error);
        return std::make_shared<Outcome>(Outcome{{}, parsed.error, {}});
    }
    if (isLogEnabled)
        logInfo("Response: %1", json::text(parsed.value));
    const auto response = ZNTAdsResponseFactory::createFromServerResponse(parsed.value);
    return std::make_shared<Outcome>(Outcome{response, {}, response.toDictionary()});
}

// In the pool. `done` is moved along, so that it dies on the main thread; the outcome does not.
void readResponse(const QByteArray &body, const std::atomic<bool> &isLogEnabled, Done done)
{
    inPool([body, &isLogEnabled, done = std::move(done)]() mutable {
        onMainThread([done = std::move(done), outcome = outcomeOf(body, isLogEnabled)]() mutable {
            done(*outcome);
            discardInPool(std::move(outcome));
        });
    });
}

} // namespace

std::optional<ZNTError> ExchangeRequest::error() const
{
    const auto error = headError(method, headers);
    return error || !params || method != u"POST" ? error : bodyError(*params);
}

HttpRequest ExchangeRequest::written() const
{
    HttpRequest request{.url = url, .method = method.toLatin1()};
    for (auto it = headers.begin(); it != headers.end(); ++it) {
        const QByteArray value = it->toUtf8();
        // A null value would take the header away.
        request.headers.append({it.key().toLatin1(), value.isNull() ? QByteArray("") : value});
    }
    if (params && method == u"POST")
        request.body = json::compact(*params);
    return request;
}

QString ExchangeRequest::headersText() const
{
    QJsonObject object;
    for (auto it = headers.begin(); it != headers.end(); ++it)
        object.insert(it.key(), it.value());
    return json::text(object);
}

std::optional<ZNTError> Outcome::failure() const
{
    if (error || response->isValid())
        return error;
    const QString message = response->message();
    return ZNTError(QStringLiteral("ZNTAdsManager"), response->code(),
        message.isNull() ? QStringLiteral("Unknown error") : message);
}

void sendRequest(const ExchangeRequest &request, const std::atomic<bool> &isLogEnabled, Done done)
{
    if (const auto error = request.error()) {
        done({{}, error, {}});
        return;
    }
    if (isLogEnabled) {
        logInfo("Request URL: %1", request.url);
        logInfo("Request Headers: %1", request.headersText());
        logInfo("Request Params: %1", request.params ? json::text(*request.params) : QString());
    }
    sendHttp(Session::Exchange, request.written(),
        [&isLogEnabled, done = std::move(done)](const HttpAnswer &answer) mutable {
            if (!answer.error) {
                readResponse(answer.body, isLogEnabled, std::move(done));
                return;
            }
            if (isLogEnabled)
                logError("Network Error: %1", *answer.error);
            done({{}, answer.error, {}});
        });
}

} // namespace znt
