#include "diagnostics/logconsole.h"

#include <cstdio>

#ifdef Q_OS_UNIX
#include <climits>
#include <poll.h>
#include <unistd.h>
#endif

namespace znt {

#ifdef Q_OS_UNIX

namespace {

constexpr int patience = 200; // ms

// What can be written at once where poll() says that something can.
constexpr qsizetype pieceSize = PIPE_BUF;

bool isWritable(int file, int milliseconds)
{
    pollfd wanted{file, POLLOUT, 0};
    return poll(&wanted, 1, milliseconds) == 1 && wanted.revents == POLLOUT; // not to a closed pipe
}

} // namespace

void LogConsole::write(const QByteArray &text)
{
    const int file = fileno(stderr);
    qsizetype written = 0;
    while (written < text.size()) {
        m_isStalled = !isWritable(file, m_isStalled ? 0 : patience);
        if (m_isStalled)
            return;
        const auto size = size_t(qMin(pieceSize, text.size() - written));
        const ssize_t count = ::write(file, text.constData() + written, size);
        if (count < 0)
            return;
        written += count;
    }
}

#else

void LogConsole::write(const QByteArray &text)
{
    std::fwrite(text.constData(), 1, size_t(text.size()), stderr);
}

#endif

} // namespace znt
