#include "support/test.h"

#include <ZNTAds/ZNTAdModel.h>
#include <ZNTAds/ZNTNativeAdModel.h>

#include <limits>

using namespace znt::test;

class tst_models : public QObject
{
    Q_OBJECT

private slots:
    void numbersAsText()
    {
        const QList<QPair<QJsonValue, QString>> texts{{123, "123"},
            {qint64(9007199254740993), "9007199254740993"}, {0.1, "0.1"},
            {0.1 + 0.2, "0.30000000000000004"}, {1e6, "1000000"}, {true, "1"}, {"x", "x"}};
        for (const auto &[value, text] : texts)
            QCOMPARE(ZNTAdModel::stringValue(value), text);
        QVERIFY(!ZNTAdModel::stringValue("").isNull());
        for (const QJsonValue &other : {QJsonValue(), QJsonValue(QJsonArray{1})})
            QVERIFY(ZNTNativeAdModel::stringValue(other).isNull());
        QCOMPARE(ZNTAdModel::arrayValue("x"), std::nullopt);
    }

    void adModelKeys()
    {
        const QJsonObject both = json(R"({"creative_id": "c", "type": "video", "width": 320,
        "height": 50.5, "title": "t", "image_url": "i", "icon_url": "ic", "video_url": "v",
        "click_url": "cl", "deep_link_url": "d", "landing_page_url": "l", "call_to_action": "a",
        "advertiser_name": "n", "advertiser_logo": "al", "impression_urls": ["1"],
        "click_urls": ["2", 3], "start_urls": [], "complete_urls": ["4"]})");
        const auto with = [&](const QStringList &keys) {
            QJsonObject object = both;
            for (const QString &key : keys)
                object.insert(key, "id");
            return object;
        };
        const auto model = ZNTAdModel::modelWithDictionary(with({"adID", "adCate", "adBrand"}));
        QJsonObject written = model->toDictionary();
        QCOMPARE(written.take("description").toString(), model->description());
        QCOMPARE(written, with({"ad_id", "ad_cate", "ad_brand"}));
        QVERIFY(ZNTAdModel::initWithDictionary(written)->adBrand().isNull());

        QJsonObject empty = ZNTAdModel().toDictionary();
        QCOMPARE(empty.size(), 22);
        QCOMPARE(empty[u"ad_id"], QJsonValue(""));
        QCOMPARE(empty[u"type"], QJsonValue("unknown"));
        QCOMPARE(empty[u"width"], QJsonValue(0));
        QCOMPARE(empty[u"start_urls"], QJsonValue(QJsonArray()));
        QCOMPARE(model->description(), QString("<ZNTAdModel: 0x%1>").arg(quintptr(&*model), 0, 16));
    }

    void adModelValidity()
    {
        const QList<QPair<QString, QString>> needs{{"image", "image_url"}, {"video", "video_url"},
            {"html", "click_url"}, {"text", "title"}};
        for (const auto &[type, key] : needs) {
            QJsonObject object{{"adID", 123}, {"creative_id", "c"}, {"type", type}, {key, "x"}};
            const auto model = ZNTAdModel::initWithDictionary(object);
            QCOMPARE(model->adId(), "123");
            QCOMPARE(ZNTAdModel::stringFromCreativeType(model->type()), type);
            QVERIFY(model->isValid());
            for (const QString &left : QStringList{"adID", "creative_id", key}) {
                QJsonObject less = object;
                less.insert(left, QString());
                QVERIFY(!ZNTAdModel::initWithDictionary(less)->isValid());
            }
            object.insert("type", type.toUpper());
            QCOMPARE(ZNTAdModel::initWithDictionary(object)->type(), 0);
            QVERIFY(!ZNTAdModel::initWithDictionary(object)->isValid());
        }
        const qint64 none = std::numeric_limits<qint64>::max();
        QCOMPARE(ZNTAdModel::stringFromCreativeType(none), "unknown");
    }

    void adModelSize()
    {
        const auto width = [](const QJsonValue &value) {
            const QJsonObject object{{"width", value}, {"height", 2}};
            return ZNTAdModel::initWithDictionary(object)->size().width();
        };
        QCOMPARE(width(0.1), double(0.1f));
        QCOMPARE(width(" +12.5px"), 12.5);
        for (const QJsonValue &none : {QJsonValue(QJsonValue::Undefined), QJsonValue(),
                 QJsonValue(QJsonArray{1}), QJsonValue(1e39), QJsonValue("nan")})
            QCOMPARE(width(none), 0.0);
        QCOMPARE(ZNTAdModel::initWithDictionary(QJsonObject{{"height", 2}})->size(), QSizeF(0, 0));
    }

    void nativeModel()
    {
        const QJsonObject full =
            json(R"({"title": "t", "desc": "", "imageUrl": "i", "iconUrl": "ic",
        "callToAction": "c", "advertiser": "a", "landingPageUrl": "l", "imageUrls": ["1", 2],
        "impressionUrls": [], "clickUrls": ["3"]})");
        const auto model = ZNTNativeAdModel::modelWithDictionary(full);
        ZNTNativeAdModel copy = *model;
        QCOMPARE(copy.toDictionary(), full);
        copy.setTitle("other");
        QCOMPARE(model->title(), "t");

        const auto part = ZNTNativeAdModel::initWithDictionary(
            json(R"({"title": 7, "clickUrls": "one", "imageUrls": []})"));
        QCOMPARE(part->toDictionary(), json(R"({"title": "7", "imageUrls": []})"));
        QCOMPARE(part->description(),
            QString("<ZNTNativeAdModel: 0x%1> title: 7, advertiser: (null), imageUrl: (null)")
                .arg(quintptr(&*part), 0, 16));

        const auto valid = [](const QByteArray &text) {
            return ZNTNativeAdModel::initWithDictionary(json(text))->isValid();
        };
        for (const char *picture : {R"("imageUrl": "i")", R"("imageUrls": ["i"])"})
            QVERIFY(valid(QByteArray(R"({"title": "t", "landingPageUrl": "l", )") + picture + '}'));
        for (const char *less : {R"({"title": "t", "imageUrls": [], "landingPageUrl": "l"})",
                 R"({"title": "t", "imageUrl": "i"})",
                 R"({"imageUrl": "i", "landingPageUrl": "l"})"})
            QVERIFY(!valid(less));
    }

    void wrongTypes()
    {
        QVERIFY(!ZNTAdModel::modelWithDictionary(QJsonArray()));
        QVERIFY(!ZNTNativeAdModel::modelWithDictionary(QJsonArray()));
        QJsonObject object = ZNTAdModel().toDictionary();
        for (const QString &key : object.keys() + QStringList{"desc", "imageUrls", "clickUrls"})
            object.insert(key, QJsonObject{{"a", 1}});
        QCOMPARE(ZNTAdModel::initWithDictionary(object), ZNTAdModel());
        QCOMPARE(ZNTNativeAdModel::initWithDictionary(object), ZNTNativeAdModel());
    }

    void fromQml()
    {
        QQmlEngine engine;
        const auto object = created(&engine, R"(
            import QtQml
            import ZNTAds
            QtObject {
                property zntAdModel ad
                property zntNativeAdModel nativeAd
                property string summary: nativeAd.title + nativeAd.imageUrls[1] + ad.size.width
                Component.onCompleted: {
                    ad.size = Qt.size(3, 4)
                    nativeAd.title = "t"
                    nativeAd.imageUrls = ["x", "y"]
                }
            })");
        QCOMPARE(object->property("summary"), "ty3");
    }
};

QTEST_GUILESS_MAIN(tst_models)
#include "tst_models.moc"
