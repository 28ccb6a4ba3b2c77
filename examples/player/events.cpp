#include "events.h"

#include <QJsonDocument>

#include <cstdio>

namespace player {

using namespace Qt::StringLiterals;

EventLog::EventLog()
{
    m_clock.start();
}

bool EventLog::open(const QString &path)
{
    if (path == u"-"_s)
        return m_file.open(stdout, QIODevice::WriteOnly);
    m_file.setFileName(path);
    return m_file.open(QIODevice::WriteOnly | QIODevice::Truncate);
}

void EventLog::write(const QString &event, const QJsonObject &fields)
{
    // A JSON object has no order; people read time and event first.
    QByteArray line =
        "{\"ms\":" + QByteArray::number(milliseconds()) + ",\"event\":\"" + event.toLatin1() + '"';
    if (!fields.isEmpty())
        line += ',' + QJsonDocument(fields).toJson(QJsonDocument::Compact).mid(1).chopped(1);
    m_file.write(line + "}\n");
    m_file.flush();
}

} // namespace player
