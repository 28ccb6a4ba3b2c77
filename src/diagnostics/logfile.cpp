#include "diagnostics/logfile.h"

#include <QDir>
#include <QFileInfo>

#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

namespace znt {

LogFile::LogFile(const QString &path)
    : m_file(path)
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
}

void LogFile::append(const QByteArray &text)
{
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
