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
    QDir().mkpath(existing.path());
    m_folderBirth = folderBirth();
    if (m_file.open(QIODevice::ReadWrite | QIODevice::Append | QIODevice::Unbuffered))
        endTornLine();
    if (m_daysKept > 0)
        removeOld();
}

// A process that was killed may have left half a line.
void LogFile::endTornLine()
{
    char last = '\n';
    if (m_file.size() > 0 && m_file.seek(m_file.size() - 1))
        m_file.getChar(&last);
    if (last == '\n')
        m_owed.clear();
    else if (m_owed.isEmpty())
        m_owed = "\n";
}

// 0 where the file system keeps no such time, -1 without a folder.
qint64 LogFile::folderBirth() const
{
    const QFileInfo folder(QFileInfo(m_file).path());
    return folder.exists() ? folder.birthTime().toMSecsSinceEpoch() : -1;
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

// Opens anew what could not be written to, and what is in a folder that has vanished, even if
// somebody has made that again. A file that somebody has deleted is not missed.
void LogFile::append(const QByteArray &text)
{
    if (folderBirth() != m_folderBirth)
        m_file.close();
    open();
    if (!m_file.isOpen())
        return;
    const QByteArray wanted = m_owed + text;
    const qint64 written = qMax(m_file.write(wanted), 0);
    const bool isTorn = written > 0 ? wanted[written - 1] != '\n' : !m_owed.isEmpty();
    m_owed =
        isTorn ? wanted.sliced(written, wanted.indexOf('\n', written) + 1 - written) : QByteArray();
    sync();
    if (written < wanted.size())
        m_file.close();
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
