// The player as a script sees it: a process with arguments, event lines, files and a status.
#pragma once

#include "support/exchangetest.h"

namespace znt::test {

struct Outcome
{
    int status = -1; // of a process that did not crash
    QList<QJsonObject> events;
    QStringList names; // of the events
    QByteArray errors;

    QJsonObject first(const QString &name) const { return events.value(names.indexOf(name)); }
};

inline Outcome run(const QStringList &arguments)
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

// What its tests stand on.
class PlayerTest : public QObject
{
public:
    PlayerTest()
    {
        for (const char *name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
            qunsetenv(name); // the player finds out by itself
    }

protected:
    // Against the exchange, with everything under a folder of its own.
    Outcome play(const QString &arguments)
    {
        return run(QStringList{"--exchange", exchange.httpsUrl().toString(), "--log-upload",
                       exchange.httpUrl().toString(), "--ca-file", exchange.caFile(), "--data-dir",
                       path("data"), "--linger", "0.2"}
            + arguments.split(u' '));
    }
    QString path(const QString &name) const { return m_dir.filePath(name); }

    TrustedExchange exchange;

private:
    QTemporaryDir m_dir;
};

} // namespace znt::test
