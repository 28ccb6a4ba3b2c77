// Reads requests off a connection: HTTP/1, with a body that has a length or comes in chunks.
#pragma once

#include "answer.h"

QT_FORWARD_DECLARE_CLASS(QIODevice)

namespace sandbox {

enum class Reading {
    Whole,
    Partial, // the rest has not come yet: nothing was taken off the connection
    Malformed,
};

// The next request of the connection, into a new one.
Reading readRequest(QIODevice *connection, Request *request);

} // namespace sandbox
