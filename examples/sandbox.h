// Points an example at the sandbox exchange: EXAMPLE HTTPS_URL HTTP_URL CA_FILE, as zntads-exchange
// prints them on its first line. A real host needs nothing of this.
#pragma once

#include <ZNTAds/ZNTAdsSDK.h>

#include <QSslConfiguration>
#include <QStringList>

inline void useSandbox(const QStringList &arguments)
{
    if (arguments.size() != 4)
        return;
    ZNTAdsSDK::setEndpoints(QUrl(arguments.at(1)), QUrl(arguments.at(2)));
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.addCaCertificates(arguments.at(3));
    QSslConfiguration::setDefaultConfiguration(configuration);
}
