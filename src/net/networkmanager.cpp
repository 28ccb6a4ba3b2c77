#include "net/networkmanager.h"

#include "support/mainthread.h"

#include <QElapsedTimer>
#include <QHostInfo>
#include <QNetworkReply>
#include <QThreadPool>

#ifdef Q_OS_UNIX
#include <QDir>

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#endif

namespace znt {

namespace {

constexpr qint64 isHeldAfter = 4'000; // ms, shorter than what Qt waits for a manager's thread

struct DiscardPool : QThreadPool
{
    DiscardPool() { setMaxThreadCount(64); } // they wait, and do nothing else
};

#ifdef Q_OS_UNIX
// Whether the descriptor is a connection to one of the addresses.
bool leadsTo(int descriptor, const QList<QHostAddress> &addresses, int port)
{
    sockaddr_storage peer{};
    socklen_t size = sizeof peer;
    auto *const address = reinterpret_cast<sockaddr *>(&peer);
    if (getpeername(descriptor, address, &size) != 0)
        return false;
    const bool isIPv6 = peer.ss_family == AF_INET6;
    if (!isIPv6 && peer.ss_family != AF_INET)
        return false;
    const quint16 peerPort = isIPv6 ? reinterpret_cast<sockaddr_in6 *>(address)->sin6_port
                                    : reinterpret_cast<sockaddr_in *>(address)->sin_port;
    return ntohs(peerPort) == port && addresses.contains(QHostAddress(address));
}

// Qt gives no access to a manager's sockets, hence the way over the process's descriptors. The
// duplicate keeps a descriptor from becoming another connection between the look and the cut.
void cutConnections(const QUrl &origin)
{
    const QList<QHostAddress> addresses = QHostInfo::fromName(origin.host()).addresses();
    const int port = origin.port(80);
    const QStringList descriptors =
        QDir(QStringLiteral("/dev/fd")).entryList(QDir::AllEntries | QDir::System);
    for (const QString &name : descriptors) {
        bool isNumber = false;
        const int descriptor = name.toInt(&isNumber);
        const int duplicate = isNumber ? fcntl(descriptor, F_DUPFD_CLOEXEC, 0) : -1;
        if (duplicate < 0)
            continue;
        if (leadsTo(duplicate, addresses, port))
            shutdown(duplicate, SHUT_RDWR);
        close(duplicate);
    }
}
#else
void cutConnections(const QUrl &)
{
}
#endif

void discard(QNetworkAccessManager *manager, const QUrl &origin)
{
    qDeleteAll(manager->findChildren<QNetworkReply *>(Qt::FindDirectChildrenOnly));
    manager->moveToThread(nullptr);
    neverDestroyed<DiscardPool>().start([manager, origin] {
        QElapsedTimer timer;
        timer.start();
        delete manager;
        if (timer.elapsed() > isHeldAfter)
            cutConnections(origin);
    });
}

} // namespace

std::shared_ptr<QNetworkAccessManager> makeNetworkManager(const QUrl &origin)
{
    return {new QNetworkAccessManager,
        [origin](QNetworkAccessManager *manager) { discard(manager, origin); }};
}

void waitForDiscardedManagers(std::chrono::milliseconds most)
{
    neverDestroyed<DiscardPool>().waitForDone(int(most.count()));
}

} // namespace znt
