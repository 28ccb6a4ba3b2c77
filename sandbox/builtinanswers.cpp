#include "builtinanswers.h"

#include "ads.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QMap>

#include <functional>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace sandbox {
namespace {

using Delivery = Answer::Delivery;

Answer carrying(const QJsonArray &ads)
{
    return jsonAnswer(envelope(ads));
}

// The splash ad, which every format can show, with some of its keys replaced.
QJsonObject variation(const QJsonObject &changes)
{
    QJsonObject ad = splashAd();
    for (auto it = changes.begin(); it != changes.end(); ++it)
        ad.insert(it.key(), it.value());
    return ad;
}

Answer withImage(const QString &url)
{
    return carrying({variation(
        {{u"images"_s, QJsonArray{QJsonObject{{u"type"_s, u"IMG"_s}, {u"url"_s, url}}}}})});
}

Answer delivered(Delivery delivery)
{
    Answer answer = carrying({splashAd()});
    answer.delivery = delivery;
    return answer;
}

Answer everyValue(const QJsonValue &value)
{
    QJsonObject ad = splashAd();
    for (auto it = ad.begin(); it != ad.end(); ++it)
        it.value() = value;
    return jsonAnswer({{u"code"_s, 200}, {u"id"_s, value}, {u"message"_s, value},
        {u"data"_s, QJsonArray{ad, value}}});
}

// The lists and objects are there, and what they hold is of a wrong type.
Answer wrongTypesInside()
{
    const QJsonArray junk{QJsonValue(), 7, true, u"text"_s, QJsonArray{1},
        QJsonObject{{u"type"_s, u"TXT"_s}, {u"content"_s, 5}, {u"url"_s, QJsonArray{}},
            {u"width"_s, u"wide"_s}, {u"height"_s, QJsonObject{}}}};
    return carrying({variation({{u"images"_s, junk}, {u"texts"_s, junk}, {u"adId"_s, 42},
        {u"trackInfo"_s,
            QJsonObject{
                {u"viewUrl3rd"_s, junk}, {u"clickUrl3rd"_s, 5}, {u"dpEventUrls"_s, QJsonObject{}}}},
        {u"urlInfo"_s, QJsonObject{{u"h5url"_s, 1}, {u"deepLinkUrl"_s, QJsonArray{}}}},
        {u"appInfo"_s, QJsonObject{{u"appComplianceInfo"_s, junk}}}})});
}

Answer urlsOfNoUse()
{
    const QJsonArray urls{QString(), u"no url at all"_s, u"file:///etc/hostname"_s,
        u"javascript:alert(1)"_s, u"ftp://localhost/x"_s, u"https://"_s, u"http://[::1"_s,
        u"data:text/plain,x"_s, u"${BASE}/t/view/the-good-one"_s};
    return carrying({variation({{u"trackInfo"_s,
                                    QJsonObject{{u"viewUrl3rd"_s, urls}, {u"clickUrl3rd"_s, urls},
                                        {u"dpEventUrls"_s, urls}}},
        {u"urlInfo"_s,
            QJsonObject{{u"h5url"_s, u"file:///etc/hostname"_s},
                {u"deepLinkUrl"_s, u"javascript:alert(1)"_s}}}})});
}

Answer trackersAsStrings()
{
    QJsonObject tracks;
    for (const QString &kind : {u"viewUrl3rd"_s, u"clickUrl3rd"_s, u"dpEventUrls"_s})
        tracks.insert(kind, "${BASE}/t/single/"_L1 + kind);
    return carrying({variation({{u"trackInfo"_s, tracks}})});
}

Answer longTexts()
{
    const QString text = u"很长的标题 "_s.repeated(100'000 / 6 + 1).left(100'000);
    const QJsonObject entry{{u"type"_s, u"TXT"_s}, {u"content"_s, text}};
    return carrying({variation({{u"texts"_s, QJsonArray{entry}}, {u"sourceName"_s, text}})});
}

Answer manyAds()
{
    QJsonArray ads;
    for (int i = 0; i < 10'000; ++i)
        ads.append(QJsonObject{{u"adId"_s, u"many-%1"_s.arg(i)}, {u"adStyle"_s, u"XCT"_s}});
    return carrying(ads);
}

Answer padded(const QByteArray &padding)
{
    Answer answer = carrying({splashAd()});
    answer.body.chop(1);
    answer.body += ",\"padding\":\"" + padding + "\"}";
    return answer;
}

Answer zipped(Answer answer)
{
    answer.gzip = true;
    return answer;
}

Answer notReallyZipped()
{
    Answer answer = carrying({splashAd()});
    answer.headers.emplaceBack("Content-Encoding", "gzip");
    return answer;
}

Answer late(std::chrono::milliseconds delay)
{
    Answer answer = carrying({splashAd()});
    answer.delay = delay;
    return answer;
}

Answer withStatus(int status)
{
    Answer answer = carrying({splashAd()});
    answer.status = status;
    return answer;
}

Answer saying(const Answer::Wire &wire)
{
    return {.wire = wire};
}

// Gzip that is cut short, or whose checksum or length, the last eight bytes, is another.
Answer zippedWrong(qsizetype cut, qsizetype changed)
{
    Answer answer = notReallyZipped();
    answer.body = gzipped(answer.body);
    answer.body.chop(cut);
    if (changed > 0)
        answer.body[answer.body.size() - changed] ^= char(0x5a);
    return answer;
}

Answer leadingTo(const QByteArray &location)
{
    return {.status = 307, .headers = {{"Location", location}}};
}

using Builder = std::function<Answer()>;

QMap<QString, Builder> faults()
{
    return {
        {u"slow"_s, [] { return late(20s); }},
        {u"dripping"_s, [] { return delivered(Delivery::Dripping); }},
        {u"dropped"_s, [] { return delivered(Delivery::Dropped); }},
        {u"truncated"_s, [] { return delivered(Delivery::Truncated); }},
        {u"dropped-in-head"_s, [] { return saying({.begin = "HTTP/1.1 200 OK\r\nContent-Ty"}); }},
        {u"dropped-after-head"_s,
            [] { return saying({.begin = "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n"}); }},
        {u"silent-after-head"_s,
            [] {
                return saying(
                    {.begin = "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n", .closes = false});
            }},
        {u"endless-head"_s,
            [] { return saying({.begin = "HTTP/1.1 200 OK\r\n", .repeated = "X: 1\r\n"}); }},
        {u"endless-100"_s,
            [] { return saying({.begin = {}, .repeated = "HTTP/1.1 100 Continue\r\n\r\n"}); }},
        {u"not-http"_s, [] { return saying({.begin = "SSH-2.0-OpenSSH_9.2\r\n"}); }},
        {u"redirect-loop"_s, [] { return leadingTo("/s/req2.do"); }},
        {u"redirect-downgrade"_s, [] { return leadingTo("http://localhost/s/req2.do"); }},
        {u"redirect-file"_s, [] { return leadingTo("file:///etc/hostname"); }},
        {u"empty-body"_s, [] { return Answer{}; }},
        {u"not-json"_s, [] { return Answer{.body = "<html>Bad gateway</html>"}; }},
        {u"not-object"_s, [] { return Answer{.body = R"([{"code":200,"data":[]}])"}; }},
        {u"scalar"_s, [] { return Answer{.body = "200"}; }},
        {u"deep"_s,
            [] {
                return Answer{.body = R"({"code":200,"data":)" + QByteArray(10'000, '[')
                        + QByteArray(10'000, ']') + '}'};
            }},
        {u"invalid-utf8"_s, [] { return padded("\xff\xfe\xc3\x28"); }},
        {u"huge"_s, [] { return padded(QByteArray(5 * 1024 * 1024, 'x')); }},
        {u"gzip"_s, [] { return zipped(carrying({splashAd()})); }},
        {u"gzip-bomb"_s, [] { return zipped(padded(QByteArray(64 * 1024 * 1024, 'x'))); }},
        {u"gzip-broken"_s, notReallyZipped},
        {u"gzip-truncated"_s, [] { return zippedWrong(40, 0); }},
        {u"gzip-wrong-checksum"_s, [] { return zippedWrong(0, 8); }},
        {u"gzip-wrong-length"_s, [] { return zippedWrong(0, 1); }},
        {u"gigantic"_s, [] { return padded(QByteArray(100 * 1024 * 1024, 'x')); }},
        {u"refused"_s,
            [] {
                return jsonAnswer({{u"code"_s, 403}, {u"message"_s, u"position refused"_s}});
            }},
        {u"no-ads"_s, [] { return carrying({}); }},
        {u"http-500"_s, [] { return withStatus(500); }},
        {u"nulls"_s, [] { return everyValue({}); }},
        {u"wrong-types"_s, [] { return everyValue(7); }},
        {u"wrong-types-inside"_s, wrongTypesInside},
        {u"bad-urls"_s, urlsOfNoUse},
        {u"single-trackers"_s, trackersAsStrings},
        {u"long-texts"_s, longTexts},
        {u"many"_s, manyAds},
        {u"missing-image"_s, [] { return withImage(u"${BASE}/creatives/none.jpg"_s); }},
        {u"broken-image"_s, [] { return withImage(u"${BASE}/creatives/broken.png"_s); }},
        {u"endless-image"_s, [] { return withImage(u"${BASE}/creatives/endless.png"_s); }},
        {u"bomb-image"_s, [] { return withImage(u"${BASE}/creatives/bomb.png"_s); }},
        {u"slow-image"_s, [] { return withImage(u"${BASE}/creatives/slow.jpg"_s); }},
        {u"local-image"_s, [] { return withImage(u"file:///etc/hostname"_s); }},
    };
}

const QMap<QString, Builder> &builders()
{
    static const QMap<QString, Builder> all = [] {
        QMap<QString, Builder> map = faults();
        map.insert(u"splash"_s, [] { return carrying({splashAd()}); });
        map.insert(u"interstitial"_s, [] { return carrying({interstitialAd()}); });
        map.insert(u"feed"_s, [] { return carrying(feedAds()); });
        for (const auto ads = feedAds(); const QJsonValue &ad : ads)
            map.insert(ad["adStyle"_L1].toString(), [ad] { return carrying({ad}); });
        return map;
    }();
    return all;
}

} // namespace

std::optional<Answer> builtInAnswer(const QString &position)
{
    const auto found = builders().find(position);
    if (found == builders().end())
        return {};
    return found.value()();
}

QStringList builtInPositions()
{
    return builders().keys();
}

QJsonObject configuration()
{
    const QJsonArray allDay{
        QJsonObject{{u"startHour"_s, 0}, {u"endHour"_s, 24}, {u"sensitivity"_s, 2}}};
    const QJsonObject interaction{{u"adType"_s, 1}, {u"autoPlay"_s, 1}, {u"canClose"_s, 1},
        {u"canSkip"_s, 1}, {u"clickArea"_s, 1}, {u"clickTriggerType"_s, 1}, {u"closeBtnPos"_s, 1},
        {u"closeType"_s, 1}, {u"skipType"_s, 1}, {u"supportSelfRender"_s, 0},
        {u"shakeArgs"_s, allDay}};
    return {{u"releaseDateTime"_s, u"2026-03-01 00:00:00"_s}, {u"version"_s, u"1"_s},
        {u"enableAdLog"_s, 1}, {u"ixCtrlArgs"_s, QJsonArray{interaction}}};
}

} // namespace sandbox
