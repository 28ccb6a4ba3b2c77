// What a test of the library against the exchange begins with.
#pragma once

#include "sandbox/exchange.h"
#include "support/endpoints.h"

#include <ZNTAds/ZNTError.h>

#include <QTest>

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

    // "${BASE}" in the text becomes the exchange's own address.
    QJsonObject parsed(QByteArray text) const
    {
        text.replace("${BASE}", httpsUrl().toEncoded());
        return QJsonDocument::fromJson(text).object();
    }
};

// Every warning of Qt or QML that a test does not expect fails it.
inline void failOnWarnings()
{
    QTest::failOnWarning(QRegularExpression(QStringLiteral(".?")));
}

} // namespace znt::test
