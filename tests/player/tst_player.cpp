#include "player/playertest.h"

using namespace znt::test;

namespace {

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

class tst_Player : public PlayerTest
{
    Q_OBJECT

private slots:
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

private:
    // What is on screen after a second.
    QJsonObject dumped(const QString &arguments)
    {
        play("--at 1:dump:" + path("dump.json") + " --at 1.1:quit " + arguments);
        return json(contents(path("dump.json")));
    }
};

QTEST_GUILESS_MAIN(tst_Player)
#include "tst_player.moc"
