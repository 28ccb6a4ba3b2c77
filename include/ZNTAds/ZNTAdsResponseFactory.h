#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>
#include <ZNTAds/ZNTAdsResponse.h>

#include <QtCore/QJsonValue>

/// Makes responses out of what the exchange answered. Both functions may be called from any thread.
class ZNTADS_EXPORT ZNTAdsResponseFactory
{
public:
    /// The response read from @p value, any JSON value. What is no object, or has another code than
    /// 200, is logged and gives an error response of code 500; the exchange's own code and message
    /// are not passed on.
    static ZNTAdsResponse createFromServerResponse(const QJsonValue &value);
    /// A response without ads and request id that carries @p code and @p message; logged as an
    /// error.
    static ZNTAdsResponse createErrorResponseWithCode(qint32 code, const QString &message);
};
