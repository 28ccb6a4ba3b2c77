#include "diagnostics/log.h"

#include <ZNTAds/ZNTAdsResponseFactory.h>

ZNTAdsResponse ZNTAdsResponseFactory::createFromServerResponse(const QJsonValue &value)
{
    if (!value.isObject()) {
        znt::logError("Invalid response format: not a dictionary");
        return createErrorResponseWithCode(500, QStringLiteral("Invalid response format"));
    }
    ZNTAdsResponse response = ZNTAdsResponse::initWithDictionary(value.toObject());
    if (!response.isValid()) {
        znt::logError("Invalid ad data in response");
        return createErrorResponseWithCode(500, QStringLiteral("Invalid ad data"));
    }
    znt::logInfo("Successfully created ads response with %1 ads", response.data().size());
    return response;
}

ZNTAdsResponse ZNTAdsResponseFactory::createErrorResponseWithCode(
    qint32 code, const QString &message)
{
    znt::logError("Creating error response with code: %1, message: %2", code, message);
    ZNTAdsResponse response;
    response.setCode(code);
    response.setMessage(message);
    return response;
}
