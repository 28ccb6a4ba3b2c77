#include "diagnostics/log.h"
#include "support/loglines.h"

#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>
#include <semaphore>
#include <thread>

using namespace znt::test;

// The clock on the wall, which somebody sets.
static std::atomic<int> secondsAhead = 0;

extern "C" int clock_gettime(clockid_t clock, timespec *time) noexcept
{
    const long result = syscall(SYS_clock_gettime, clock, time);
    if (clock == CLOCK_REALTIME)
        time->tv_sec += secondsAhead;
    return int(result);
}

namespace {

constexpr int threadCount = 4;
constexpr int linesOfThread = 50'000;

// Also a barrier: everything logged before is worked off when it returns.
std::pair<QString, std::optional<ZNTError>> exportNow()
{
    std::pair<QString, std::optional<ZNTError>> result;
    std::binary_semaphore done(0); // not Qt's, which the thread sanitizer cannot see
    logger()->exportLogsWithCompletion([&](const auto &file, const auto &error) {
        result = {file ? file->toLocalFile() : QString(), error};
        logger()->logInfo("a completion may log");
        done.release();
    });
    done.acquire();
    return result;
}

void logFromAllThreads()
{
    std::vector<std::thread> threads;
    for (int i = 0; i < threadCount; ++i) {
        threads.emplace_back([i] {
            for (int k = 0; k < linesOfThread; ++k)
                znt::logInfo("thread %1 line %2", i, k);
        });
    }
    for (std::thread &thread : threads)
        thread.join();
}

// Everything logged before is in the file when it returns, if the file takes it.
void writeNow()
{
    std::binary_semaphore done(0);
    logger()->flushLogBuffer();
    logger()->exportLogsWithCompletion([&](const auto &, const auto &) { done.release(); });
    done.acquire();
}

void logLines(int first, int count)
{
    for (int k = first; k < first + count; ++k)
        znt::logInfo("line %1", k);
}

[[noreturn]] void logUntilKilled()
{
    for (int k = 0;; ++k) {
        logLines(k, 1);
        usleep(1000);
    }
}

// No file may grow beyond an odd size for a while.
void fillTheDisk()
{
    std::signal(SIGXFSZ, SIG_IGN);
    logLines(0, 10);
    writeNow();
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = rlim_t(QFileInfo(logger()->currentLogFilePath()).size()) + 100;
    setrlimit(RLIMIT_FSIZE, &limit);
    for (int k = 10; k < 14; ++k) {
        logLines(k, 10);
        writeNow();
    }
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_FSIZE, &limit);
}

// The folder's disk is read-only, then small, full, larger, and away. Gives what the log holds in
// each.
QByteArrayList changeTheDisk()
{
    const QString path = logger()->currentLogFilePath();
    const QByteArray folder = QFileInfo(path).path().toUtf8();
    QByteArrayList held;
    const auto log = [&](const QString &line) {
        logger()->logInfo(line);
        writeNow();
        held.append(QByteArray::number(contents(path).size()) + contents(path).right(3).trimmed());
    };
    const auto mountAs = [&](unsigned long flags, const char *size) {
        if (mount("none", folder.constData(), "tmpfs", flags, size) != 0)
            qFatal("mount: %s", strerror(errno));
    };
    writeNow(); // makes the folder
    mountAs(MS_RDONLY, "size=8k");
    log("a");
    mountAs(MS_REMOUNT, "size=8k");
    log("b");
    log(QString(10'000, u'c'));
    log("d");
    mountAs(MS_REMOUNT, "size=1m");
    log("e");
    umount2(folder.constData(), MNT_DETACH);
    log("f");
    return held;
}

// What a child process does before it ends, right after its last line.
int runChild(const QByteArray &ending)
{
    if (ending == "late")
        std::atexit([] { logger()->logInfo("last"); }); // runs after the logger's own
    if (ending == "elsewhere") {
        const QString home = qEnvironmentVariable("HOME");
        const bool counts =
            ZNTLogManager::setLogDirectory(home + "/mine/logs") && ZNTLogManager::setDaysKept(2);
        logger()->setLogEnabled(true);
        logger()->logInfo("last");
        return counts && !ZNTLogManager::setDaysKept(1) && !ZNTLogManager::setLogDirectory({}) ? 0
                                                                                               : 1;
    }
    logger()->setLogEnabled(true);
    if (ending == "killed")
        logUntilKilled();
    if (ending == "changing") {
        // A line begins with 32 units; what was torn by the full disk is whole in the end.
        const QByteArrayList expected{"0", "34b", "8192ccc", "8192ccc", "10101e", "34f"};
        const QByteArrayList held = changeTheDisk();
        qInfo("%s", held.join('|').constData());
        return held == expected ? 0 : 1;
    }
    if (ending == "full")
        fillTheDisk();
    else
        logFromAllThreads();
    if (ending == "fork") {
        const pid_t child = fork();
        if (child == 0) {
            logger()->logInfo("never");
            exit(0);
        }
        waitpid(child, nullptr, 0);
    }
    if (ending == "completion") {
        logger()->exportLogsWithCompletion([](const auto &, const auto &) { exit(0); });
        logger()->logInfo("last");
        pause();
    }
    if (ending != "late")
        logger()->logInfo("last");
    if (ending == "off") {
        logger()->setLogEnabled(false);
        logger()->logInfo("never");
    }
    return 0;
}

} // namespace

class tst_logger : public QObject
{
    Q_OBJECT

private:
    static void begin(
        QProcess &child, const QTemporaryDir &home, const QString &ending, QStringList command = {})
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME", home.path());
        environment.insert("TMPDIR", home.path());
        environment.insert("ZNT_TEST_ENDING", ending);
        if (ending == "fork") // the second child lacks the thread that owns GLib's state
            environment.insert("LSAN_OPTIONS", "detect_leaks=0");
        child.setProcessEnvironment(environment);
        command.append(QCoreApplication::applicationFilePath());
        child.start(command.takeFirst(), command);
    }
    static void finish(QProcess &child)
    {
        const bool hasEnded = child.waitForFinished(60'000);
        if (!hasEnded || child.exitCode() != 0)
            QFAIL(child.readAllStandardError().right(1000).constData());
    }
    static void start(QProcess &child, const QTemporaryDir &home, const QString &ending)
    {
        begin(child, home, ending);
        finish(child);
    }
    static QByteArray logIn(const QTemporaryDir &home)
    {
        const QDir logs(home.filePath("Documents/Logs"));
        return contents(logs.filePath(logs.entryList(QDir::Files).value(0)));
    }
    // Of the newest line that is whole, when the lines are numbered one by one from 0.
    static QDateTime newestOf(const QByteArray &text)
    {
        const QByteArrayList lines = text.first(text.lastIndexOf('\n') + 1).split('\n');
        for (qsizetype k = 0; k + 1 < lines.size(); ++k) {
            if (!lines[k].endsWith("][INFO] line " + QByteArray::number(k)))
                qFatal("line %d: %s", int(k), lines[k].constData());
        }
        return QDateTime::fromString(QString::fromLatin1(lines.value(lines.size() - 2).mid(1, 23)),
            u"yyyy-MM-dd HH:mm:ss.zzz");
    }
    // How old the newest line on disk is when the process is killed at some moment, in ms.
    static qint64 lostAtKill(int milliseconds)
    {
        const QTemporaryDir home;
        QProcess child;
        child.setStandardErrorFile(QProcess::nullDevice());
        begin(child, home, "killed");
        const auto hasBegun = [&] { return !logIn(home).isEmpty(); };
        if (!QTest::qWaitFor(hasBegun, 10'000))
            qFatal("nothing is logged");
        QTest::qSleep(milliseconds);
        const QDateTime now = QDateTime::currentDateTime();
        child.kill();
        child.waitForFinished();
        return newestOf(logIn(home)).msecsTo(now);
    }
    static void endsWith(const QString &ending)
    {
        const QTemporaryDir home;
        QProcess child;
        start(child, home, ending);
        const QByteArray text = logIn(home);
        // The console has had the same lines.
        QCOMPARE(child.readAllStandardError().size(), text.size());
        QList<QByteArray> lines = text.split('\n');
        QCOMPARE(lines.takeLast(), QByteArray());
        QVERIFY(lines.takeLast().endsWith("][INFO] last"));
        QCOMPARE(lines.size(), threadCount * linesOfThread);
        int next[threadCount] = {};
        for (const QByteArray &line : lines) {
            const QList<QByteArray> words = line.split(' '); // date, time, "thread", i, "line", k
            const int thread = words.value(3).toInt();
            QVERIFY2(words.size() == 6 && words[5].toInt() == next[thread]++, line.constData());
        }
    }

private slots:
    void init() { failOnWarnings(); }

    void writesNothingWhileOff()
    {
        const QString path = logger()->currentLogFilePath();
        QCOMPARE(path,
            qEnvironmentVariable("HOME") + "/Documents/Logs/"
                + QDate::currentDate().toString(u"yyyy-MM-dd") + ".log");
        QVERIFY(!logger()->isEnabled());
        logger()->logInfo("dropped");
        logger()->flushLogBuffer();
        exportNow();
        QVERIFY(QFile::exists(path));
        QCOMPARE(QFileInfo(path).size(), 0);
    }

    void writesLines()
    {
        QCOMPARE(znt::logLine("%1, %2", QString(), QString("%1")), "(null), %1");
        const qint64 before = QDateTime::currentMSecsSinceEpoch();
        logger()->setLogEnabled(true);
        logger()->logInfo("开屏 one\ntwo");
        logger()->logWarning(QString());
        logger()->writeLog("%1", "ERROR");
        logger()->setEnabled(false);
        logger()->flushLogBuffer();
        exportNow();

        const QString text = QString::fromUtf8(contents(logger()->currentLogFilePath()));
        const QRegularExpression form(
            "^\\[(.{23})\\]\\[INFO\\] 开屏 one\ntwo\n\\[.{23}\\]\\[WARNING\\] \\(null\\)\n"
            "\\[.{23}\\]\\[ERROR\\] %1\n$");
        const QRegularExpressionMatch match = form.match(text);
        QVERIFY2(match.hasMatch(), qPrintable(text));
        const QDateTime time = QDateTime::fromString(match.captured(1), u"yyyy-MM-dd HH:mm:ss.zzz");
        QVERIFY(time.toMSecsSinceEpoch() >= before);
        QVERIFY(time <= QDateTime::currentDateTime());
    }

    void writesEarly()
    {
        for (const int units : {65'535, 65'536}) {
            const bool isFull = units == 65'536;
            exportNow(); // nothing waits
            const qint64 before = QFileInfo(logger()->currentLogFilePath()).size();

            logger()->setLogEnabled(true);
            const int half = units / 2;
            const qsizetype frame = QStringView(u"[2026-03-07 14:05:09.031][INFO] \n").size();
            // Two bytes a unit: bytes are not what counts.
            logger()->logInfo(QString(half - frame, u'é'));
            logger()->logInfo(QString(units - half - frame, u'é'));
            logger()->setLogEnabled(false);

            // The export writes nothing before its copy is made.
            std::binary_semaphore done(0);
            qint64 size = 0;
            logger()->exportLogsWithCompletion([&](const auto &, const auto &) {
                size = QFileInfo(logger()->currentLogFilePath()).size();
                done.release();
            });
            done.acquire();
            QCOMPARE(size, before + (isFull ? 2 * units - 2 * frame : 0));
        }
    }

    void writesAfterASecond()
    {
        const qint64 before = QFileInfo(logger()->currentLogFilePath()).size();
        QElapsedTimer timer;
        timer.start();
        logger()->setLogEnabled(true);
        logger()->logInfo("waits");
        logger()->setLogEnabled(false);
        QTRY_VERIFY(QFileInfo(logger()->currentLogFilePath()).size() > before);
        QVERIFY2(timer.elapsed() >= 1'000, qPrintable(QString::number(timer.elapsed())));
    }

    void exports()
    {
        const QString path = logger()->currentLogFilePath();
        QString first;
        std::optional<ZNTError> second;
        while (!second) { // until both are within one second
            first = exportNow().first;
            second = exportNow().second;
        }
        const QRegularExpression form(QDir::tempPath()
            + "/ZNTAds_Log_\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d \\+0000\\.log");
        QVERIFY2(form.match(first).hasMatch(), qPrintable(first));
        QCOMPARE(contents(first), contents(path));
        QCOMPARE(second->domain(), "QFileDevice");
        QCOMPARE(second->code(), int(QFileDevice::CopyError));

        QVERIFY(QFile::rename(path, path + ".away"));
        QCOMPARE(exportNow().second, ZNTError("com.zntads.logger", -1, "Log file does not exist"));
        QVERIFY(QFile::rename(path + ".away", path));
        logger()->exportLogsWithCompletion({});
    }

    void losesNothingAtTheEnd()
    {
        for (const char *ending : {"return", "late", "completion", "fork", "off"})
            endsWith(ending);
    }

    void keepsSomeDaysInTheHostsFolder()
    {
        const QTemporaryDir home;
        const QDir logs(home.filePath("mine/logs"));
        QVERIFY(QDir().mkpath(logs.path()));
        const QString yesterday = QDate::currentDate().addDays(-1).toString(Qt::ISODate) + ".log";
        const QString today = QDate::currentDate().toString(Qt::ISODate) + ".log";
        for (const QString &name : {yesterday, QString("2020-01-01.log"), QString("2020-99-99.log"),
                 QString("mine.log")}) {
            QFile file(logs.filePath(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        QProcess child;
        start(child, home, "elsewhere");
        QCOMPARE(logs.entryList(QDir::Files, QDir::Name),
            (QStringList{"2020-99-99.log", yesterday, today, "mine.log"}));
        QVERIFY(contents(logs.filePath(today)).endsWith("last\n"));
        QVERIFY(!QDir(home.filePath("Documents")).exists());
    }

    // The folder goes, and something else is in its place for a while.
    void writesAgainOnceItCan()
    {
        logger()->setLogEnabled(true);
        logger()->flushLogBuffer();
        const QString path = logger()->currentLogFilePath();
        QDir folder = QFileInfo(path).dir();
        QVERIFY(folder.removeRecursively());
        logger()->logInfo("made again");
        QTRY_VERIFY(contents(path).endsWith("made again\n"));
        QVERIFY(folder.removeRecursively());
        QVERIFY(folder.mkpath(".")); // by somebody else
        saved(path, "half a line");
        logger()->logInfo("found again");
        QTRY_VERIFY(contents(path).endsWith("found again\n"));
        QVERIFY(contents(path).startsWith("half a line\n["));
        QVERIFY(folder.removeRecursively());
        saved(folder.path(), "a file");
        logger()->logInfo("lost");
        logger()->flushLogBuffer();
        QTest::qWait(100);
        QVERIFY(QFile::remove(folder.path()));
        logger()->logInfo("kept");
        QTRY_VERIFY(contents(path).endsWith("kept\n"));
    }

    // ZNTADS_KILLS makes it longer. A busy machine may be late, but not each time.
    void losesASecondAtMostWhenKilled()
    {
        bool isSet = false;
        const int kills = qEnvironmentVariableIntValue("ZNTADS_KILLS", &isSet);
        std::mt19937 random(1); // NOLINT: the same moments each time
        for (int i = 0; i < (isSet ? kills : 3); ++i) {
            const int moment = int(random() % 1500);
            qint64 lost = 0;
            for (int attempt = 0; attempt < 3 && (attempt == 0 || lost > 1100); ++attempt)
                lost = lostAtKill(moment);
            QVERIFY2(lost <= 1100, qPrintable(QString("%1 ms lost at %2").arg(lost).arg(moment)));
        }
    }

    void tearsNoLineOnAFullDisk()
    {
        const QTemporaryDir home;
        QProcess child;
        start(child, home, "full");
        const QByteArrayList lines = logIn(home).split('\n');
        QVERIFY(lines.size() > 12 && lines.size() < 18); // the torn one, then the last
        for (qsizetype k = 0; k + 2 < lines.size(); ++k)
            QVERIFY2(
                lines[k].endsWith("][INFO] line " + QByteArray::number(k)), lines[k].constData());
        QCOMPARE(lines[lines.size() - 2].sliced(24), "][INFO] last");
        QCOMPARE(child.readAllStandardError().count('\n'), 51);
    }

    void goesOnWithItsDisk()
    {
        const QStringList mayMount{"unshare", "-rm"};
        if (QProcess::execute("unshare", {"-rm", "true"}) != 0)
            QSKIP("no file system can be mounted in a namespace of this user's");
        const QTemporaryDir home;
        QProcess child;
        begin(child, home, "changing", mayMount);
        finish(child);
        QVERIFY(logIn(home).endsWith("] f\n"));
    }

    void followsAClockThatIsSet()
    {
        const QString path = logger()->currentLogFilePath();
        logger()->setLogEnabled(true);
        for (const int ahead : {90'000, -90'000, -1'500'000'000}) {
            const auto back = qScopeGuard([] { secondsAhead = 0; });
            secondsAhead = ahead;
            const QByteArray second = QDateTime::currentDateTime().toString(Qt::ISODate).toLatin1();
            logger()->logInfo("set");
            if (ahead != -90'000)
                writeNow();
            QTRY_VERIFY(contents(path).endsWith("set\n")); // by the second that passes
            const QByteArray line = contents(path).trimmed().split('\n').constLast();
            const QDateTime time = QDateTime::fromString(
                QString::fromLatin1(line.mid(1, 23)), u"yyyy-MM-dd HH:mm:ss.zzz");
            QVERIFY2(qAbs(QDateTime::fromString(second, Qt::ISODate).msecsTo(time)) < 2000,
                line.constData());
        }
    }

    // Standard error is a pipe that nobody reads, or has closed; the log file is one.
    void endsThoughNobodyReads()
    {
        const QByteArray today = QDate::currentDate().toString(Qt::ISODate).toUtf8();
        for (const QByteArray &setting : {QByteArray("mkfifo p; exec 3<>p; \"$0\" 2>&3"),
                 QByteArray(
                     "exec 3>&1; (\"$0\"; echo $? >status) 2>&1 >&3 | true; exit `cat status`"),
                 "mkfifo Documents/Logs/" + today + ".log; \"$0\" 2>lines"}) {
            const QTemporaryDir home;
            QVERIFY(QDir(home.path()).mkpath("Documents/Logs"));
            QProcess shell;
            shell.setWorkingDirectory(home.path());
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert("HOME", home.path());
            environment.insert("ZNT_TEST_ENDING", "return");
            shell.setProcessEnvironment(environment);
            shell.start("sh", {"-c", setting, QCoreApplication::applicationFilePath()});
            QVERIFY2(shell.waitForFinished(20'000), setting.constData());
            QCOMPARE(shell.exitCode(), 0);
            const bool isFile = !setting.startsWith("mkfifo Documents");
            const QByteArray kept = contents(
                home.filePath(isFile ? "Documents/Logs/" + today + ".log" : QByteArray("lines")));
            QVERIFY2(kept.endsWith("][INFO] last\n"), setting.constData());
            QCOMPARE(kept.count('\n'), threadCount * linesOfThread + 1);
        }
    }
};

int main(int argc, char **argv)
{
    const QByteArray ending = qgetenv("ZNT_TEST_ENDING");
    if (!ending.isEmpty())
        return runChild(ending);

    const QTemporaryDir home; // today's file is to be new
    qputenv("HOME", home.path().toUtf8());
    qputenv("XDG_CONFIG_HOME", home.path().toUtf8());
    qputenv("TMPDIR", home.path().toUtf8());
    const QCoreApplication application(argc, argv);
    tst_logger test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_logger.moc"
