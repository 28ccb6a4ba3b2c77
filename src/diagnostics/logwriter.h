// Collects the lines of all threads and works them off, in order, on a thread of its own.
#pragma once

#include "diagnostics/logconsole.h"
#include "diagnostics/logfile.h"

#include <QString>
#include <QThread>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <list>
#include <mutex>

namespace znt {

// "[yyyy-MM-dd HH:mm:ss.SSS][" in local time, formatted anew only when the second changes.
class LineStart
{
public:
    // Holds until the next call. The time is in milliseconds since 1970.
    QStringView at(qint64 time);

private:
    qint64 m_time = -1;
    qint64 m_second = -1;
    char16_t m_text[27] = u"[0000-00-00 00:00:00.000][";
};

class LogWriter final : private QThread
{
public:
    using Work = std::function<void(LogFile &)>;

    // Of old log files beside the path, that many days are kept; 0 or less keeps all.
    LogWriter(const QString &path, int daysKept);
    Q_DISABLE_COPY_MOVE(LogWriter)

    // From any thread; takes no longer than copying the line.
    void append(QStringView level, QStringView message);
    // Does the work behind the lines and the work that came before it.
    void post(Work work);
    // Writes waiting lines to the file, behind what came before.
    void flush();

    // Writes everything, the file before the console, and ends the thread. From then on callers
    // write their lines themselves. Takes seconds at most, whatever the lines are written to.
    void finish();

private:
    using Clock = std::chrono::steady_clock;

    struct Posted
    {
        qsizetype position; // behind that many units of the lines
        Work work;
    };

    struct Batch
    {
        QString lines;
        std::list<Posted> posted;
        qsizetype collected = 0; // of the lines

        bool isDone() const { return collected == lines.size() && posted.empty(); }
    };

    void run() override;
    void waitForInput(std::unique_lock<std::mutex> &lock);
    bool processBatch();
    bool takeInput();
    void drain();
    void collect(qsizetype position);
    void write();

    std::mutex m_mutex; // guards what callers hand over
    std::condition_variable m_wake;
    Batch m_input;
    LineStart m_lineStart;
    bool m_finished = false;
    Qt::HANDLE m_threadId = nullptr;

    std::recursive_timed_mutex m_turn; // guards the rest; recursive because the work may log
    LogFile m_file;
    LogConsole m_console;
    bool m_isDraining = false;
    Batch m_batch;
    QByteArray m_unwritten; // to the file
    QByteArray m_unprinted; // to the console
    qsizetype m_unwrittenUnits = 0;
    Clock::time_point m_writeAt;
};

} // namespace znt
