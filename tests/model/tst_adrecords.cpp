#include "support/test.h"

#include <ZNTAds/ZNTAdsResponseFactory.h>

using namespace znt::test;

const QJsonObject fullAd = json(R"({
    "settlePrice": "1.5", "positionId": "p", "templateFlag": "t", "sourceLogo": "l",
    "sourceName": "n", "adStyle": "XDT", "adId": "a", "adCate": "c", "adBrand": "",
    "trackInfo": {"viewUrl3rd": ["v", 7, null], "clickUrl3rd": [], "conversionUrls": ["c"],
                  "dpEventUrls": ["d"]},
    "images": [{"width": 1080, "height": 1920, "type": "i", "url": "u"}],
    "texts": [{"type": "TXT", "content": "x"}, {}],
    "urlInfo": {"type": "w", "h5url": "h", "deepLinkUrl": "d"},
    "appInfo": {"name": "n", "desc": "d", "version": "v", "packageName": "p",
        "appComplianceInfo": {"name": "n", "version": "v", "developer": "d", "privacyUrl": "p",
            "permissionsUrl": "pu", "functionDescUrl": "f",
            "permissionList": [{"key": "k", "value": "v"}]}}
})");

class tst_adrecords : public QObject
{
    Q_OBJECT

private slots:
    void adComesBackAsItWas()
    {
        QJsonObject sent = fullAd;
        sent.insert("unknown", 1);
        const ZNTAdInfo ad = ZNTAdInfo::initWithDictionary(sent);
        QCOMPARE(ad.toDictionary(), fullAd);
        QCOMPARE(ad.images()->first().height(), 1920);
        QCOMPARE(ad.appInfo()->appComplianceInfo()->permissionList()->first().value(), "v");
    }

    void missingIsNotEmpty()
    {
        QCOMPARE(ZNTAdInfo::initWithDictionary({}).toDictionary(), QJsonObject());
        const QJsonObject empty = json(R"({"images": [], "texts": [], "urlInfo": {}, "adBrand": "",
                     "appInfo": {"appComplianceInfo": {"permissionList": []}}})");
        QCOMPARE(ZNTAdInfo::initWithDictionary(empty).toDictionary(), empty);
        QCOMPARE(ZNTAdInfo::initWithDictionary(json(R"({"trackInfo": {"viewUrl3rd": "one"}})"))
                     .toDictionary(),
            json(R"({"trackInfo": {"viewUrl3rd": [], "clickUrl3rd": [], "conversionUrls": [],
                                        "dpEventUrls": []}})"));
    }

    // Each key of the ad in turn, and the elements of its lists.
    void wrongTypesAreAbsent()
    {
        const QList<QJsonValue> values{
            QJsonValue(), true, 1e300, "s", QJsonArray{QJsonArray(), 1}, QJsonObject{{"data", 1}}};
        const QStringList keys = fullAd.keys();
        for (const QJsonValue &wrong : values) {
            for (const QString &key : keys) {
                const QJsonValue right = fullAd[key];
                QJsonObject ad = fullAd;
                ad.insert(key, wrong);
                const QJsonObject written = ZNTAdInfo::initWithDictionary(ad).toDictionary();
                QCOMPARE(written.contains(key), wrong.type() == right.type());

                ad.insert(key, QJsonArray{wrong});
                const QJsonObject listed = ZNTAdInfo::initWithDictionary(ad).toDictionary();
                QCOMPARE(listed.contains(key), right.isArray());
            }
            const auto response = ZNTAdsResponse::initWithDictionary(
                {{"code", 200}, {"data", QJsonArray{wrong, fullAd}}});
            QCOMPARE(response.data().size(), 2);
            QCOMPARE(response.data().last().toDictionary(), fullAd);
        }
    }

    void integers()
    {
        const auto size = [](const char *text) {
            const auto image = ZNTImgInfo::initWithDictionary(json(text));
            return QSize(image.width(), image.height());
        };
        QCOMPARE(size(R"({"width": null})"), QSize(0, 0));
        QCOMPARE(size(R"({"width": "12px", "height": 4294967297.9})"), QSize(12, 1));
    }

    void factory()
    {
        const auto created = [&](const QJsonValue &answer, const char *written) {
            return ZNTAdsResponseFactory::createFromServerResponse(answer).toDictionary()
                == json(written);
        };
        QVERIFY(created(json(R"({"code": "200", "id": "i", "message": "", "data": {}})"),
            R"({"code": 200, "id": "i", "message": "", "data": []})"));
        QVERIFY(created(
            json(R"({"code": 200, "data": [{}, 3]})"), R"({"code": 200, "data": [{}, {}]})"));
    }
};

QTEST_APPLESS_MAIN(tst_adrecords)
#include "tst_adrecords.moc"
