#include "model/trackinglists.h"
#include "support/loglines.h"

using namespace znt;
using namespace znt::test;

constexpr TrackingTexts countingTexts{
    "Processed %1 dpEvent URLs", "Converted single dpEvent URL to array"};

class tst_ad : public QObject
{
    Q_OBJECT

    static std::optional<TrackInfo> infoOf(const QByteArray &trackInfo)
    {
        return readAd(json("{\"trackInfo\": " + trackInfo + '}')).trackInfo;
    }

private slots:
    void refusesWithAReason()
    {
        LogLines log;
        const QList<QPair<QJsonValue, QString>> refused{
            {QJsonValue(), "Invalid response format: not a dictionary"},
            {QJsonArray{1}, "Invalid response format: not a dictionary"},
            {QJsonObject(), "Invalid response code: 0"},
            {json(R"({"code": 4294967496, "data": [1]})"), "Invalid response code: 4294967496"},
            {json(R"({"code": 200})"), "No ad data available in response"},
            {json(R"({"code": 200, "data": []})"), "No ad data available in response"},
            {json(R"({"code": 200, "data": {"0": {}}})"), "No ad data available in response"}};
        for (const auto &[answer, reason] : refused) {
            QCOMPARE(adsOfAnswer(answer), std::nullopt);
            QCOMPARE(log.take(), QStringList{"ERROR " + reason});
        }
        QCOMPARE(adsOfAnswer(json(R"({"code": "200", "data": [{}, 1]})"))->size(), 2);
        QVERIFY(log.take().isEmpty());
    }

    void picksAmongTheTexts()
    {
        const Ad ad = readAd(json(R"({"texts": [{"type": "TITLE", "content": "c"},
            {"type": "TXT", "content": "a"}, 5, null, {"type": "TXT"}, {"type": "TXT", "content": 1},
            {"type": 1, "content": "x"}, {"content": "x"}, {"type": "TXT", "content": "b"}]})"));
        const auto seen = [&](const QStringList &types) {
            QSet<QString> texts;
            for (int i = 0; i < 400; ++i)
                texts.insert(randomText(ad, types));
            return texts;
        };
        QCOMPARE(seen({"TXT"}), (QSet<QString>{"a", "b"}));
        QCOMPARE(seen({"TXT", "TITLE"}), (QSet<QString>{"a", "b", "c"}));
        QVERIFY(randomText(ad, {"NONE"}).isNull());
        QVERIFY(randomText(readAd(json(R"({"texts": "TXT"})")), {"TXT"}).isNull());
    }

    // The three lists afterwards, under each rule; "-" where a list was left as it was.
    void trackingLists()
    {
        const auto check = [](const QByteArray &trackInfo, const QJsonArray &ofView,
                               const QJsonArray &ofClick) {
            for (const auto &[form, wanted] :
                {std::pair(ClickForm::OfView, ofView), {ClickForm::OfClick, ofClick}}) {
                TrackingLists lists{{"-"}, QJsonArray{"-"}, {"-"}};
                readTrackingLists(lists, infoOf(trackInfo), form, countingTexts);
                QCOMPARE((QJsonArray{lists.view, lists.click, lists.dpEvent}), wanted);
            }
        };
        const QJsonArray kept{"-"}, one{"1"}, none;
        check(R"({"viewUrl3rd": ["1"], "clickUrl3rd": ["1"], "dpEventUrls": []})", {one, one, none},
            {one, one, none});
        check(R"({"viewUrl3rd": "1", "clickUrl3rd": "1", "dpEventUrls": "1"})", {one, one, one},
            {one, one, one});
        check(R"({"viewUrl3rd": "1", "clickUrl3rd": ["1"]})", {one, QJsonArray{one}, kept},
            {one, one, kept});
        check(R"({"viewUrl3rd": ["1"], "clickUrl3rd": "1"})", {one, "1", kept}, {one, one, kept});
        check(R"({"viewUrl3rd": "1"})", {one, none, kept}, {one, kept, kept});
        check(R"({"clickUrl3rd": "1", "dpEventUrls": 7})", {kept, kept, kept}, {kept, one, kept});
        check("[]", {kept, kept, kept}, {kept, kept, kept});

        // With a view list and no click value, there is no click list.
        TrackingLists lists{{}, QJsonArray{"-"}, {}};
        readTrackingLists(lists, infoOf(R"({"viewUrl3rd": []})"), ClickForm::OfView, countingTexts);
        QVERIFY(lists.click.isUndefined());
    }
};

QTEST_APPLESS_MAIN(tst_ad)
#include "tst_ad.moc"
