// The library's log, as a test sees it.
#pragma once

#include "support/test.h"

#include <ZNTAds/ZNTLogManager.h>

namespace znt::test {

inline ZNTLogManager *logger()
{
    return ZNTLogManager::sharedInstance();
}

// Switches logging on and reads what has been logged since the last look, as "LEVEL text".
class LogLines
{
public:
    LogLines()
    {
        logger()->setEnabled(true);
        take();
    }

    QStringList take()
    {
        QSemaphore written;
        logger()->flushLogBuffer();
        logger()->exportLogsWithCompletion([&](auto, auto) { written.release(); });
        written.acquire();

        QFile file(logger()->currentLogFilePath());
        if (!file.open(QIODevice::ReadOnly) || !file.seek(m_position))
            return {};
        const QStringList lines =
            QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
        m_position = file.pos();

        QStringList result;
        for (const QString &line : lines)
            result.append(line.section(u'[', 2).replace("] ", " "));
        return result;
    }

private:
    qint64 m_position = 0;
};

} // namespace znt::test
