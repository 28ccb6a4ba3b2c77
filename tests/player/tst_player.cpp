// The player as a script sees it: a process with arguments, event lines, files and a status.
#include "support/exchangetest.h"

#include <QImageReader>

using namespace znt::test;

namespace {

struct Outcome
{
    int status = -1; // of a process that did not crash
    QList<QJsonObject> events;
    QStringList names; // of the events
    QByteArray errors;

    QJsonObject first(const QString &name) const { return events.value(names.indexOf(name)); }
};

Outcome run(const QStringList &arguments)
{
    QProcess process;
    QSignalSpy finished(&process, &QProcess::finished);
    process.start(ZNTADS_PLAYER, arguments);
    if (!finished.wait(60000))
        return {};

    Outcome outcome;
    outcome.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    outcome.errors = process.readAllStandardError();
    const QByteArray output = process.readAllStandardOutput();
    for (const QByteArray &line : output.trimmed().split('\n')) {
        if (line.isEmpty())
            continue;
        outcome.events.append(json(line));
        outcome.names.append(json(line)[u"event"].toString());
    }
    return outcome;
}

QJsonObject itemNamed(const QJsonObject &root, const QString &name)
{
    if (root[u"name"] == name)
        return root;
    const QJsonArray children = root[u"children"].toArray();
    for (const QJsonValue &child : children) {
        const QJsonObject found = itemNamed(child.toObject(), name);
        if (!found.isEmpty())
            return found;
    }
    return {};
}

} // namespace

class tst_Player : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        for (const char *name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
            qunsetenv(name); // the player finds out by itself
    }

    void runs_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("events");
        QTest::addColumn<int>("status");
        const auto row = [](const char *name, const QString &arguments, const QString &events,
                             int status = 0) {
            QTest::newRow(name) << arguments << "registered " + events + " exit" << status;
        };
        const QString splash = "splashAdDidLoad splashAdDidVisible splashAdDidRender ";
        const QString clicked = "handleAdClick openUrl splashAdDidCloseOtherController action ";
        row("splash: tap, close", "--at 1:tap --at 1.2:close splash",
            splash + "action " + clicked + "splashAdDidShowFinish");
        row("splash: skip", "--at 1:tap:skipButton splash",
            splash + "action splashAdDidShowFinish");
        row("splash: a tilt once, each shake",
            "--style 1 --at 1:tilt:30 --at 1.1:tilt:31 --at 1.2:tilt:80 --at 1.3:shake "
            "--at 2:close splash",
            splash + "action action " + clicked + "action " + clicked + "splashAdDidShowFinish");
        row("splash: slides",
            "--style 2 --at 1:pan:120,0,400 --at 1.6:pan:0,-150,100 --at 2:pan:0,60,100 "
            "--at 2.4:close splash",
            splash + "action " + clicked + "action " + clicked + "splashAdDidShowFinish");
        row("splash: hidden at first", "--at 0:hide --at 1.5:show --at 2:quit splash",
            "splashAdDidLoad splashAdDidVisible action action splashAdDidRender action");
        row("splash: time up", "--duration 3 splash", splash.trimmed());
        row("splash: no position", "--no-position splash", "splashAdDidFailed", 1);
        row("splash: answer refused",
            "--answer " + saved(path("refused"), R"({"code": 500})") + " splash", "answer", 1);
        row("splash: nothing to show",
            "--answer " + saved(path("empty"), R"({"code": 200, "data": [{}]})") + " splash",
            "answer splashAdDidFailed", 1);
        QTest::newRow("splash: registration refused")
            << "--media-id= --at 0.5:tap --duration 2 --open-url fail splash"
            << "splashAdDidFailed exit" << 1;

        const QString interstitial = "interstitialAdDidLoad interstitialAdDidVisible action ";
        row("interstitial: no early close, tap, host's close",
            "--at 0.6:tap:skipButton --at 0.8:tap --at 1:close interstitial",
            interstitial
                + "action interstitialAdDidClick openUrl "
                  "interstitialAdDidCloseOtherController action interstitialAdDidAutoClose");
        row("interstitial: closes by itself, twice",
            "--auto-close 1 --linger 1 --at 0.6:close interstitial",
            interstitial + "interstitialAdDidAutoClose interstitialAdDidAutoClose");
        row("interstitial: load only", "--no-show interstitial", "interstitialAdDidLoad");
        row("feed: two rows, tap, close, quit",
            "--count 2 --at 1:tap::1 --at 1.2:tap:closeButton:0 --at 1.4:close --at 1.6:quit feed",
            "feedAdDidLoad feedAdDidVisible feedAdDidVisible action feedAdDidClick openUrl "
            "feedAdDidCloseOtherController action feedAdDidClose action action");
        row("feed: none", "--count 0 --at 0.2:quit feed", "feedAdDidLoad action");
    }

    void runs()
    {
        QFETCH(const QString, arguments);
        QFETCH(const QString, events);
        QFETCH(const int, status);
        const Outcome outcome = play(arguments);
        QCOMPARE(outcome.names.join(u' '), events);
        QCOMPARE(outcome.status, status);
        QCOMPARE(outcome.events.last()[u"status"], status);
    }

    void wrongCommandLines()
    {
        const QString answer = saved(path("answer"), "{}");
        for (const QString &arguments : QStringList{"", "bogus", "splash feed", "--nonsense splash",
                 "splash --style", "--style x splash", "--size 10 splash", "--size 0x5 splash",
                 "--log maybe splash", "--open-url often splash",
                 "--exchange http://localhost splash", "--linger -1 splash",
                 "--set-default K={ splash", "--set-default =1 splash", "--answer /nowhere splash",
                 "--ca-file /dev/null splash", "--events /nowhere/at/all splash", "--at tap splash",
                 "--at -1:tap splash", "--at 1:tap:a:b splash", "--at 1:pan:1,2 splash",
                 "--at 1:shake:hard splash", "--at 1:dump: splash", "--no-show tour",
                 "--answer= splash", "--at 1e9:tap splash", "--at 1:pan:1,2,1e12 splash",
                 "--answer " + answer + " preview", "--out sheet.png preview",
                 "--answer " + answer + " --out a.png --sizes 1x0 preview",
                 "--answer " + answer + " --out a.png --scales 9 preview",
                 "--data-dir /dev/null/x splash", "--two\nlines splash"}) {
            const Outcome outcome = run(arguments.split(u' ', Qt::SkipEmptyParts));
            QVERIFY2(outcome.status == 2, qPrintable(arguments));
            QVERIFY(outcome.events.isEmpty());
            QCOMPARE(outcome.errors.count('\n'), 1);
        }
    }

    void eventFields()
    {
        const QJsonObject failure = play("--no-position splash").first("splashAdDidFailed");
        QCOMPARE(failure[u"domain"], "ZNTSplashManager");
        QCOMPARE(failure[u"code"], -1001);
        QCOMPARE(failure[u"description"], "mediaId不能为空");
        QVERIFY(failure[u"ms"].toInt() > 0);

        const Outcome tapped = play("--open-url fail-deeplink --at 1:tap --at 1.2:quit splash");
        QCOMPARE(tapped.first("action")[u"action"], "tap");
        QCOMPARE(tapped.first("openUrl")[u"opened"], false);
        QCOMPARE(tapped.names.count("openUrl"), 2);
        QCOMPARE(tapped.events.value(tapped.names.lastIndexOf("openUrl"))[u"opened"], true);
    }

    void dumps()
    {
        const QJsonObject splash = dumped("--style 2 --size 320x568 --bottom-view 100 "
                                          "--at 0.2:alpha:0.5 --at 0.3:move:10,20 splash");
        QCOMPARE(splash[u"size"], (QJsonArray{320, 568}));
        const QJsonObject content = splash[u"children"][0].toObject();
        QCOMPARE(content[u"opacity"], 0.5);
        QCOMPARE(content[u"frame"], (QJsonArray{10, 20, 320, 568}));
        const QJsonObject view = itemNamed(splash, "splashAdView");
        QCOMPARE(view[u"type"], "ZNTSlideAdView");
        for (const auto container = itemNamed(view, "containerView")[u"children"].toArray();
             const auto &subview : container)
            QVERIFY(!subview[u"name"].toString().isEmpty()); // nothing but what has a name
        QCOMPARE(view[u"frame"], (QJsonArray{0, 0, 320, 468}));
        QCOMPARE(itemNamed(splash, "bottomView").value(u"frame"), (QJsonArray{0, 468, 320, 100}));
        const QJsonObject skip = itemNamed(view, "skipButton");
        QCOMPARE(skip[u"type"], "Button");
        QCOMPARE(skip[u"frame"], (QJsonArray{275, 15, 30, 30}));
        QCOMPARE(skip[u"textColor"], "#ffffffff");
        QCOMPARE(itemNamed(view, "adLabel")[u"visible"], false);
        const QJsonObject picture = itemNamed(view, "mainAdImageView");
        QCOMPARE(picture[u"hasImage"], true);
        QCOMPARE(picture[u"contentMode"], "aspectFit");

        const QJsonObject feed = dumped("--template-size 300x150 --at 0.2:scroll:50 feed");
        QCOMPARE(itemNamed(feed, "row2").value(u"frame"), (QJsonArray{0, 250, 300, 150}));
        QCOMPARE(itemNamed(feed, "row8")[u"type"], "ZNTTextRightImageAdView");
        QVERIFY(itemNamed(feed, "row9").isEmpty());
        QVERIFY(!itemNamed(itemNamed(feed, "row6"), "imageViews[2]").isEmpty());
    }

    void keepsEverythingInItsFolder()
    {
        const QString folder = path("fresh");
        play(QString(
            R"(--data-dir %1 --set-default ZNTAds_FreqCtrlArg={"a":[1,true]} )"
            "--set-default mine=1 --log on --at 1:defaults:%1/defaults.json --at 1.1:quit splash")
                 .arg(folder));
        const QJsonObject defaults = json(contents(folder + "/defaults.json"));
        QCOMPARE(defaults[u"ZNTAds_FreqCtrlArg"][u"a"], (QJsonArray{1, true}));
        QCOMPARE(defaults[u"ZNTAds_EnableAdLog"], true);
        QVERIFY(!defaults.contains(u"mine"));
        QCOMPARE(QDir(folder + "/Documents/Logs").entryList(QDir::Files).size(), 1);
        QVERIFY(QDir(folder + "/tmp").exists());
        QVERIFY(QFile::exists(folder + "/config/ZNTAds/zntads-player.conf")); // not the user's own
    }

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
        const Outcome studio =
            run({"--data-dir", path("data"), "--duration", "2", "--log", "off", "studio"});
        QCOMPARE(studio.status, 0);
        QCOMPARE(studio.names.join(u' '),
            "registered splashAdDidLoad splashAdDidVisible splashAdDidRender exit");
        QVERIFY2(!studio.errors.contains("qrc:"), studio.errors.constData());
    }

    void drawsPreviews()
    {
        QJsonObject ad = m_exchange.answer("splash")["data"][0].toObject();
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

        ad["images"] =
            QJsonArray{QJsonObject{{"type", "IMG"}, {"url", m_exchange.at("/none.png")}}};
        const Outcome missing = preview({ad}, " --sizes 320x568");
        QVERIFY(missing.errors.contains("it does not appear: a picture is missing or broken"));
        const Outcome none = preview({}, " --sizes 320x568");
        QCOMPARE(none.errors.count("nothing can be shown of this answer"), 13);
        QCOMPARE(none.status, 0);
        QCOMPARE(preview({}, " --sizes 320x568 --out /nowhere/at/all").status, 1);
    }

private:
    // Against the exchange, with everything under a folder of its own.
    Outcome play(const QString &arguments)
    {
        return run(QStringList{"--exchange", m_exchange.httpsUrl().toString(), "--log-upload",
                       m_exchange.httpUrl().toString(), "--ca-file", m_exchange.caFile(),
                       "--data-dir", path("data"), "--linger", "0.2"}
            + arguments.split(u' '));
    }
    // What is on screen after a second.
    QJsonObject dumped(const QString &arguments)
    {
        play("--at 1:dump:" + path("dump.json") + " --at 1.1:quit " + arguments);
        return json(contents(path("dump.json")));
    }

    QString path(const QString &name) const { return m_dir.filePath(name); }
    TrustedExchange m_exchange;
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(tst_Player)
#include "tst_player.moc"
