#pragma once

#include <ZNTAds/ZNTAdInfo.h>
#include <ZNTAds/ZNTAdsGlobal.h>

/// The exchange's answer to an ad request.
class ZNTADS_EXPORT ZNTAdsResponse
{
    /// The exchange's code; 200 is success. 0 when missing.
    ZNT_PROPERTY(qint32, code, setCode);
    /// The request's id, null when missing. Its key is "id".
    ZNT_PROPERTY(QString, requestId, setRequestId);
    /// A human-readable text, null when missing.
    ZNT_PROPERTY(QString, message, setMessage);
    /// The ads, in the exchange's order.
    ZNT_PROPERTY(QList<ZNTAdInfo>, data, setData);

public:
    /// Reads a record; a field whose key is missing or of a wrong type stays missing, 0 or empty.
    static ZNTAdsResponse initWithDictionary(const QJsonObject &dictionary);
    /// The record in the exchange's form: always "code" and "data", "id" and "message" when set.
    QJsonObject toDictionary() const;
    /// Whether the code is 200.
    bool isValid() const { return m_code == 200; }

    friend bool operator==(const ZNTAdsResponse &, const ZNTAdsResponse &) = default;

private:
    friend struct znt::Fields<ZNTAdsResponse>;
};
