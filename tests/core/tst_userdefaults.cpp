// Settings in every state that a disk, another process or a hand can leave them in. Each case is a
// process of its own, for the service client and what QSettings knows live as long as one.
#include "core/userdefaults.h"
#include "support/test.h"

#include <ZNTAds/ZNTAdsManager.h>

#include <QDir>

#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <random>

using namespace znt;
using namespace znt::test;

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr double longestWait = 500; // ms, of the main thread
#else
constexpr double longestWait = 50;
#endif

QString folder()
{
    return qEnvironmentVariable("XDG_CONFIG_HOME") + "/org";
}
QString path()
{
    return folder() + "/app.conf";
}

void limitFiles(rlim_t size)
{
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = qMin(size, limit.rlim_max);
    setrlimit(RLIMIT_FSIZE, &limit);
}

void mountAs(unsigned long flags)
{
    if (mount("none", QFile::encodeName(folder()).constData(), "tmpfs", flags, "size=1m") != 0)
        qFatal("mount: %s", strerror(errno));
}

void nothing()
{
}

// A write of them takes a sanitizer long.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int manyKeys = 10'000;
#else
constexpr int manyKeys = 100'000;
#endif

// What is wrong with the settings, and how it is mended.
struct Trouble
{
    void (*begin)() = nothing;
    void (*end)() = nothing;
};

const std::map<QByteArray, Trouble> troubles{
    {"broken", {[] {
         std::mt19937 random(1); // NOLINT: the same bytes each time
         QByteArray bytes("[General]\nZNTAds_BaseUrl=@Variant(\\0\\0\\0\\x7f\\0\\0\\0\\x3)\n"
                          "ZNTAds_InteractionCtrlArg=@Variant(\\0\\0\\0\\x8\\xff\\xff\\xff)\n");
         for (int i = 0; i < 100'000; ++i)
             bytes.append(char(random()));
         saved(path(), bytes);
     }}},
    {"huge", {[] {
         QByteArray text("[General]\n");
         for (int i = 0; i < manyKeys; ++i)
             text += "key" + QByteArray::number(i) + "=" + QByteArray(60, 'v') + '\n';
         saved(path(), text);
     }}},
    {"folder", {[] { QDir().mkpath(path()); }, [] { QDir().rmdir(path()); }}},
    // Whoever opens it waits.
    {"pipe",
        {[] { mkfifo(QFile::encodeName(path()).constData(), 0600); },
            [] {
                QFile(path()).open(QIODevice::WriteOnly);
                QFile::remove(path());
            }}},
    {"full",
        {[] {
             std::signal(SIGXFSZ, SIG_IGN);
             limitFiles(0);
         },
            [] { limitFiles(RLIM_INFINITY); }}},
    {"read-only", {[] { mountAs(MS_RDONLY); }, [] { mountAs(MS_REMOUNT); }}},
    {"shared", {}},
};

// The longest that the call has taken, in milliseconds.
class Longest
{
public:
    template <class Call>
    void of(Call call)
    {
        QElapsedTimer timer;
        timer.start();
        call();
        m_time = qMax(m_time, double(timer.nsecsElapsed()) / 1e6);
    }
    double time() const { return m_time; }

private:
    double m_time = 0;
};

bool isStored(const QByteArray &text)
{
    return QTest::qWaitFor([&] { return contents(path()).contains(text); }, 30'000);
}

// The process of one case. It says how long its main thread has waited.
int runChild(const Trouble &trouble, const QString &own)
{
    Longest longest;
    ZNTAdsManager *manager = nullptr;
    trouble.begin();
    longest.of([&] { manager = ZNTAdsManager::sharedInstance(); });
    longest.of([&] { userdefaults::store({{own + "_Early", "early" + own}}); });
    QTest::qWait(100);
    longest.of([&] { manager->loadFreqCtrlArgFromLocal(); });
    for (int i = 0; i < 10; ++i) {
        const QJsonObject record{{"adType", 100 + i}};
        longest.of([&] {
            manager->updateInteractionCtrlArg(ZNTInteractionCtrlArg::initWithDictionary(record));
            manager->setInteractionCtrlArg({});
            manager->loadInteractionCtrlArgFromLocal();
        });
        if (manager->interactionCtrlArg().value_or(ZNTInteractionCtrlArg()).adType() != 100 + i)
            return 2;
    }
    trouble.end();
    longest.of([&] { userdefaults::store({{own + "_Late", "late" + own}}); });
    if (!isStored("late" + own.toUtf8()) || !isStored("early" + own.toUtf8()))
        return 3;
    std::printf("%f", longest.time());
    return 0;
}

} // namespace

class TestUserDefaults : public QObject
{
    Q_OBJECT

private:
    static std::unique_ptr<QProcess> begun(
        const QByteArray &trouble, const QTemporaryDir &home, const QString &own = "only")
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("XDG_CONFIG_HOME", home.path());
        environment.insert("ZNT_TEST_TROUBLE", trouble);
        environment.insert("ZNT_TEST_OWN", own);
        auto child = std::make_unique<QProcess>();
        child->setProcessEnvironment(environment);
        QStringList command{"unshare", "-rm"};
        command = (trouble == "read-only" ? command : QStringList())
            << QCoreApplication::applicationFilePath();
        child->start(command.takeFirst(), command);
        return child;
    }
    static double waited(QProcess &child)
    {
        const bool hasEnded = child.waitForFinished(90'000);
        const QByteArray errors = child.readAllStandardError().right(1000);
        if (!hasEnded || child.exitStatus() != QProcess::NormalExit || child.exitCode() != 0)
            qFatal("%d %s", child.exitCode(), errors.constData());
        return child.readAllStandardOutput().toDouble();
    }

private slots:
    void holdUpNothing_data()
    {
        QTest::addColumn<QByteArray>("trouble");
        for (const auto &[name, trouble] : troubles)
            QTest::newRow(name.constData()) << name;
    }
    // A busy machine may be late, but not each time.
    void holdUpNothing()
    {
        QFETCH(const QByteArray, trouble);
        if (trouble == "read-only" && QProcess::execute("unshare", {"-rm", "true"}) != 0)
            QSKIP("no file system can be mounted in a namespace of this user's");
        double shortest = longestWait;
        for (int attempt = 0; attempt < 3 && shortest >= longestWait; ++attempt) {
            const QTemporaryDir home;
            QVERIFY(QDir(home.path()).mkpath("org"));
            const auto child = begun(trouble, home);
            if (trouble == "shared")
                waited(*begun(trouble, home, "other"));
            shortest = waited(*child);
            if (trouble == "shared") // neither has overwritten the other's
                QVERIFY(contents(home.filePath("org/app.conf")).contains("lateother"));
        }
        QVERIFY2(shortest < longestWait, qPrintable(QString("%1 ms").arg(shortest)));
    }
};

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QByteArray trouble = qgetenv("ZNT_TEST_TROUBLE");
    if (!trouble.isEmpty()) {
        QCoreApplication::setOrganizationName("org");
        QCoreApplication::setApplicationName("app");
        return runChild(troubles.at(trouble), qEnvironmentVariable("ZNT_TEST_OWN"));
    }
    TestUserDefaults test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_userdefaults.moc"
