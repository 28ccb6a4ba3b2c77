#pragma once

#include <ZNTAds/ZNTError.h>

#include <QtCore/QUrl>

#include <functional>
#include <memory>
#include <optional>

/// The library's one logger: a console line and a line in a daily file for each message, and an
/// upload for each error.
///
/// Every method may be called from any thread, also before QCoreApplication exists. Lines of one
/// thread keep their order; lines of several are interleaved whole. Files are
/// "Documents/Logs/yyyy-MM-dd.log", on a desktop the user's, which applications share; none is
/// removed, unless the host chooses otherwise. They are written about once a second or when 65,536
/// UTF-16 units wait. No call waits for the disk: lines wait in memory, and all are written when
/// the process exits normally. A process made by fork() writes nothing.
class ZNTADS_EXPORT ZNTLogManager
{
public:
    /// Receives the file's copy, or an error; called on the logger's own thread.
    using ExportCompletion =
        std::function<void(const std::optional<QUrl> &file, const std::optional<ZNTError> &error)>;

    /// The logger. It lives until the process ends, and what was logged before that is written.
    static ZNTLogManager *sharedInstance();

    /// Chooses another folder for the log files, which is made where it is missing; empty for the
    /// default. Counts only before the logger is first used, and so before a manager is made or the
    /// host registers.
    /// @return whether it counts
    static bool setLogDirectory(const QString &folder);
    /// How many days of log files to keep, today included: when the logger opens its file it
    /// removes older ones of that folder, as their names tell. 0 or less, the default, keeps all.
    /// Counts only before the logger is first used.
    /// @return whether it counts
    static bool setDaysKept(int days);
    /// Whether errors are reported to the server, the host's own included; on until set otherwise.
    static void setErrorReportsEnabled(bool enabled);

    /// Writes @p message at level "INFO"; nothing when logging is off. A null message is "(null)".
    void logInfo(const QString &message);
    /// Writes @p message at level "WARNING"; nothing when logging is off.
    void logWarning(const QString &message);
    /// Writes @p message at level "ERROR" and reports it to the server, the latter always.
    void logError(const QString &message);
    /// Writes one line at @p level without reporting it; nothing when logging is off.
    void writeLog(const QString &message, const QString &level);

    /// The file of the day on which the logger was made, known at once; the folder and the file are
    /// made in the background, and stay missing where they cannot be.
    QString currentLogFilePath() const;
    /// Copies the log file into the temporary folder. Lines that still wait in memory are not in
    /// the copy. @p completion may be empty; its error is of domain "com.zntads.logger" when there
    /// is no file to copy.
    void exportLogsWithCompletion(ExportCompletion completion);
    /// Writes waiting lines to the file soon.
    void flushLogBuffer();

    /// Switches logging; off until the host registers.
    void setLogEnabled(bool enabled);
    /// The same switch.
    void setEnabled(bool enabled);
    /// Whether lines are written.
    bool isEnabled() const;

    /// Keeps the two ids; they are not part of any report.
    void setupWithAppId(const QString &appId, const QString &mediaId);
    /// The application id given at registration; null before.
    QString appId() const;
    /// The media id given at registration; null before.
    QString mediaId() const;

    /// The hardware identifier of the device.
    QString getDeviceModel() const;
    /// Always "wifi".
    QString getNetworkStatus() const;
    /// Sends one error report, whether or not logging is on; a null text is left out of it, and so
    /// is what the host has not set: QGuiApplication::applicationDisplayName (where it is the plain
    /// application name), QCoreApplication::organizationDomain and applicationVersion. Never
    /// retried; without an application object nothing is sent.
    void reportErrorWithSummary(const QString &summary, const QString &details);

private:
    ZNTLogManager();
    ~ZNTLogManager();
    Q_DISABLE_COPY_MOVE(ZNTLogManager)

    class Q_DECL_HIDDEN Private;
    const std::unique_ptr<Private> d;
};
