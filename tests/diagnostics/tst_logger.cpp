#include "diagnostics/log.h"
#include "support/loglines.h"

#include <sys/wait.h>
#include <unistd.h>

#include <semaphore>
#include <thread>

using namespace znt::test;

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
    static void start(QProcess &child, const QTemporaryDir &home, const QString &ending)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("HOME", home.path());
        environment.insert("TMPDIR", home.path());
        environment.insert("ZNT_TEST_ENDING", ending);
        if (ending == "fork") // the second child lacks the thread that owns GLib's state
            environment.insert("LSAN_OPTIONS", "detect_leaks=0");
        child.setProcessEnvironment(environment);
        child.start(QCoreApplication::applicationFilePath(), {});
        QVERIFY2(child.waitForFinished(60'000) && child.exitCode() == 0, qPrintable(ending));
    }
    static void endsWith(const QString &ending)
    {
        const QTemporaryDir home;
        QProcess child;
        start(child, home, ending);
        const QDir logs(home.filePath("Documents/Logs"));
        const QByteArray text = contents(logs.filePath(logs.entryList(QDir::Files).value(0)));
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
        saved(folder.path(), "a file");
        logger()->logInfo("lost");
        logger()->flushLogBuffer();
        QTest::qWait(100);
        QVERIFY(QFile::remove(folder.path()));
        logger()->logInfo("kept");
        QTRY_VERIFY(contents(path).endsWith("kept\n"));
    }

    // Standard error is a pipe that nobody reads, or has closed; the log file is one.
    void endsThoughNobodyReads()
    {
        const QByteArray today = QDate::currentDate().toString(Qt::ISODate).toUtf8();
        for (const QByteArray &setting : {QByteArray("mkfifo p; exec 3<>p; \"$0\" 2>&3"),
                 QByteArray("(\"$0\"; echo $? >status) 2>&1 >&3 | true; exit `cat status`"),
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
