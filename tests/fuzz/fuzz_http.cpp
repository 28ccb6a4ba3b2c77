// What a server says on the wire.
#include "door.h"

#include "net/httpclient.h"
#include "net/networkmanager.h"
#include "support/test.h"

#include <QTcpServer>
#include <QTcpSocket>

using namespace znt;

namespace {

class Server : public QTcpServer
{
public:
    Server()
    {
        if (!listen(QHostAddress::LocalHost))
            qFatal("%s", qPrintable(errorString()));
        setProxy(QNetworkProxy::NoProxy);
        connect(this, &QTcpServer::newConnection, this, [this] {
            QTcpSocket *const socket = nextPendingConnection();
            socket->write(said);
            socket->disconnectFromHost();
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        });
    }

    QByteArray said;
};

} // namespace

void enter(const QByteArray &bytes)
{
    static Server server;
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
    server.said = bytes;
    auto client = std::make_unique<HttpClient>(
        HttpLimits{.total = std::chrono::milliseconds(500), .bytes = 1024 * 1024});
    int answers = 0;
    client->send({.url = QString("http://127.0.0.1:%1/").arg(server.serverPort())},
        [&answers](const HttpAnswer &answer) {
            if (answer.body.size() > 1024 * 1024)
                qFatal("a body of %lld bytes", qlonglong(answer.body.size()));
            ++answers;
        });
    while (answers == 0)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    client.reset();
    waitForDiscardedManagers(std::chrono::seconds(5));
}
