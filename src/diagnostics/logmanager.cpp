#include <ZNTAds/ZNTLogManager.h>

#include "diagnostics/errorreport.h"
#include "diagnostics/log.h"
#include "diagnostics/logwriter.h"
#include "support/devicefacts.h"
#include "support/mainthread.h"

#include <QDateTime>
#include <QDir>
#include <QStandardPaths>

#include <atomic>
#include <cstdlib>

namespace {

// What the host may choose before the logger is made.
struct Choices
{
    std::mutex mutex;
    bool isMade = false;
    QString folder;
    int daysKept = 0;
};

Choices &choices()
{
    return znt::neverDestroyed<Choices>();
}

// Whether it is early enough for the choice.
template <class Value>
bool choose(Value Choices::*choice, const Value &value)
{
    Choices &made = choices();
    const std::lock_guard lock(made.mutex);
    if (!made.isMade)
        made.*choice = value;
    return !made.isMade;
}

QString pathOfToday()
{
    const QString &chosen = choices().folder;
    const QString folder = chosen.isEmpty()
        ? QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
            + QStringLiteral("/Logs")
        : chosen;
    return QStringLiteral("%1/%2.log").arg(folder, QDate::currentDate().toString(Qt::ISODate));
}

QString exportPath()
{
    const QString time =
        QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    return QStringLiteral("%1/ZNTAds_Log_%2 +0000.log").arg(QDir::tempPath(), time);
}

QStringView shown(const QString &text)
{
    return text.isNull() ? QStringView(u"(null)") : text;
}

} // namespace

class ZNTLogManager::Private
{
public:
    void write(const QString &message, QStringView level)
    {
        if (enabled.load(std::memory_order_relaxed))
            writer.append(level, shown(message));
    }

    const QString path = pathOfToday();
    std::atomic<bool> enabled = false;
    znt::LogWriter writer{path, choices().daysKept};

    std::mutex idMutex;
    QString appId;
    QString mediaId;
};

ZNTLogManager *ZNTLogManager::sharedInstance()
{
    // Never destroyed: static destructors and late threads may still log.
    static ZNTLogManager *const instance = [] {
        {
            const std::lock_guard lock(choices().mutex);
            choices().isMade = true;
        }
        auto *manager = new ZNTLogManager;
        std::atexit([] { sharedInstance()->d->writer.finish(); });
        return manager;
    }();
    return instance;
}

ZNTLogManager::ZNTLogManager()
    : d(std::make_unique<Private>())
{
}

ZNTLogManager::~ZNTLogManager() = default;

bool ZNTLogManager::setLogDirectory(const QString &folder)
{
    return choose(&Choices::folder, folder);
}

bool ZNTLogManager::setDaysKept(int days)
{
    return choose(&Choices::daysKept, days);
}

void ZNTLogManager::setErrorReportsEnabled(bool enabled)
{
    znt::setErrorReportsEnabled(enabled);
}

void ZNTLogManager::logInfo(const QString &message)
{
    d->write(message, u"INFO");
}

void ZNTLogManager::logWarning(const QString &message)
{
    d->write(message, u"WARNING");
}

void ZNTLogManager::logError(const QString &message)
{
    d->write(message, u"ERROR");
    reportErrorWithSummary(message, QString());
}

void ZNTLogManager::writeLog(const QString &message, const QString &level)
{
    d->write(message, shown(level));
}

QString ZNTLogManager::currentLogFilePath() const
{
    return d->path;
}

void ZNTLogManager::exportLogsWithCompletion(ExportCompletion completion)
{
    d->writer.post([completion = std::move(completion)](znt::LogFile &file) {
        file.sync();
        const QString copy = exportPath();
        const std::optional<ZNTError> error = file.copyTo(copy);
        if (!completion)
            return;
        if (error)
            completion(std::nullopt, error);
        else
            completion(QUrl::fromLocalFile(copy), std::nullopt);
    });
    d->writer.flush();
}

void ZNTLogManager::flushLogBuffer()
{
    d->writer.flush();
}

void ZNTLogManager::setLogEnabled(bool enabled)
{
    setEnabled(enabled);
}

void ZNTLogManager::setEnabled(bool enabled)
{
    d->enabled.store(enabled, std::memory_order_relaxed);
}

bool ZNTLogManager::isEnabled() const
{
    return d->enabled.load(std::memory_order_relaxed);
}

void ZNTLogManager::setupWithAppId(const QString &appId, const QString &mediaId)
{
    const std::scoped_lock lock(d->idMutex);
    d->appId = appId;
    d->mediaId = mediaId;
}

QString ZNTLogManager::appId() const
{
    const std::scoped_lock lock(d->idMutex);
    return d->appId;
}

QString ZNTLogManager::mediaId() const
{
    const std::scoped_lock lock(d->idMutex);
    return d->mediaId;
}

QString ZNTLogManager::getDeviceModel() const
{
    return znt::device::hardwareModel();
}

QString ZNTLogManager::getNetworkStatus() const
{
    return QStringLiteral("wifi");
}

void ZNTLogManager::reportErrorWithSummary(const QString &summary, const QString &details)
{
    znt::reportError(summary, details);
}
