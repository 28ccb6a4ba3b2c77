#include "diagnostics/errorreport.h"

#include "diagnostics/log.h"
#include "net/endpoints.h"
#include "net/sessions.h"
#include "support/devicefacts.h"
#include "support/json.h"
#include "support/mainthread.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QGuiApplication>

#include <atomic>

namespace znt {

namespace {

std::atomic<bool> isEnabled = true;

// Without one Qt gives the application's name, which is that of the executable by default.
QString displayName()
{
    const QString name = QGuiApplication::applicationDisplayName();
    return name == QCoreApplication::applicationName() ? QString() : name;
}

QJsonObject reportOf(qint64 time, const QString &summary, const QString &details)
{
    device::watchScreen();
    const QSize screen = device::screenPixels();
    QJsonObject report{
        {QStringLiteral("exceptionTimeLong"), time},
        {QStringLiteral("deviceBrand"), QStringLiteral("Apple")},
    };
    const std::pair<QString, QString> texts[] = {
        {QStringLiteral("deviceModel"), device::hardwareModel()},
        {QStringLiteral("osVersion"), device::systemVersion()},
        {QStringLiteral("kernelVersion"), device::kernelVersion()},
        {QStringLiteral("screenResolution"),
            QStringLiteral("%1x%2").arg(screen.width()).arg(screen.height())},
        {QStringLiteral("languageSetting"), device::preferredLanguage()},
        {QStringLiteral("timezone"), device::timeZone()},
        {QStringLiteral("networkStatus"), ZNTLogManager::sharedInstance()->getNetworkStatus()},
        {QStringLiteral("errorSummary"), summary},
        {QStringLiteral("errorDetails"), details},
    };
    for (const auto &[key, text] : texts)
        json::insertIfSet(report, key, text);

    // What the host has not set is an empty text to Qt, and missing here.
    const std::pair<QString, QString> hostFacts[] = {
        {QStringLiteral("appName"), displayName()},
        {QStringLiteral("appPackageName"), QCoreApplication::organizationDomain()},
        {QStringLiteral("appVersion"), QCoreApplication::applicationVersion()},
    };
    for (const auto &[key, text] : hostFacts) {
        if (!text.isEmpty())
            report.insert(key, text);
    }
    return report;
}

// Written directly: a report that fails must not cause another.
void writeResult(const HttpAnswer &answer)
{
    ZNTLogManager *log = ZNTLogManager::sharedInstance();
    const QString error = QStringLiteral("ERROR");
    if (answer.error)
        log->writeLog(
            logLine("Error sending error report: %1", answer.error->localizedDescription()), error);
    else if (answer.status >= 200 && answer.status < 300)
        log->writeLog(QStringLiteral("Error report sent successfully"), QStringLiteral("INFO"));
    else
        log->writeLog(logLine("Error report failed with status code: %1", answer.status), error);
}

} // namespace

void setErrorReportsEnabled(bool enabled)
{
    isEnabled = enabled;
}

void reportError(const QString &summary, const QString &details)
{
    if (!isEnabled)
        return;
    const qint64 time = QDateTime::currentMSecsSinceEpoch();
    onMainThread([time, summary, details] {
        const HttpRequest request{
            .url = endpoint(Endpoint::LogUpload).toString(QUrl::FullyEncoded),
            .method = "POST",
            .headers = {{"Content-Type", "application/json"}},
            .body = json::compact(reportOf(time, summary, details)),
        };
        sendHttp(Session::Reports, request, writeResult);
    });
}

} // namespace znt
