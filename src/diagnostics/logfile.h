// The day's log file: made, appended to, forced to disk, copied. What fails is let pass.
#pragma once

#include <ZNTAds/ZNTError.h>

#include <QFile>

#include <optional>

namespace znt {

class LogFile
{
public:
    explicit LogFile(const QString &path);

    // Makes the folder and the file where they are missing.
    void open();
    void append(const QByteArray &text);
    void sync();
    std::optional<ZNTError> copyTo(const QString &destination) const;

private:
    QFile m_file;
};

} // namespace znt
