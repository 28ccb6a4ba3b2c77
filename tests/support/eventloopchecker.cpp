// Fails the test in which the library keeps the main thread from its event loop for too long, and
// says where it was. Linked into every test, it begins with the application object.
//
// A thread looks at a main thread that is not idle a few times within the limit. The library is at
// work as long as each look finds it there, below no code of the test's own; what a test blocks on
// purpose does not count, nor does the time for which other processes had the processor.
#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QProcess>
#include <QTest>

#include <dlfcn.h>
#include <execinfo.h>
#include <pthread.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <memory>
#include <mutex>
#include <semaphore>
#include <thread>

#if !defined(__SANITIZE_THREAD__) // which puts signals off

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

#if defined(__SANITIZE_ADDRESS__)
constexpr auto limit = 2500ms;
#else
constexpr auto limit = 200ms;
#endif
constexpr auto look = limit / 5;

// Seen by the signal handler.
struct Stack
{
    std::array<void *, 60> frames;
    int size = 0;
};
Stack seen;
std::counting_semaphore<> isSeen(0);

void lookAtStack(int)
{
    const int error = errno;
    seen.size = backtrace(seen.frames.data(), int(seen.frames.size()));
    isSeen.release();
    errno = error;
}

struct Place
{
    explicit Place(void *address)
    {
        Dl_info of{};
        if (dladdr(address, &of) == 0)
            return;
        file = QString::fromLocal8Bit(of.dli_fname);
        offset = quintptr(address) - quintptr(of.dli_fbase) - 1; // of the call, not behind it
        isOfLibrary = file.contains("libZNTAds.so");
        isOfTest = of.dli_fbase == ownBase();
    }
    static void *ownBase()
    {
        Dl_info own{};
        dladdr(reinterpret_cast<void *>(lookAtStack), &own);
        return own.dli_fbase;
    }
    QString text() const
    {
        QProcess reader;
        reader.start("addr2line", {"-Cfpse", file, QString::number(offset, 16)});
        reader.waitForFinished(5000);
        return QString("  %1+%2 %3")
            .arg(file.section('/', -1))
            .arg(offset, 0, 16)
            .arg(QString::fromLocal8Bit(reader.readAllStandardOutput().trimmed()));
    }

    QString file;
    quintptr offset = 0;
    bool isOfLibrary = false;
    bool isOfTest = false;
};

class EventLoopChecker
{
public:
    EventLoopChecker()
    {
        seen.size = backtrace(seen.frames.data(), 1); // loads what it needs
        struct sigaction action
        {
        };
        action.sa_handler = lookAtStack;
        action.sa_flags = SA_RESTART;
        sigaction(SIGURG, &action, nullptr);
        const QAbstractEventDispatcher *loop = QAbstractEventDispatcher::instance();
        QObject::connect(loop, &QAbstractEventDispatcher::awake, loop, [this] { turn(); });
        QObject::connect(
            loop, &QAbstractEventDispatcher::aboutToBlock, loop, [this] { m_isIdle = true; });
        m_watch = std::thread([this] { watch(); });
    }
    ~EventLoopChecker()
    {
        m_end.release();
        m_watch.join();
        report();
    }
    Q_DISABLE_COPY_MOVE(EventLoopChecker)

private:
    void turn()
    {
        m_isIdle = false;
        ++m_turns;
        report();
    }

    void watch()
    {
        quint64 turns = 0;
        Clock::time_point since = Clock::now();
        std::chrono::nanoseconds sinceDelay = delay();
        bool isReported = false;
        while (!m_end.try_acquire_for(look)) {
            const bool isNew = turns != m_turns || m_isIdle;
            if (isNew || isReported || !isLibraryAtWork()) {
                isReported = isReported && !isNew;
                turns = m_turns;
                since = Clock::now();
                sinceDelay = delay();
            } else if (Clock::now() - since - (delay() - sinceDelay) >= limit) {
                isReported = true;
                const std::lock_guard lock(m_mutex);
                m_late = seen;
            }
        }
    }

    bool isLibraryAtWork() const
    {
        while (isSeen.try_acquire()) { } // what came too late
        pthread_kill(m_main, SIGURG);
        if (!isSeen.try_acquire_for(limit))
            return false;
        for (int i = 0; i < seen.size; ++i) {
            const Place place(seen.frames[size_t(i)]);
            if (place.file.contains("libgstreamer")) // waits for its threads when a video ends
                return false;
            if (place.isOfLibrary)
                return true;
            if (place.isOfTest && i > 0) // the first is the signal handler
                return false;
        }
        return false;
    }

    // For which the main thread has waited for a processor.
    std::chrono::nanoseconds delay() const
    {
        long long running = 0;
        long long waiting = 0;
        const std::unique_ptr<FILE, int (*)(FILE *)> file(std::fopen(m_statistics, "r"), fclose);
        if (!file || std::fscanf(file.get(), "%lld %lld", &running, &waiting) != 2)
            return {};
        return std::chrono::nanoseconds(waiting);
    }

    void report()
    {
        Stack late;
        {
            const std::lock_guard lock(m_mutex);
            std::swap(late, m_late);
        }
        if (late.size == 0)
            return;
        QString text = QString("The library has kept the event loop waiting for %1 ms, here:\n")
                           .arg(std::chrono::milliseconds(limit).count());
        for (int i = 2; i < late.size; ++i) // behind the signal
            text += Place(late.frames[size_t(i)]).text() + '\n';
        if (!QTest::currentTestFunction())
            qFatal("%s", qPrintable(text));
        QTest::qFail(qPrintable(text), __FILE__, __LINE__);
    }

    const pthread_t m_main = pthread_self();
    const char *const m_statistics = "/proc/self/schedstat"; // of the main thread
    std::atomic<quint64> m_turns = 0;
    std::atomic<bool> m_isIdle = false;
    std::mutex m_mutex;
    Stack m_late; // guarded
    std::binary_semaphore m_end{0};
    std::thread m_watch;
};

void begin()
{
    static std::unique_ptr<EventLoopChecker> checker;
    checker = std::make_unique<EventLoopChecker>();
    qAddPostRoutine([] { checker.reset(); });
}
Q_COREAPP_STARTUP_FUNCTION(begin)

} // namespace

#endif
