// The day's log file: made, appended to, forced to disk, copied. What fails is dropped, in whole
// lines.
#pragma once

#include <ZNTAds/ZNTError.h>

#include <QFile>

#include <optional>

namespace znt {

class LogFile
{
public:
    LogFile(const QString &path, int daysKept);

    // Makes the folder and the file where they are missing, and removes files of older days.
    void open();
    void append(const QByteArray &text);
    void sync();
    std::optional<ZNTError> copyTo(const QString &destination) const;

private:
    qint64 folderBirth() const;
    void endTornLine();
    void removeOld() const;

    QFile m_file;
    qint64 m_folderBirth = 0;
    QByteArray m_owed; // to a line that is torn: its rest, or its end
    const int m_daysKept;
};

} // namespace znt
