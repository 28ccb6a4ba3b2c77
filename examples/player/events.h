// The event lines: one JSON object a line, flushed at once.
#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QJsonObject>

namespace player {

class EventLog
{
public:
    // Time counts from here.
    EventLog();

    // "-" is standard output.
    bool open(const QString &path);
    QString errorString() const { return m_file.errorString(); }

    void write(const QString &event, const QJsonObject &fields = {});
    qint64 milliseconds() const { return m_clock.elapsed(); }

private:
    QElapsedTimer m_clock;
    QFile m_file;
};

} // namespace player
