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

        const QString text = QString::fromUtf8(contents(logger()->currentLogFilePath()));
        const QString latest = text.mid(std::exchange(m_position, text.size()));
        QStringList result;
        for (const QString &line : latest.split(u'\n', Qt::SkipEmptyParts))
            result.append(line.section(u'[', 2).replace("] ", " "));
        return result;
    }

private:
    qint64 m_position = 0;
};

} // namespace znt::test
