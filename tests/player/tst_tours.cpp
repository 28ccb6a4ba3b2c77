// What the player shows without a script: tours, the studio, preview sheets.
#include "player/playertest.h"

#include <QImageReader>

using namespace znt::test;

class TestTours : public PlayerTest
{
    Q_OBJECT

private slots:
    void tours()
    {
        QCOMPARE(play("--screenshots " + path("pictures") + " tour").status, 0);
        for (const char *name :
            {"splash-image", "splash-shake", "splash-slide", "interstitial", "feed"})
            QCOMPARE(QImage(path("pictures/%1.png").arg(name)).size(), QSize(375, 812));
        QCOMPARE(play("--position refused tour").status, 1);
    }

    // With an exchange of its own.
    void opensAStudio()
    {
        // Qt's software renderer keeps the textures of Image items until the process ends.
        const QByteArray options = qgetenv("LSAN_OPTIONS");
        const auto back = qScopeGuard([&] { qputenv("LSAN_OPTIONS", options); });
        qputenv("LSAN_OPTIONS", "detect_leaks=0");
        const Outcome studio =
            run({"--data-dir", path("data"), "--duration", "2", "--log", "off", "studio"});
        QCOMPARE(studio.status, 0);
        QCOMPARE(studio.names.join(u' '),
            "registered splashAdDidLoad splashAdDidVisible splashAdDidRender exit");
        QVERIFY2(!studio.errors.contains("qrc:"), studio.errors.constData());
    }

    void drawsPreviews()
    {
        QJsonObject ad = exchange.answer("splash")["data"][0].toObject();
        ad["texts"] = QJsonArray{QJsonObject{
            {"type", "TXT"}, {"content", QString("Long, longer, and longest. ").repeated(20)}}};
        const auto preview = [this](const QJsonArray &ads, const QString &arguments) {
            const QString answer = saved(path("answer.json"),
                QJsonDocument(QJsonObject{{"code", 200}, {"data", ads}}).toJson());
            return play("--log off --answer " + answer + " --out " + path("sheet.png") + arguments
                + " preview");
        };
        const Outcome good = preview({ad}, " --sizes 568x320 --scales 0.5,2");
        QCOMPARE(good.status, 0);
        QCOMPARE(contents(path("sheet.html")).count("<figure>"), 2 * 13);
        QCOMPARE(contents(path("sheet.html")).count("<img width=568"), 2 * 13);
        QCOMPARE(QImageReader(path("sheet.png")).size().width(), 24 + 4 * (2 * 568 + 24));
        QVERIFY(good.errors.contains("splash, plain: “Long, longer, an…” is cut"));

        ad["images"] = QJsonArray{QJsonObject{{"type", "IMG"}, {"url", exchange.at("/none.png")}}};
        const Outcome missing = preview({ad}, " --sizes 320x568");
        QVERIFY(missing.errors.contains("it does not appear: a picture is missing or broken"));
        const Outcome none = preview({}, " --sizes 320x568");
        QCOMPARE(none.errors.count("nothing can be shown of this answer"), 13);
        QCOMPARE(none.status, 0);
        QCOMPARE(preview({}, " --sizes 320x568 --out /nowhere/at/all").status, 1);
    }
};

QTEST_GUILESS_MAIN(TestTours)
#include "tst_tours.moc"
