// The ads of the exchange's imaginary advertisers, as answers carry them.
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

namespace sandbox {

QJsonObject splashAd();
QJsonObject interstitialAd();

// One for each feed style code, in the order of the styles.
QJsonArray feedAds();

// An answer that carries these ads.
QJsonObject envelope(const QJsonArray &ads);

} // namespace sandbox
