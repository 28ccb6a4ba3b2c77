#include "diagnostics/logwriter.h"

#include <QDateTime>
#include <QDeadlineTimer>

#include <atomic>

#ifdef Q_OS_UNIX
#include <pthread.h>
#endif

namespace znt {

namespace {

using namespace std::chrono_literals;

constexpr qsizetype writeThreshold = 65'536; // UTF-16 units
constexpr auto writeInterval = 1s;
// A burst of lines goes to the console in one piece, and wakes the writer once.
constexpr auto gatherInterval = 20ms;
// How long a writer that hangs may hold up the end of the process.
constexpr auto writerEndPatience = 1s;
// A buffer that a burst has swollen beyond this is given back.
constexpr qsizetype keptCapacity = 1 << 20;

// Set in a process made by fork(), which has the lines and the locks but not the writer.
Q_CONSTINIT std::atomic<bool> orphaned{false};

void putDigits(char16_t *end, int count, int number)
{
    for (; count > 0; --count, number /= 10)
        *--end = char16_t(u'0' + number % 10);
}

char16_t *put(QStringView text, char16_t *end)
{
    return std::copy_n(text.utf16(), text.size(), end);
}

void appendLine(QString &lines, QStringView start, QStringView level, QStringView message)
{
    const qsizetype before = lines.size();
    lines.resize(before + start.size() + level.size() + message.size() + 3);
    char16_t *end = reinterpret_cast<char16_t *>(lines.data()) + before;
    end = put(start, end);
    end = put(level, end);
    *end++ = u']';
    *end++ = u' ';
    end = put(message, end);
    *end = u'\n';
}

template <class Text>
void recycle(Text &text)
{
    if (text.capacity() > keptCapacity)
        text = Text();
    else
        text.resize(0);
}

} // namespace

QStringView LineStart::at(qint64 time)
{
    if (time == m_time)
        return {m_text, 26};
    m_time = time;
    if (time / 1000 != m_second) {
        m_second = time / 1000;
        const QDateTime local = QDateTime::fromMSecsSinceEpoch(time);
        int year = 0;
        int month = 0;
        int day = 0;
        local.date().getDate(&year, &month, &day);
        putDigits(m_text + 5, 4, year);
        putDigits(m_text + 8, 2, month);
        putDigits(m_text + 11, 2, day);
        putDigits(m_text + 14, 2, local.time().hour());
        putDigits(m_text + 17, 2, local.time().minute());
        putDigits(m_text + 20, 2, local.time().second());
    }
    putDigits(m_text + 24, 3, int(time % 1000));
    return {m_text, 26};
}

LogWriter::LogWriter(const QString &path, int daysKept)
    : m_file(path, daysKept)
{
#ifdef Q_OS_UNIX
    pthread_atfork(nullptr, nullptr, [] { orphaned = true; });
#endif
    setObjectName(QStringLiteral("com.zntads.logger"));
    start();
}

void LogWriter::append(QStringView level, QStringView message)
{
    if (orphaned.load(std::memory_order_relaxed))
        return;
    const qint64 time = QDateTime::currentMSecsSinceEpoch();
    bool wake = false;
    bool finished = false;
    {
        const std::scoped_lock lock(m_mutex);
        const qsizetype before = m_input.lines.size();
        appendLine(m_input.lines, m_lineStart.at(time), level, message);
        wake = before == 0 || (before < writeThreshold && m_input.lines.size() >= writeThreshold);
        finished = m_finished;
    }
    if (finished)
        drain();
    else if (wake)
        m_wake.notify_one();
}

void LogWriter::post(Work work)
{
    if (orphaned)
        return;
    bool finished = false;
    {
        const std::scoped_lock lock(m_mutex);
        m_input.posted.push_back({m_input.lines.size(), std::move(work)});
        finished = m_finished;
    }
    if (finished)
        drain();
    else
        m_wake.notify_one();
}

void LogWriter::flush()
{
    post([this](LogFile &) { write(); });
}

void LogWriter::finish()
{
    if (orphaned)
        return;
    bool isWriter = false;
    {
        const std::scoped_lock lock(m_mutex);
        m_finished = true;
        isWriter = m_threadId == QThread::currentThreadId(); // the process ends out of posted work
    }
    m_wake.notify_one();
    if (isWriter || wait(QDeadlineTimer(writerEndPatience)))
        drain();
}

void LogWriter::run()
{
    {
        const std::scoped_lock turn(m_turn);
        m_file.open();
    }
    std::unique_lock lock(m_mutex);
    m_threadId = QThread::currentThreadId();
    while (!m_finished) {
        waitForInput(lock);
        lock.unlock();
        processBatch();
        lock.lock();
    }
}

void LogWriter::waitForInput(std::unique_lock<std::mutex> &lock)
{
    const auto urgent = [this] {
        return m_finished || !m_input.posted.empty() || m_input.lines.size() >= writeThreshold;
    };
    const auto any = [&] { return urgent() || !m_input.lines.isEmpty(); };
    const auto writeAt = m_writeAt; // a copy: callers may take over during the wait
    if (m_unwritten.isEmpty())
        m_wake.wait(lock, any);
    else
        m_wake.wait_until(lock, writeAt, any);
    if (!m_input.lines.isEmpty())
        m_wake.wait_for(lock, gatherInterval, urgent);
}

// False when there was nothing to do. All state is the object's own, because posted work may come
// back here: by logging after finish(), or by ending the process.
bool LogWriter::processBatch()
{
    const std::scoped_lock turn(m_turn);
    const bool worked = m_batch.isDone() ? takeInput() : true;
    while (!m_batch.posted.empty()) {
        const Posted next = std::move(m_batch.posted.front());
        m_batch.posted.pop_front();
        collect(next.position);
        next.work(m_file);
    }
    collect(m_batch.lines.size());
    if (m_isDraining || Clock::now() >= m_writeAt)
        write();
    m_console.write(std::exchange(m_unprinted, {}));
    return worked;
}

bool LogWriter::takeInput()
{
    recycle(m_batch.lines);
    m_batch.collected = 0;
    const std::scoped_lock lock(m_mutex);
    m_batch.lines.swap(m_input.lines);
    m_batch.posted.swap(m_input.posted);
    return !m_batch.isDone();
}

// Gives up where another thread hangs in a write.
void LogWriter::drain()
{
    const std::unique_lock turn(m_turn, writerEndPatience);
    if (!turn)
        return;
    m_isDraining = true;
    m_file.open(); // the thread may not have come so far
    while (processBatch()) { }
    write();
}

void LogWriter::collect(qsizetype position)
{
    const qsizetype count = position - m_batch.collected;
    if (count <= 0)
        return;
    if (m_unwritten.isEmpty())
        m_writeAt = Clock::now() + writeInterval;
    const QByteArray text = QStringView(m_batch.lines).sliced(m_batch.collected, count).toUtf8();
    m_batch.collected = position;
    m_unwritten += text;
    m_unprinted += text;
    m_unwrittenUnits += count;
    if (m_unwrittenUnits >= writeThreshold)
        write();
}

void LogWriter::write()
{
    if (m_unwritten.isEmpty())
        return;
    m_file.append(m_unwritten);
    recycle(m_unwritten);
    m_unwrittenUnits = 0;
}

} // namespace znt
