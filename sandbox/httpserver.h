// Brings requests in and answers out, faults included.
#pragma once

#include "answer.h"

#include <QAbstractHttpServer>

#include <functional>

namespace sandbox {

class HttpServer : public QAbstractHttpServer
{
    Q_OBJECT

public:
    using Handler = std::function<Answer(const Request &)>;

    HttpServer(bool secure, Handler handler, QObject *parent);

protected:
    bool handleRequest(const QHttpServerRequest &request, QTcpSocket *socket) override;
    void missingHandler(const QHttpServerRequest &request, QTcpSocket *socket) override;

private:
    bool m_secure;
    Handler m_handler;
};

} // namespace sandbox
