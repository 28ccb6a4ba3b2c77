#include "diagnostics/logfile.h"

#include <QDate>
#include <QDir>
#include <QFileInfo>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

namespace znt {

LogFile::LogFile(const QString &path, int daysKept)
    : m_file(path)
    , m_daysKept(daysKept)
{
}

void LogFile::open()
{
    if (m_file.isOpen())
        return;
    const QFileInfo existing(m_file.fileName());
    if (existing.exists() && !existing.isFile()) // to open a pipe would wait for its reader
        return;
    QDir().mkpath(QFileInfo(m_file).path());
    m_file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered);
    if (m_daysKept > 0)
        removeOld();
}

void LogFile::removeOld() const
{
    const QDate first = QDate::currentDate().addDays(1 - m_daysKept);
    QDir folder(QFileInfo(m_file).path());
    for (const QString &name : folder.entryList({QStringLiteral("*-*-*.log")}, QDir::Files)) {
        const QDate date = QDate::fromString(name.chopped(4), Qt::ISODate);
        if (date.isValid() && date < first)
            folder.remove(name);
    }
}

// A folder that has vanished is made again, and what could not be opened is tried once more. A file
// that somebody has deleted is not missed.
void LogFile::append(const QByteArray &text)
{
    if (!QFileInfo::exists(QFileInfo(m_file).path()))
        m_file.close();
    open();
    if (!m_file.isOpen())
        return;
    m_file.write(text);
    sync();
}

void LogFile::sync()
{
    if (!m_file.isOpen())
        return;
#if defined(Q_OS_WIN)
    _commit(m_file.handle());
#elif defined(Q_OS_LINUX)
    fdatasync(m_file.handle());
#else
    fsync(m_file.handle());
#endif
}

std::optional<ZNTError> LogFile::copyTo(const QString &destination) const
{
    if (!QFileInfo(m_file.fileName()).isFile())
        return ZNTError(
            QStringLiteral("com.zntads.logger"), -1, QStringLiteral("Log file does not exist"));
    QFile source(m_file.fileName());
    if (source.copy(destination))
        return std::nullopt;
    return ZNTError(QStringLiteral("QFileDevice"), source.error(), source.errorString());
}

} // namespace znt
