// An ad of an answer, read once into what the ad formats use of it.
#pragma once

#include <ZNTAds/ZNTAdsGlobal.h>

#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

#include <optional>

namespace znt {

// Answers are untrusted. Of an ad's images and texts the first thousand are read, a longer text is
// cut, and a longer address is missing.
constexpr qsizetype maximumElements = 1000;
constexpr qsizetype maximumTextLength = 100'000;
constexpr qsizetype maximumUrlLength = 65'536;

struct ClickTarget
{
    QString deepLink;
    QString webPage;
};

// The tracking values, not yet looked at: each may be a list, one address, or anything else.
struct TrackInfo
{
    QJsonValue view;
    QJsonValue click;
    QJsonValue dpEvent;
};

struct AdText
{
    QString type;
    QString content;
};

// What is missing, or of a wrong type, is null or empty.
struct Ad
{
    QString id;
    QString feedbackId; // only an answer that the host hands over can carry it
    QString styleCode;
    QString source;
    QString sourceLogo;
    QStringList imageUrls; // one for each image, null where it has none
    QList<AdText> texts;   // those that have a content
    std::optional<TrackInfo> trackInfo;
    std::optional<ClickTarget> target;
    QJsonObject data; // all of it, as the exchange sent it
};

// The "data" of an answer of code 200 that has at least one ad; nothing else, and the log says why.
ZNTADS_INTERNAL std::optional<QJsonArray> adsOfAnswer(const QJsonValue &answer);
ZNTADS_INTERNAL Ad readAd(const QJsonObject &ad);
// The first ad of such an answer.
ZNTADS_INTERNAL std::optional<Ad> readFirstAd(const QJsonValue &answer);

// One of the ad's texts whose type is among the given ones, each with the same chance. A null
// string when there is none.
ZNTADS_INTERNAL QString randomText(const Ad &ad, const QStringList &types);

// The first characters of a text, without half a surrogate pair at the end.
QString shortened(const QString &text, qsizetype maximumLength);

} // namespace znt
