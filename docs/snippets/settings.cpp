#include <ZNTAds/ZNTAdsSDK.h>
#include <ZNTAds/ZNTLogManager.h>

#include <QSslCertificate>
#include <QSslConfiguration>

void settings()
{
    //! [settings]
    ZNTAdsSDK::setTestMode(false);
    ZNTAdsSDK::setLogEnabled(false);
    ZNTAdsSDK::registerWithAppId("my-app", "my-media", "my-secret");
    //! [settings]
}

void consent(bool given)
{
    //! [consent]
    ZNTLogManager::setLogDirectory("/var/log/my-app");
    ZNTLogManager::setDaysKept(7);
    ZNTLogManager::setErrorReportsEnabled(given);
    if (given)
        ZNTAdsSDK::registerWithAppId("my-app", "my-media", "my-secret");
    //! [consent]
}

void sandbox()
{
    //! [sandbox]
    ZNTAdsSDK::setEndpoints(QUrl("https://localhost:8443"), QUrl("http://localhost:8080"));
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.addCaCertificates(QSslCertificate::fromPath("state/ca.pem"));
    QSslConfiguration::setDefaultConfiguration(configuration);
    //! [sandbox]
}
