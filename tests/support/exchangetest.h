// What a test of the library against the exchange begins with.
#pragma once

#include "net/endpoints.h"
#include "sandbox/exchange.h"
#include "support/test.h"

#include <ZNTAds/ZNTError.h>

namespace znt::test {

// An exchange in this process, which the library talks to from now on.
class TrustedExchange : public sandbox::Exchange
{
public:
    TrustedExchange()
    {
        if (!start())
            qFatal("no exchange: %s", qPrintable(errorString()));
        sandbox::trust(ca());
        setEndpointBases(httpsUrl(), httpUrl());
    }

    // Its own address of the path.
    QString at(const QString &path) const { return url(path).toString(); }
    // "${BASE}" in the text becomes the exchange's own address.
    QJsonObject parsed(QByteArray text) const
    {
        return json(text.replace("${BASE}", httpsUrl().toEncoded()));
    }
};

} // namespace znt::test
