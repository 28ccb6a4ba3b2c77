// Brings requests in and answers out, faults included.
#pragma once

#include "answer.h"

#include <functional>

QT_FORWARD_DECLARE_CLASS(QTcpServer)

namespace sandbox {

using Handler = std::function<Answer(const Request &)>;

// Asks the handler for the answer to every request that comes to the server, over https if it is a
// QSslServer.
void serve(QTcpServer *server, const Handler &handler);

} // namespace sandbox
