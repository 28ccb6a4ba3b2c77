// The player as a script sees it: a process with arguments, event lines, files and a status.
#include "support/exchangetest.h"

#include <QDir>
#include <QImage>
#include <QJsonArray>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

namespace {

struct Outcome
{
    int status = -1; // of a process that did not crash
    QList<QJsonObject> events;
    QByteArray errors;

    QStringList names() const
    {
        QStringList names;
        for (const QJsonObject &event : events)
            names.append(event[u"event"_s].toString());
        return names;
    }
    QJsonObject first(const QString &name) const { return events.value(names().indexOf(name)); }
};

Outcome run(const QStringList &arguments)
{
    QProcess process;
    process.setProcessEnvironment([] {
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.remove(u"QT_QPA_PLATFORM"_s); // it finds out by itself
        environment.remove(u"DISPLAY"_s);
        environment.remove(u"WAYLAND_DISPLAY"_s);
        return environment;
    }());
    QSignalSpy finished(&process, &QProcess::finished);
    process.start(QStringLiteral(ZNTADS_PLAYER), arguments);
    if (!finished.wait(60000))
        return {};

    Outcome outcome;
    outcome.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    outcome.errors = process.readAllStandardError();
    const QByteArray output = process.readAllStandardOutput();
    for (const QByteArray &line : output.trimmed().split('\n')) {
        if (!line.isEmpty())
            outcome.events.append(QJsonDocument::fromJson(line).object());
    }
    return outcome;
}

QJsonObject read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object()
                                          : QJsonObject();
}

QJsonObject itemNamed(const QJsonObject &root, const QString &name)
{
    if (root[u"name"_s] == name)
        return root;
    const QJsonArray children = root[u"children"_s].toArray();
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

private Q_SLOTS:
    // In the events column "+" stands for a click that is followed to its target.
    void runs_data()
    {
        QTest::addColumn<QString>("arguments");
        QTest::addColumn<QString>("events");
        QTest::addColumn<int>("status");

        const QString splash =
            u"registered splashAdDidLoad splashAdDidVisible splashAdDidRender "_s;
        const QString clicked = u"handleAdClick openUrl splashAdDidCloseOtherController "_s;
        const QString closed = u"splashAdDidShowFinish exit"_s;
        QTest::addRow("splash: tap, close")
            << u"--at 1:tap --at 1.2:close splash"_s
            << splash + u"action "_s + clicked + u"action "_s + closed << 0;
        QTest::addRow("splash: skip")
            << u"--at 1:tap:skipButton splash"_s << splash + u"action "_s + closed << 0;
        QTest::addRow("splash: a tilt once, each shake")
            << u"--style 1 --at 1:tilt:30 --at 1.1:tilt:31 --at 1.2:tilt:80 --at 1.3:shake --at 2:close splash"_s
            << splash + u"action action "_s + clicked + u"action action "_s + clicked + u"action "_s
                + closed
            << 0;
        QTest::addRow("splash: slides")
            << u"--style 2 --at 1:pan:120,0,400 --at 1.6:pan:0,-150,100 --at 2:pan:0,60,100 --at 2.4:close splash"_s
            << splash + u"action "_s + clicked + u"action action "_s + clicked + u"action "_s
                + closed
            << 0;
        QTest::addRow("splash: hidden at first")
            << u"--at 0:hide --at 1.5:show --at 2:quit splash"_s
            << u"registered splashAdDidLoad splashAdDidVisible action action splashAdDidRender action exit"_s
            << 0;
        QTest::addRow("splash: registration refused, time up")
            << u"--media-id= --at 0.5:tap --duration 2 --open-url fail splash"_s
            << u"splashAdDidFailed exit"_s << 1;
        QTest::addRow("splash: answer refused")
            << u"--answer %1 splash"_s.arg(answerFile("{\"code\": 500}"))
            << u"registered answer exit"_s << 1;

        const QString interstitial =
            u"registered interstitialAdDidLoad interstitialAdDidVisible "_s;
        QTest::addRow("interstitial: no early close, tap, host's close")
            << u"--at 0.6:tap:skipButton --at 0.8:tap --at 1:close interstitial"_s
            << interstitial
                + u"action action interstitialAdDidClick openUrl "
                  "interstitialAdDidCloseOtherController action interstitialAdDidAutoClose exit"_s
            << 0;
        QTest::addRow("interstitial: closes by itself, twice")
            << u"--auto-close 1 --linger 1 --at 0.6:close interstitial"_s
            << interstitial + u"action interstitialAdDidAutoClose interstitialAdDidAutoClose exit"_s
            << 0;
        QTest::addRow("feed: two rows, tap, close, quit")
            << u"--count 2 --at 1:tap::1 --at 1.2:tap:closeButton:0 --at 1.4:close --at 1.6:quit feed"_s
            << u"registered feedAdDidLoad feedAdDidVisible feedAdDidVisible action feedAdDidClick "
               u"openUrl "
               "feedAdDidCloseOtherController action feedAdDidClose action action exit"_s
            << 0;
    }

    void runs()
    {
        QFETCH(const QString, arguments);
        QFETCH(const QString, events);
        QFETCH(const int, status);
        const Outcome outcome = play(arguments.split(u' '));
        QCOMPARE(outcome.names().join(u' '), events);
        QCOMPARE(outcome.status, status);
        QCOMPARE(outcome.events.last()[u"status"_s], status);
    }

    void wrongCommandLines_data()
    {
        QTest::addColumn<QString>("arguments");
        for (const char *arguments : {"", "bogus", "splash feed", "--nonsense splash",
                 "--style x splash", "--size 10 splash", "--size 0x5 splash", "--log maybe splash",
                 "--open-url often splash", "--exchange http://localhost splash",
                 "--linger -1 splash", "--set-default K={ splash", "--set-default =1 splash",
                 "--answer /nowhere splash", "--ca-file /dev/null splash",
                 "--events /nowhere/at/all splash", "--at tap splash", "--at -1:tap splash",
                 "--at 1:tap:a:b splash", "--at 1:pan:1,2 splash", "--at 1:shake:hard splash",
                 "--at 1:dump: splash", "--no-show tour", "--answer= splash", "--at 1e9:tap splash",
                 "--at 1:pan:1,2,1e12 splash", "--data-dir /dev/null/x splash",
                 "--two\nlines splash"})
            QTest::addRow("%s", arguments) << QString::fromLatin1(arguments);
    }

    void wrongCommandLines()
    {
        QFETCH(const QString, arguments);
        const Outcome outcome = run(arguments.split(u' ', Qt::SkipEmptyParts));
        QCOMPARE(outcome.status, 2);
        QVERIFY(outcome.events.isEmpty());
        QCOMPARE(outcome.errors.count('\n'), 1);
    }

    void eventFields()
    {
        const Outcome failed = play({u"--no-position"_s, u"splash"_s});
        const QJsonObject failure = failed.first(u"splashAdDidFailed"_s);
        QCOMPARE(failure[u"domain"_s], u"ZNTSplashManager"_s);
        QCOMPARE(failure[u"code"_s], -1001);
        QCOMPARE(failure[u"description"_s], u"mediaId不能为空"_s);
        QVERIFY(failure[u"ms"_s].toInt() > 0);

        const Outcome tapped = play({u"--open-url"_s, u"fail-deeplink"_s, u"--at"_s, u"1:tap"_s,
            u"--at"_s, u"1.2:quit"_s, u"splash"_s});
        QCOMPARE(tapped.first(u"action"_s)[u"action"_s], u"tap"_s);
        QCOMPARE(tapped.first(u"openUrl"_s)[u"opened"_s], false);
        QCOMPARE(tapped.names().count(u"openUrl"_s), 2);
        QCOMPARE(tapped.events.value(tapped.names().lastIndexOf(u"openUrl"_s))[u"opened"_s], true);
    }

    void dumps()
    {
        QVERIFY(QDir(m_dir.path()).mkpath(u"out"_s));
        play({u"--size"_s, u"320x568"_s, u"--bottom-view"_s, u"100"_s, u"--at"_s,
            u"0.2:alpha:0.5"_s, u"--at"_s, u"0.3:move:10,20"_s, u"--at"_s,
            u"1:dump:"_s + path(u"out/splash.json"_s), u"--at"_s, u"1.1:quit"_s, u"--style"_s,
            u"2"_s, u"splash"_s});
        const QJsonObject splash = read(path(u"out/splash.json"_s));
        QCOMPARE(splash[u"size"_s], (QJsonArray{320, 568}));
        const QJsonObject content = splash[u"children"_s][0].toObject();
        QCOMPARE(content[u"opacity"_s], 0.5);
        QCOMPARE(content[u"frame"_s], (QJsonArray{10, 20, 320, 568}));
        const QJsonObject view = itemNamed(splash, u"splashAdView"_s);
        QCOMPARE(view[u"type"_s], u"ZNTSlideAdView"_s);
        for (const auto container = itemNamed(view, u"containerView"_s)[u"children"_s].toArray();
             const auto &subview : container)
            QVERIFY(!subview[u"name"_s].toString().isEmpty()); // nothing but what has a name
        QCOMPARE(view[u"frame"_s], (QJsonArray{0, 0, 320, 468}));
        QCOMPARE(itemNamed(splash, u"bottomView"_s)[u"frame"_s], (QJsonArray{0, 468, 320, 100}));
        QCOMPARE(itemNamed(view, u"skipButton"_s)[u"textColor"_s], u"#ffffffff"_s);
        QCOMPARE(itemNamed(view, u"adLabel"_s)[u"visible"_s], false);
        const QJsonObject picture = itemNamed(view, u"mainAdImageView"_s);
        QCOMPARE(picture[u"hasImage"_s], true);
        QCOMPARE(picture[u"contentMode"_s], u"aspectFit"_s);

        play({u"--template-size"_s, u"300x150"_s, u"--at"_s, u"0.2:scroll:50"_s, u"--at"_s,
            u"0.4:dump:"_s + path(u"out/feed.json"_s), u"--at"_s, u"0.5:quit"_s, u"feed"_s});
        const QJsonObject feed = read(path(u"out/feed.json"_s));
        QCOMPARE(itemNamed(feed, u"row2"_s)[u"frame"_s], (QJsonArray{0, 250, 300, 150}));
        QCOMPARE(itemNamed(feed, u"row8"_s)[u"type"_s], u"ZNTTextRightImageAdView"_s);
        QVERIFY(itemNamed(feed, u"row9"_s).isEmpty());
        QVERIFY(!itemNamed(itemNamed(feed, u"row6"_s), u"imageViews[2]"_s).isEmpty());
    }

    void keepsEverythingInItsFolder()
    {
        const QString folder = path(u"fresh"_s);
        play({u"--data-dir"_s, folder, u"--set-default"_s, u"ZNTAds_FreqCtrlArg={\"a\":[1,true]}"_s,
            u"--set-default"_s, u"mine=1"_s, u"--log"_s, u"on"_s, u"--at"_s,
            u"1:defaults:"_s + path(u"defaults.json"_s), u"--at"_s, u"1.1:quit"_s, u"splash"_s});
        const QJsonObject defaults = read(path(u"defaults.json"_s));
        QCOMPARE(defaults[u"ZNTAds_FreqCtrlArg"_s].toObject()[u"a"_s], (QJsonArray{1, true}));
        QCOMPARE(defaults[u"ZNTAds_EnableAdLog"_s], true);
        QVERIFY(!defaults.contains(u"mine"_s));
        QCOMPARE(QDir(folder + u"/Documents/Logs"_s).entryList(QDir::Files).size(), 1);
        QVERIFY(QDir(folder + u"/tmp"_s).exists());
    }

    void tours()
    {
        const Outcome outcome = play({u"--screenshots"_s, path(u"pictures"_s), u"tour"_s});
        QCOMPARE(outcome.status, 0);
        for (const QString &name : {u"splash-image"_s, u"splash-shake"_s, u"splash-slide"_s,
                 u"interstitial"_s, u"feed"_s}) {
            const QImage picture(path(u"pictures/%1.png"_s.arg(name)));
            QCOMPARE(picture.size(), QSize(375, 812));
        }

        QCOMPARE(play({u"--position"_s, u"refused"_s, u"tour"_s}).status, 1);
    }

private:
    // Against the exchange, with everything under a folder of its own.
    Outcome play(const QStringList &arguments)
    {
        return run(QStringList{u"--exchange"_s, m_exchange.httpsUrl().toString(), u"--log-upload"_s,
                       m_exchange.httpUrl().toString(), u"--ca-file"_s, m_exchange.caFile(),
                       u"--data-dir"_s, path(u"data"_s), u"--linger"_s, u"0.2"_s}
            + arguments);
    }

    QString path(const QString &name) const { return m_dir.filePath(name); }
    QString answerFile(const QByteArray &json) const
    {
        QFile file(path(u"answer.json"_s));
        if (!file.open(QIODevice::WriteOnly) || file.write(json) != json.size())
            qFatal("%s", qPrintable(file.errorString()));
        return file.fileName();
    }

    znt::test::TrustedExchange m_exchange;
    QTemporaryDir m_dir;
};

QTEST_GUILESS_MAIN(tst_Player)
#include "tst_player.moc"
